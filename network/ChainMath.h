#pragma once

#include "network/SegmentAction.h"

#include <QMatrix4x4>
#include <QQuaternion>
#include <QVector3D>
#include <QVector>

#include <optional>

/** The arithmetic of a chain of straight segments, without entities. Lengths and distances are metres along the chain;
 *  a segment's forward axis is its local +z, its up vector stands in the frame of the chain. */
namespace Torvik::View3d::ChainMath {

struct Place {
    int index = -1;     ///< segment, or -1 behind the chain's end
    float inner = 0.0F; ///< distance from that segment's begin, or from the chain's end
};

/** Direction and up vector of the segment before. */
struct Frame {
    QVector3D direction {1.0F, 0.0F, 0.0F};
    QVector3D up {0.0F, 1.0F, 0.0F};
};

float totalLength(const QVector<float>& lengths);

/** The segment that holds a distance. A distance on a joint belongs to the segment behind it; a negative one to the
 *  first, with a negative inner distance. */
Place placeAtDistance(const QVector<float>& lengths, float distance);

/** What a bend at `distance` does to the chain; within `tolerance` of a joint the joint is meant. */
SegmentAction nearestSegmentAction(const QVector<float>& lengths, float distance, float tolerance);

/** Up or down within 0.01 in every ordinate. */
bool isVertical(const QVector3D& direction);

/** Up vector of a segment: the world's up as the chain sees it, or, for a vertical segment, which has no such up, one
 *  that carries the frame of the segment before on. Not normalised. */
QVector3D upVector(const QVector3D& direction, const Frame& previous, const QVector3D& worldUp);

/** Frame of the chain's first segment: moved to its begin, then turned. */
QMatrix4x4 pivot(const QVector3D& begin, const QQuaternion& rotation);
/** What undoes `pivot`, from the inverse turn and way instead of a numeric inversion. */
QMatrix4x4 inversePivot(const QVector3D& begin, const QQuaternion& rotation);

} // namespace Torvik::View3d::ChainMath
