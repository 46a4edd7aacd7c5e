#include "interaction/DragMath.h"

#include "interaction/RayMath.h"
#include "scene/Fuzzy.h"

#include <algorithm>

namespace Torvik::View3d::DragMath {

namespace {

constexpr float ringToDistance = 0.125F;
constexpr float leastRing = 2.5F;
/** Metres at which a handle of its own size is as large as a finger. */
constexpr float handleDistance = 35.0F;

} // namespace

QVector3D planeNormal(const QVector3D& axisLock, const QVector3D& viewVector)
{
    return Fuzzy::equal(axisLock.y(), 1.0F) ? viewVector : QVector3D(0.0F, 1.0F, 0.0F);
}

QVector3D constrained(const QVector3D& way, const QVector3D& axisLock, const QVector3D& controlAxis)
{
    if (!Fuzzy::equal(controlAxis.length() + 1.0F, 1.0F))
        return controlAxis * QVector3D::dotProduct(controlAxis, way);
    return way * axisLock;
}

float turn(const QVector3D& centre, const QVector3D& from, const QVector3D& to)
{
    // Headings count from +x towards +z, turns about y the other way round.
    return RayMath::headingDifference(centre, to, from);
}

float ringRadius(float viewDistance)
{
    return std::max(viewDistance * ringToDistance, leastRing);
}

float handleScale(float viewDistance)
{
    return std::max(viewDistance / handleDistance, 1.0F);
}

} // namespace Torvik::View3d::DragMath
