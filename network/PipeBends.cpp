// The bends of a pipe: adding, changing and removing them.
#include "network/CylinderSegment.h"
#include "network/Pipe.h"
#include "scene/Fuzzy.h"
#include "scene/Rounding.h"

namespace Torvik::View3d {

EntitySegment* Pipe::splitSegment(int index, float distance)
{
    EntitySegment* segment = m_segments[index];
    const float whole = segment->length();
    segment->setLength(distance);
    const QVector3D cut = segment->endPoint();
    CylinderSegment* rest = newSegment(segment, cut, cut + QVector3D(0.0F, 0.0F, initialSegmentLength()));
    rest->setLength(whole - distance);
    rest->setRotation(segment->rotation());
    insertSegment(index + 1, rest);
    return rest;
}

EntitySegment* Pipe::modifySegmentsRotation(QQuaternion rotation, float distance)
{
    if (m_segments.isEmpty())
        return nullptr;
    const float rounded = roundToCentimetres(distance);
    if (getActionForNearestSegment(rounded).action == SegmentAction::AddAtChainEnd)
        return addRotationAtChainEnd(rotation);
    return addRotationInsideChain(rotation, rounded);
}

EntitySegment* Pipe::addRotationAtChainEnd(QQuaternion rotation)
{
    if (m_segments.isEmpty())
        return nullptr;
    const QVector3D end = lastPoint();
    CylinderSegment* stub = newSegment(lastSegment(), end, end + QVector3D(0.0F, 0.0F, initialSegmentLength()));
    stub->setRotation(rotation);
    appendSegment(stub);
    return stub;
}

EntitySegment* Pipe::addRotationInsideChain(QQuaternion rotation, float distance)
{
    const SegmentAction action = getActionForNearestSegment(distance);
    const int behindBend = action.index + 1;
    if (m_segments.isEmpty())
        return nullptr;
    EntitySegment* segment = action.action == SegmentAction::SplitSegment ? splitSegment(action.index, action.remaining)
                                                                          : m_segments[behindBend];
    segment->setRotation(rotation);
    recalcChainFromIdx(behindBend + 1);
    return segment;
}

void Pipe::removeSegmentsRotation(float distance)
{
    if (m_segments.isEmpty())
        return;
    const float rounded = roundToCentimetres(distance);
    if (Fuzzy::equal(rounded, length()) || rounded > length())
        removeRotationAtChainEnd();
    else
        removeRotationInsideChain(rounded);
}

void Pipe::removeRotationAtChainEnd()
{
    removeSegment(segmentCount() - 1);
}

void Pipe::removeRotationInsideChain(float distance)
{
    if (findSegmentIdxByDistance(distance) < 0)
        return;
    // Always the first bend: callers that remove one inside the chain rely on the rest being laid anew behind it.
    removeSegment(1);
    recalcChainFromIdx(1);
}

} // namespace Torvik::View3d
