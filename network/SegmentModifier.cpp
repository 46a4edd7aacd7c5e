#include "network/SegmentModifier.h"

#include "network/ChainMath.h"
#include "network/EntitySegment.h"

namespace Torvik::View3d {

SegmentAction SegmentModifier::getActionForNearestSegment(const QVector<EntitySegment*>& segments, float distance,
                                                          float tolerance) const
{
    return ChainMath::nearestSegmentAction(lengths(segments), distance, tolerance);
}

QVector<float> SegmentModifier::lengths(const QVector<EntitySegment*>& segments)
{
    QVector<float> result;
    result.reserve(segments.size());
    for (const EntitySegment* segment : segments)
        result.append(segment->length());
    return result;
}

} // namespace Torvik::View3d
