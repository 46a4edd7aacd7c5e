#include "network/Section.h"

#include "domain/boundary/CLogger.h"
#include "network/CylinderSegment.h"
#include "network/JointMath.h"
#include "network/Node.h"
#include "network/Pipe.h"
#include "scene/SceneRoot.h"

#include <Qt3DRender/QRayCaster>

#include <memory>

/** Drawing the pipe's end to something else: a preview that can be taken back, and stretches to what lies ahead. Fifth
 * part of Section's source. */
namespace Torvik::View3d {

using Qt3DRender::QAbstractRayCaster;
using Qt3DRender::QRayCaster;

namespace {

/** Metres that a search for the next pipe reaches past the end. */
constexpr float searchReach = 5.0F;

bool isIdentity(const QQuaternion& rotation)
{
    return rotation == QQuaternion();
}

/** The section that an entity is part of, or null. */
Section* sectionAbove(Qt3DCore::QEntity* entity)
{
    while (entity && !qobject_cast<Renderable*>(entity))
        entity = entity->parentEntity();
    return qobject_cast<Section*>(entity);
}

float halfRadiusOfSegment(Qt3DCore::QEntity* entity)
{
    const auto* const segment = qobject_cast<const CylinderSegment*>(entity->parentEntity());
    return segment ? segment->radius() * 0.5F : 0.0F;
}

} // namespace

void Section::connectTo(Renderable* target)
{
    if (!target || m_connecting)
        return;
    EntitySegment* const last = m_pipe->lastSegment();
    if (!last)
        return;
    const QQuaternion parent = last->parentRotation();
    const QMatrix4x4 world = m_pipe->worldMatrix();
    const auto reach = JointMath::reach(world * last->beginPoint(), target->connectionPoint(this),
                                        QQuaternion::fromRotationMatrix(world.normalMatrix()), parent);
    m_savedLength = last->length();
    m_savedRotation = isIdentity(parent) ? last->rotation() : parent.inverted() * last->rotation();
    last->setRotation(reach.rotation);
    last->setLength(reach.length);
    last->createConnectionJoint();
    m_connecting = true;
}

void Section::connectApply()
{
    m_shapeAccess.writePoints(this);
    m_savedRotation = {};
    m_connecting = false;
}

void Section::connectCancel()
{
    if (!m_connecting)
        return;
    if (EntitySegment* const last = m_pipe->lastSegment()) {
        last->setRotation(m_savedRotation);
        last->setLength(m_savedLength);
        last->removeConnectionJoint();
    }
    m_savedRotation = {};
    m_connecting = false;
}

void Section::stretchLastSegment(float length)
{
    m_pipe->lastSegment()->setLength(length);
    emit sectionGeometryChanged();
    m_shapeAccess.writePoints(this);
}

void Section::connectToEnd()
{
    if (!m_endNode || m_endNode->isVirtual()) {
        connectToNearestSectionEntity(SceneRoot::instance() ? SceneRoot::instance()->rayCaster() : nullptr);
        return;
    }
    const EntitySegment* const last = m_pipe->lastSegment();
    if (!last)
        return;
    const QVector3D begin = m_pipe->worldMatrix() * last->beginPoint();
    const QVector3D end = m_pipe->getTransformMatrixAtDistance(m_pipe->length()).column(3).toVector3D();
    float length = 0.0F;
    if (JointMath::lengthAbreastOf(begin, end, m_endNode->position(), length))
        stretchLastSegment(length);
}

void Section::connectToNearestSectionEntity(QRayCaster* rayCaster)
{
    if (!rayCaster) {
        Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("View3d::Section"),
                                     QStringLiteral("Missing raycaster"));
        return;
    }
    const EntitySegment* const last = m_pipe->lastSegment();
    if (!last)
        return;
    rayCaster->setRunMode(QAbstractRayCaster::SingleShot);
    const QMatrix4x4 world = m_pipe->worldMatrix();
    const QVector3D begin = world * last->beginPoint();
    const QVector3D end = world * last->endPoint();

    const auto once = std::make_shared<QMetaObject::Connection>();
    *once =
        connect(rayCaster, &QAbstractRayCaster::hitsChanged, this, [this, once](const QAbstractRayCaster::Hits& hits) {
            disconnect(*once);
            QVector<QPair<Qt3DCore::QEntity*, float>> met;
            for (const auto& hit : hits)
                met.append({hit.entity(), hit.distance()});
            stretchInto(met);
        });
    rayCaster->trigger(begin, (end - begin).normalized(), begin.distanceToPoint(end) + searchReach);
}

void Section::stretchInto(const QVector<QPair<Qt3DCore::QEntity*, float>>& met)
{
    for (const auto& [entity, distance] : met) {
        const Section* const section = entity ? sectionAbove(entity) : nullptr;
        if (section && section != this)
            stretchLastSegment(distance + halfRadiusOfSegment(entity));
    }
}

} // namespace Torvik::View3d
