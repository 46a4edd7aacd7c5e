#include "network/CylinderSegment.h"

#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QSphereMesh>

#include <algorithm>

namespace Torvik::View3d {

namespace {

/** A scale of zero would leave the renderer without normals. */
constexpr float leastScale = 1e-4F;

GoochLook defaultLook()
{
    GoochLook look;
    look.cool = QColor::fromRgbF(0.0, 0.3, 0.0, 1.0);
    look.warm = QColor::fromRgbF(0.0, 0.9, 0.0, 1.0);
    return look;
}

} // namespace

CylinderSegment::CylinderSegment(Qt3DCore::QNode* parent, EntitySegment* prev, const QVector3D& begin,
                                 const QVector3D& end, Drawing drawing)
    : EntitySegment(parent, prev, begin, end)
{
    if (drawing == Drawing::AtOnce)
        draw();
    transformFromPoints();
}

void CylinderSegment::draw()
{
    if (isDrawn())
        return;
    init();
    createJoint();
    calcLocalTransform();
}

void CylinderSegment::init()
{
    m_material = createMaterial();
    m_meshEntity = new Qt3DCore::QEntity(this);
    m_meshTransform = new Qt3DCore::QTransform(m_meshEntity);
    m_segmentTransform = new Qt3DCore::QTransform(this);
    addComponent(m_segmentTransform);
    initTransform();
    m_meshEntity->addComponent(SharedComponents::instance().unitCylinder());
    m_meshEntity->addComponent(m_material);
    m_meshEntity->addComponent(m_meshTransform);
}

GoochLook CylinderSegment::look() const
{
    return m_color ? SharedComponents::lookFromWarm(*m_color) : defaultLook();
}

Qt3DRender::QMaterial* CylinderSegment::createMaterial() const
{
    return SharedComponents::instance().goochMaterial(look());
}

void CylinderSegment::initTransform()
{
    if (!m_meshTransform)
        return;
    const QVector3D forward(0.0F, 0.0F, 1.0F);
    QVector3D reach = m_meshLength * forward;
    QQuaternion turn;
    float length = m_meshLength;
    if (!m_alsoDrawn.isEmpty()) {
        reach = m_rotation.inverted().rotatedVector(m_alsoDrawn.last()->endPoint() - beginPoint());
        turn = QQuaternion::rotationTo(forward, reach);
        length = reach.length();
    }
    const float width = std::max(m_radius, leastScale);
    m_meshTransform->setTranslation(reach / 2.0F);
    m_meshTransform->setRotation(turn * QQuaternion::fromAxisAndAngle(1.0F, 0.0F, 0.0F, 90.0F));
    m_meshTransform->setScale3D(QVector3D(width, std::max(length, leastScale), width));
}

CylinderSegment::Ball CylinderSegment::createBall(const QVector3D& position)
{
    Ball ball;
    ball.entity = new Qt3DCore::QEntity(this);
    ball.transform = new Qt3DCore::QTransform(ball.entity);
    ball.transform->setTranslation(position);
    ball.transform->setScale(std::max(m_radius, leastScale));
    ball.entity->addComponent(SharedComponents::instance().unitSphere());
    ball.entity->addComponent(m_material);
    ball.entity->addComponent(ball.transform);
    return ball;
}

void CylinderSegment::createJoint()
{
    if (m_prev)
        m_prevJoint = createBall(QVector3D());
}

void CylinderSegment::createConnectionJoint()
{
    removeConnectionJoint();
    drawAlone();
    draw();
    m_joint = createBall(QVector3D(0.0F, 0.0F, m_meshLength));
}

void CylinderSegment::removeConnectionJoint()
{
    if (m_joint.entity)
        m_joint.entity->deleteLater();
    m_joint = Ball();
}

void CylinderSegment::setColor(QColor color)
{
    if (!(SharedComponents::lookFromWarm(color) == look()))
        drawAlone();
    setColorAlong(color);
}

void CylinderSegment::setColorAlong(QColor color)
{
    if (SharedComponents::lookFromWarm(color) == look())
        return;
    m_color = color;
    if (isDrawn())
        replaceMaterial(createMaterial());
}

void CylinderSegment::replaceMaterial(Qt3DRender::QMaterial* material)
{
    for (Qt3DCore::QEntity* entity : {m_meshEntity, m_prevJoint.entity.data(), m_joint.entity.data()}) {
        if (!entity)
            continue;
        entity->removeComponent(m_material);
        entity->addComponent(material);
    }
    m_material = material;
}

void CylinderSegment::setRadius(float radius)
{
    drawAlone();
    setRadiusAlong(radius);
}

void CylinderSegment::setRadiusAlong(float radius)
{
    m_radius = radius;
    initTransform();
    for (const Ball& ball : {m_prevJoint, m_joint}) {
        if (ball.entity)
            ball.transform->setScale(std::max(radius, leastScale));
    }
}

void CylinderSegment::calcMeshLength(float length)
{
    drawAlone();
    m_meshLength = length;
    initTransform();
}

void CylinderSegment::calcMeshRotation(const QQuaternion& /*rotation*/)
{
    transformFromPoints();
}

void CylinderSegment::transformFromPoints()
{
    m_rotation = QQuaternion::fromDirection(direction(), upDirection());
    m_origin = beginPoint();
    setLength(length());
    calcLocalTransform();
}

void CylinderSegment::calcLocalTransform()
{
    if (!m_segmentTransform)
        return;
    m_segmentTransform->setTranslation(m_origin);
    m_segmentTransform->setRotation(m_rotation);
}

} // namespace Torvik::View3d
