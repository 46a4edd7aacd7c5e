#pragma once

#include "scene/KxView3dExport.h"

#include <QMatrix4x4>
#include <QQuaternion>
#include <QVector3D>

namespace Torvik::View3d {

class Pipe;
class Renderable;

/** What an inspection does to its pipe: it follows the distance counter, takes measured points, bends the pipe and
 * turns it to an inclination. Distances are metres along the pipe, angles degrees, clock positions hours.
 *
 *  Neither the pipe nor the section is owned; both outlive the commands. Main thread only. */
class KXVIEW3D_EXPORT InspectionCommands {
public:
    InspectionCommands(Pipe* pipe, Renderable* renderable);

    /** The distance is rounded to centimetres. With `extendPipe` a distance behind the end stretches the last segment
     *  up to it; in real time the pipe grows by measured points only. */
    void setDistance(float distance, bool extendPipe);
    float currDist() const { return m_currentDistance; }
    float totalDistance() const;
    /** Frame in the scene a centimetre ahead of the current distance. */
    QMatrix4x4 crawlerTransformMatrix() const;

    /** A point in the frame of the chain. */
    void addPoint(QVector3D point, float distance);
    void addBend(float clock, float angle, float distance);
    void modifyBend(float clock, float angle, float distance);
    void removeBend(float distance);
    void bendPipe(float clock, float angle, float distance);

    /** From the end of the first segment to the section's position. */
    QVector3D direction();
    /** Degrees by which the first segment rises. */
    float inclination();
    /** Turns the section until its first segment falls by the angle; `flags` tell the source of its new rotation, 0
     * keeps the old one. */
    void rotateToTargetInclination(float angle, int flags);
    QQuaternion rotationFromClockAndAngle(float angle, float clock);

private:
    Pipe* m_pipe;
    Renderable* m_renderable;
    float m_currentDistance = 0.0F;

public:
    /** Measured points are taken only while it is set. */
    bool realTime = false;
};

} // namespace Torvik::View3d
