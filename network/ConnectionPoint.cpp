#include "network/ConnectionPoint.h"

#include "interaction/TouchControl.h"
#include "network/JointMath.h"
#include "network/Observation.h"
#include "scene/Fuzzy.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"
#include "scene/SharedComponents.h"

#include <QPropertyAnimation>
#include <Qt3DExtras/QSphereMesh>
#include <Qt3DRender/QMaterial>

namespace Torvik::View3d {

namespace {

constexpr int resizeMs = 1000;
constexpr float swelling = 1.5F;

} // namespace

QString ConnectionPoint::guidPrefix()
{
    return QStringLiteral("connection_");
}

ConnectionPoint::ConnectionPoint(Observation* observation)
    : JointMark(observation)
{
    if (const SceneRoot* const root = SceneRoot::instance()) {
        m_materialSelected = root->materialSelected();
        m_materialDefault = root->materialPipe();
        m_materialConnecting = root->materialNode();
    }
    connect(GlobalNav::instance(), &GlobalNav::connectionModeChanged, this, &ConnectionPoint::handleConnectionMode);
    init();
    refreshData();
}

Qt3DCore::QComponent* ConnectionPoint::unitMesh() const
{
    return SharedComponents::instance().unitSphere();
}

TouchControlBase* ConnectionPoint::createTouchControl()
{
    return new TouchControl(this, false);
}

QString ConnectionPoint::guid()
{
    const QString own = Renderable::guid();
    return own.startsWith(guidPrefix()) ? own : guidPrefix() + own;
}

QVector3D ConnectionPoint::connectionPoint(Renderable* /*other*/)
{
    return observation()->position();
}

void ConnectionPoint::setRadius(float radius)
{
    m_radius = radius;
    scaleMesh({radius, radius, radius});
}

float ConnectionPoint::scaleRadius(float radius) const
{
    return JointMath::sphereAround(radius);
}

void ConnectionPoint::setDiameter(float diameter)
{
    setVisualLength(JointMath::stubRadius(diameter));
}

void ConnectionPoint::setVisualLength(float radius)
{
    setRadius(scaleRadius(radius));
    m_savedRadius = m_radius;
    calculateTransform();
}

void ConnectionPoint::onPipeDiameterChanged(float diameter)
{
    setDiameter(diameter);
    setClock(observation()->getClock1());
    setJointAngle(observation()->getJointAngle());
}

void ConnectionPoint::startResizeRadiusAnim(float radius)
{
    auto* const animation = new QPropertyAnimation(this, "radius", this);
    animation->setDuration(resizeMs);
    animation->setStartValue(m_savedRadius);
    animation->setEndValue(radius);
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void ConnectionPoint::handleConnectionMode(bool on)
{
    if (!on) {
        // From the saved radius to itself: the sphere snaps back.
        startResizeRadiusAnim(m_savedRadius);
        setDefaultMaterial();
        return;
    }
    if (!Fuzzy::equal(m_savedRadius, m_radius))
        m_savedRadius = m_radius;
    startResizeRadiusAnim(m_savedRadius * swelling);
    showMaterial(m_materialConnecting);
}

void ConnectionPoint::setSelectedMaterial()
{
    showMaterial(m_materialSelected);
}

void ConnectionPoint::setDefaultMaterial()
{
    showMaterial(m_materialDefault);
}

} // namespace Torvik::View3d
