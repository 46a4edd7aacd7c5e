#include "network/JointMark.h"

#include "network/JointMath.h"
#include "network/NodeMaterials.h"
#include "network/Observation.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <Qt3DCore/QTransform>
#include <Qt3DRender/QMaterial>

namespace Torvik::View3d {

namespace {

/** The mesh stands out of the pipe's axis by half the length of a usual stub. */
constexpr float meshOffset = 0.15F;

const SceneRoot* rootAbove(const Qt3DCore::QEntity* entity)
{
    while (entity && !qobject_cast<const SceneRoot*>(entity))
        entity = entity->parentEntity();
    return qobject_cast<const SceneRoot*>(entity);
}

} // namespace

JointMark::JointMark(Observation* observation)
    : Renderable(observation)
    , m_observation(observation)
{
}

JointMark::~JointMark()
{
    SceneEntities::instance().removeObject(this);
}

void JointMark::init()
{
    m_entity = new Qt3DCore::QEntity(this);
    m_mesh = unitMesh();
    m_entity->addComponent(m_mesh);
    m_meshTransform = new Qt3DCore::QTransform(m_entity);
    m_meshTransform->setRotation(QQuaternion::fromAxisAndAngle(1.0F, 0.0F, 0.0F, 90.0F));
    m_meshTransform->setTranslation({0.0F, 0.0F, meshOffset});
    m_entity->addComponent(m_meshTransform);
    if (const SceneRoot* const root = rootAbove(this))
        showMaterial(root->materialConnection());
}

QString JointMark::renderableType() const
{
    return QStringLiteral("connection");
}

QQuaternion JointMark::orientation() const
{
    return m_observation->orientation() * rotation();
}

void JointMark::calculateTransform()
{
    transform()->setRotation(JointMath::jointRotation(m_clock, m_jointAngle), 0);
}

void JointMark::refreshData()
{
    setDiameter(m_observation->getDiameter());
    setClock(m_observation->getClock1());
    setJointAngle(m_observation->getJointAngle());
}

void JointMark::setClock(int clock)
{
    m_clock = clock;
    calculateTransform();
}

void JointMark::setJointAngle(float jointAngle)
{
    m_jointAngle = jointAngle;
    calculateTransform();
}

void JointMark::scaleMesh(const QVector3D& scale)
{
    m_meshTransform->setScale3D(scale);
}

void JointMark::setVisible(bool visible)
{
    if (m_visible == visible)
        return;
    m_visible = visible;
    if (visible) {
        // Asked for anew: others may have taken the old one's room meanwhile.
        m_mesh = unitMesh();
        m_entity->addComponent(m_mesh);
    } else if (m_mesh) {
        m_entity->removeComponent(m_mesh);
    }
}

void JointMark::showMaterial(Qt3DRender::QMaterial* material)
{
    if (m_shownMaterial)
        m_entity->removeComponent(m_shownMaterial);
    m_shownMaterial = NodeMaterials::standInFor(material);
    if (m_shownMaterial)
        m_entity->addComponent(m_shownMaterial);
}

} // namespace Torvik::View3d
