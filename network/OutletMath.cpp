#include "network/OutletMath.h"

#include "interaction/RayMath.h"
#include "scene/Fuzzy.h"

#include <Qt3DCore/QTransform>

#include <algorithm>
#include <cmath>

namespace Torvik::View3d::OutletMath {

namespace {

constexpr double defaultDiameterMm = 300.0;
constexpr float minimalRadius = 0.05F;
constexpr float directionVisibleFrom = 0.1F;
constexpr float stubLength = 0.01F;
constexpr float storedFrom = 1e-5F;

/** A stored ordinate that says something: neither noise nor, as a text may give it, no number at all. */
bool isStored(float ordinate)
{
    return std::abs(ordinate) > storedFrom;
}

QVector3D level(const QVector3D& v)
{
    return {v.x(), 0.0F, v.z()};
}

} // namespace

double effectiveDiameter(double diameterMm)
{
    return Fuzzy::isNull(diameterMm) ? defaultDiameterMm : diameterMm;
}

float pipeRadius(double diameterMm)
{
    return std::max(static_cast<float>(diameterMm / 2000.0), minimalRadius);
}

float depthBelowNode(float recorded, float nodeDepth)
{
    return Fuzzy::isNull(recorded) ? nodeDepth * 0.5F : recorded;
}

QVector3D outletOffset(const QVector3D& direction, float offset)
{
    const QVector3D unit = direction.normalized();
    return {unit.x() * offset, 0.0F, unit.z() * offset};
}

QVector3D outletPosition(const QVector3D& node, float depth, const QVector3D& offset)
{
    return {node.x() - offset.x(), node.y() - depth, node.z() - offset.z()};
}

QVector3D endNodePosition(const QVector3D& pipeEnd, float depthOffset, const QVector3D& stored,
                          const QVector3D& storedScene)
{
    QVector3D result(pipeEnd.x(), pipeEnd.y() + depthOffset, pipeEnd.z());
    if (isStored(stored.x()) && isStored(stored.z())) {
        result.setX(storedScene.x());
        result.setZ(storedScene.z());
    }
    if (isStored(stored.y()))
        result.setY(storedScene.y());
    return result;
}

bool tooShortToShowDirection(float length)
{
    return std::max(stubLength, directionVisibleFrom) > length;
}

float northRotation(const QVector3D& start, const QVector3D& ahead)
{
    const QQuaternion turn = QQuaternion::rotationTo({0.0F, 0.0F, 1.0F}, level(ahead - start));
    const RayMath::AxisAngle axisAngle = RayMath::axisAndAngle(turn);
    return axisAngle.axis.y() < 0.0F ? axisAngle.angleDeg : -axisAngle.angleDeg;
}

QMatrix4x4 turnTowardsPoint(const QVector3D& start, const QVector3D& end, const QVector3D& target)
{
    const QQuaternion turn = QQuaternion::rotationTo(level(end - start), level(target - start));
    QVector3D axis;
    float angleDeg = 0.0F;
    turn.getAxisAndAngle(&axis, &angleDeg);
    return Qt3DCore::QTransform::rotateAround({start.x(), end.y(), start.z()}, angleDeg, axis);
}

} // namespace Torvik::View3d::OutletMath
