#include "scene/TransformFlags.h"

namespace Torvik::View3d {

TransformFlags::TransformFlags(int flags)
    : m_flags(flags)
{
}

int TransformFlags::allTransformFlags()
{
    return Observations | CAD | Manual | GPS | GIS | Geosensor | PipeShape;
}

bool TransformFlags::hasPosition() const
{
    return (m_flags & allTransformFlags()) != 0;
}

bool TransformFlags::positionBound() const
{
    return (m_flags & allTransformFlags() & ~Observations) != 0;
}

} // namespace Torvik::View3d
