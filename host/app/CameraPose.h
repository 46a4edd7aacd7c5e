#pragma once

#include "host/app/CommandLine.h"

#include <QVector3D>

namespace Torvik::Viewer {

/** Opening of the view's lens from the lower to the upper edge, in degrees. */
constexpr double lensAngleDeg = 3.0;
/** Half of what is in view from a metre away, from the lower to the upper edge. */
double tangentOfHalfLens();

/** A box along the axes of the scene, in metres; starts empty. */
class Bounds {
public:
    /** Takes in a ball, or a point. */
    void add(const QVector3D& center, float radius = 0.0f);

    bool isEmpty() const { return m_empty; }
    QVector3D lowest() const { return m_lowest; }
    QVector3D highest() const { return m_highest; }
    /** The origin while the box is empty. */
    QVector3D center() const { return (m_lowest + m_highest) * 0.5f; }
    /** From the centre to a corner. */
    float radius() const { return (m_highest - m_lowest).length() * 0.5f; }

private:
    bool m_empty = true;
    QVector3D m_lowest;
    QVector3D m_highest;
};

/** Where a camera stands, in the frame of the scene: x west, y up, z north. */
struct CameraPose {
    QVector3D position;
    QVector3D center;
    QVector3D up;
};

/** Distances from the camera within which the lens draws, in metres. */
struct LensRange {
    float nearPlane;
    float farPlane;
};

/** The pose that sees `center` from `distance` metres: from the top with north at the upper edge; from the south at 45
 *  degrees; or from the south on the level of the centre. */
CameraPose standardPose(StandardView view, const QVector3D& center, double distance);

/** Distance from which the whole box is in view with a small margin. `aspect` is width by height of the picture. Never
 *  nearer than closestFit, so that a single point has surroundings. */
double distanceToFit(const Bounds& bounds, StandardView view, double aspect);
constexpr double closestFit = 80.0;

/** standardPose at the box's centre and at distanceToFit; of an empty box the pose 350 m above the origin's ground. */
CameraPose fittingPose(const Bounds& bounds, StandardView view, double aspect);

/** The same direction of view, to another point from another distance. */
CameraPose movedPose(const CameraPose& pose, const QVector3D& center, double distance);

/** distanceToFit for any direction of view. */
double distanceToFit(const Bounds& bounds, const CameraPose& direction, double aspect);

/** A range that holds the box and what lies around the point looked at, as narrow as the depth buffer needs it: far
 * away a near plane of 1 m would leave a pipe no depth of its own. Close by it is the view's usual 1 m to 10 km. */
LensRange lensRange(const CameraPose& pose, const Bounds& bounds);

} // namespace Torvik::Viewer
