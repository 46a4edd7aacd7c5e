#include "network/EntitySegment.h"

#include "network/ChainMath.h"
#include "scene/FlaggedTransform.h"
#include "scene/HasTransform.h"

#include <Qt3DCore/QTransform>

namespace Torvik::View3d {

EntitySegment::EntitySegment(Qt3DCore::QNode* parent, EntitySegment* prev, QVector3D begin, QVector3D end)
    : Qt3DCore::QEntity(parent)
    , m_prev(prev)
{
    setWorldTransform();
    m_points = PointSegment(begin, end, determineUpVector(prev, (end - begin).normalized()));
    if (prev)
        m_localRotation = prev->rotation().inverted() * QQuaternion::fromDirection(direction(), upDirection());
}

void EntitySegment::createConnectionJoint() {}

void EntitySegment::removeConnectionJoint() {}

void EntitySegment::setWorldTransform()
{
    const Qt3DCore::QEntity* pipe = parentEntity();
    if (const auto* holder = dynamic_cast<HasTransform*>(pipe ? pipe->parentEntity() : nullptr))
        m_worldTransform = holder->transform();
}

QVector3D EntitySegment::determineUpVector(const EntitySegment* prev, const QVector3D& direction) const
{
    const QVector3D up(0.0F, 1.0F, 0.0F);
    const QVector3D worldUp = m_worldTransform ? m_worldTransform->matrix().inverted().mapVector(up) : up;
    const ChainMath::Frame previous =
        prev ? ChainMath::Frame {prev->direction(), prev->upDirection()} : ChainMath::Frame();
    return ChainMath::upVector(direction, previous, worldUp);
}

QQuaternion EntitySegment::parentRotation() const
{
    return m_prev ? m_prev->rotation() : QQuaternion();
}

void EntitySegment::setPrevSegment(EntitySegment* prev)
{
    m_prev = prev;
}

void EntitySegment::setLength(float length)
{
    calcPointsLength(length);
    calcMeshLength(length);
}

void EntitySegment::setRotation(const QQuaternion& rotation)
{
    calcPointsRotation(rotation);
    calcMeshRotation(rotation);
}

void EntitySegment::recalcPointsRotation()
{
    calcPointsRotation(m_localRotation);
    calcMeshRotation(QQuaternion());
}

void EntitySegment::translateBy(const QVector3D& vector)
{
    const QVector3D begin = m_prev ? m_prev->endPoint() : beginPoint() + vector;
    setPoints(PointSegment(begin, endPoint() + vector, upDirection()));
    calcMeshRotation(rotation());
}

void EntitySegment::setPoints(const PointSegment& points)
{
    const float before = length();
    m_points = points;
    const bool same = before <= length() && length() <= before;
    if (m_lengthListener && !same)
        m_lengthListener->onSegmentLengthChanged(this);
}

void EntitySegment::calcPointsLength(float length)
{
    setPoints(PointSegment(beginPoint(), beginPoint() + direction() * length, upDirection()));
}

void EntitySegment::calcPointsRotation(const QQuaternion& rotation)
{
    const QQuaternion absolute = parentRotation() * rotation;
    const QVector3D begin = m_prev ? m_prev->endPoint() : m_origin;
    const QVector3D end = begin + absolute.rotatedVector(QVector3D(0.0F, 0.0F, length()));
    const QVector3D up = determineUpVector(m_prev, (end - begin).normalized());
    m_localRotation = rotation;
    setPoints(PointSegment(begin, end, up));
}

} // namespace Torvik::View3d
