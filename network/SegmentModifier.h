#pragma once

#include "network/SegmentAction.h"
#include "scene/KxView3dExport.h"

#include <QVector>

namespace Torvik::View3d {

class EntitySegment;

/** Tells what a bend at a distance does to a chain of segments. */
class KXVIEW3D_EXPORT SegmentModifier {
public:
    SegmentAction getActionForNearestSegment(const QVector<EntitySegment*>& segments, float distance,
                                             float tolerance) const;

    /** Lengths of the segments, each rounded to centimetres. */
    static QVector<float> lengths(const QVector<EntitySegment*>& segments);
};

} // namespace Torvik::View3d
