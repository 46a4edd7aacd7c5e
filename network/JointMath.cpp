#include "network/JointMath.h"

#include "scene/Fuzzy.h"

#include <algorithm>

namespace Torvik::View3d::JointMath {

namespace {

constexpr int degreesPerHour = 30;
constexpr float millimetresPerRadius = 2000.0F;
constexpr float thinner = 0.01F;
constexpr float leastRadius = 0.04F;
constexpr float sphereToStub = 1.16F;
const QVector3D up(0.0F, 1.0F, 0.0F);

QQuaternion rotationOf(const QMatrix4x4& matrix)
{
    return QQuaternion::fromRotationMatrix(matrix.normalMatrix());
}

} // namespace

QQuaternion jointRotation(int clock, float jointAngle)
{
    const auto aroundPipe = QQuaternion::fromAxisAndAngle(0.0F, 0.0F, 1.0F, static_cast<float>(clock * degreesPerHour));
    return aroundPipe * QQuaternion::fromAxisAndAngle(1.0F, 0.0F, 0.0F, jointAngle - 180.0F);
}

float stubRadius(float diameterMm)
{
    return std::max(diameterMm / millimetresPerRadius - thinner, leastRadius);
}

float sphereRadius(float diameterMm)
{
    return sphereAround(stubRadius(diameterMm));
}

float sphereAround(float radius)
{
    return radius * sphereToStub;
}

Reach reach(const QVector3D& begin, const QVector3D& target, const QQuaternion& worldRotation,
            const QQuaternion& parentRotation)
{
    const QVector3D way = target - begin;
    const auto inScene = QQuaternion::fromDirection(way.normalized(), up);
    return {parentRotation.inverted() * worldRotation.inverted() * inScene, way.length()};
}

bool lengthAbreastOf(const QVector3D& begin, const QVector3D& end, const QVector3D& target, float& length)
{
    const QVector3D segment = end - begin;
    if (Fuzzy::isNull(segment.length()))
        return false;
    const QVector3D way(target.x() - begin.x(), segment.y(), target.z() - begin.z());
    length = QVector3D::dotProduct(way, segment) / segment.length();
    return true;
}

QQuaternion offsetFromJoint(const QMatrix4x4& joint, const QMatrix4x4& pipe)
{
    return rotationOf(joint).inverted() * rotationOf(pipe);
}

} // namespace Torvik::View3d::JointMath
