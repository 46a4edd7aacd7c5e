// The part of a pipe that a crawler's sensor lays anew while it passes.
#include "network/CylinderSegment.h"
#include "network/Pipe.h"

#include <algorithm>

namespace Torvik::View3d {

void Pipe::startSensorMeasurement(Vector3D<double> point, QVector3D /*direction*/, float distance)
{
    m_lastMeasuredPoint = point.toQVector3D();
    const int index = findSegmentIdxByDistance(distance);
    m_lastMeasuredIndex = index < 0 ? segmentCount() - 1 : index;
}

EntitySegment* Pipe::addPoint(const QVector3D& point, float distance)
{
    if (m_segments.isEmpty() || m_lastMeasuredIndex < 0)
        return nullptr;
    float left = distance;
    const int index = findSegmentIdxByDistance(left);
    if (index < 0)
        return addMeasuredBehindChain(point);
    if (index < m_lastMeasuredIndex)
        return nullptr;
    const float inner = distance - m_lengths.before(index);
    return index > m_lastMeasuredIndex ? addMeasuredInLaterSegment(point, index, inner)
                                       : addMeasuredInSameSegment(point, inner);
}

EntitySegment* Pipe::addMeasuredBehindChain(const QVector3D& point)
{
    const int firstToGo = m_lastMeasuredIndex + 1;
    if (firstToGo < segmentCount()) {
        emit segmentsRemoved(firstToGo, segmentCount(), false);
        while (segmentCount() > firstToGo)
            takeSegment(segmentCount() - 1);
    }
    if (segmentCount() == 1)
        emit segmentAdded(firstPoint(), 0, false);
    m_lastMeasuredPoint = point;
    m_lastMeasuredIndex = segmentCount();
    EntitySegment* added = addPoint(point);
    emit segmentAdded(point, m_lastMeasuredIndex, false);
    return added;
}

/** Shortens segment `index` to `inner` and puts what it loses behind it, as a segment of its own. */
EntitySegment* Pipe::cutOffRest(int index, float inner, const QVector3D& point)
{
    EntitySegment* segment = m_segments[index];
    const float whole = segment->length();
    const QVector3D end = segment->endPoint();
    segment->setLength(inner);
    CylinderSegment* rest = newSegment(segment, segment->endPoint(), end);
    rest->setLength(whole - inner);
    emit segmentAdded(point, index + 1, true);
    insertSegment(index + 1, rest);
    return rest;
}

EntitySegment* Pipe::insertMeasured(int index, EntitySegment* anchor, const QVector3D& begin, const QVector3D& point)
{
    CylinderSegment* measured = newSegment(anchor, begin, point);
    emit segmentAdded(point, index, true);
    m_lastMeasuredPoint = point;
    m_lastMeasuredIndex = index;
    insertSegment(index, measured);
    drawTogether(index - 1);
    return measured;
}

EntitySegment* Pipe::addMeasuredInLaterSegment(const QVector3D& point, int index, float inner)
{
    const int last = m_lastMeasuredIndex;
    cutOffRest(index, inner, point);
    EntitySegment* anchor = m_segments[last];
    for (int i = index; i > last; --i)
        takeSegment(i);
    emit segmentsRemoved(last + 1, index + 1, true);
    return insertMeasured(last + 1, anchor, anchor->endPoint(), point);
}

EntitySegment* Pipe::addMeasuredInSameSegment(const QVector3D& point, float inner)
{
    const int last = m_lastMeasuredIndex;
    EntitySegment* anchor = m_segments[std::max(last - 1, 0)];
    const QVector3D begin = last == 0 ? anchor->beginPoint() : anchor->endPoint();
    cutOffRest(last, inner, point);
    takeSegment(last);
    emit segmentsRemoved(last, last + 1, true);
    // For the first segment the one that is going stays the predecessor: the joint at the begin is drawn from it.
    return insertMeasured(last, anchor, begin, point);
}

} // namespace Torvik::View3d
