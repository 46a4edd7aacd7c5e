#include "interaction/AxisControlArrows.h"

#include "interaction/ObjectPicker.h"
#include "labels/OnTopEffect.h"

#include <Qt3DCore/QTransform>
#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QMesh>
#include <Qt3DRender/QParameter>

#include <QUrl>

namespace Torvik::View3d {

namespace {

constexpr float distancePerSize = -1.2F;
const QVector3D arrowScale(0.5F, 1.0F, 2.0F);

/** Turns x, y and z to the way across, the normal and the axis. */
QMatrix4x4 orientation(const QVector3D& normal, const QVector3D& axis)
{
    QMatrix4x4 matrix;
    matrix.setColumn(0, QVector3D::crossProduct(normal, axis).normalized());
    matrix.setColumn(1, normal);
    matrix.setColumn(2, axis);
    matrix.setColumn(3, QVector4D(0.0F, 0.0F, 0.0F, 1.0F));
    return matrix;
}

} // namespace

AxisControlArrows::AxisControlArrows(Qt3DCore::QEntity* parent, QVector3D normal, QVector3D axis, float size)
    : Qt3DCore::QEntity(parent)
    , m_transform(new Qt3DCore::QTransform(this))
    , m_normal(normal.normalized())
    , m_axis(axis.normalized())
    , m_size(size)
{
    createArrows();
}

void AxisControlArrows::createArrows()
{
    auto* const root = new Qt3DCore::QEntity();
    m_objectPicker = new ObjectPicker(root);
    connect(m_objectPicker, &ObjectPicker::pressed, this, [this] { emit controlAxisSelected(m_axis); });
    connect(m_objectPicker, &ObjectPicker::released, this, &AxisControlArrows::controlAxisDeselected);
    for (const float angle : {0.0F, 180.0F}) {
        QMatrix4x4 matrix;
        matrix.rotate(angle, 0.0F, 1.0F, 0.0F);
        matrix.translate(0.0F, 0.0F, m_size * distancePerSize);
        createArrow(QColor(QStringLiteral("green")), root, matrix);
    }
    m_transform->setMatrix(orientation(m_normal, m_axis));
    root->setParent(this);
    root->addComponent(m_transform);
    root->addComponent(m_objectPicker);
}

void AxisControlArrows::createArrow(const QColor& color, Qt3DCore::QEntity* parent, const QMatrix4x4& matrix)
{
    auto* const arrow = new Qt3DCore::QEntity(parent);
    arrow->addComponent(createArrowMesh());
    auto* const material = new Qt3DRender::QMaterial(arrow);
    material->setEffect(new OnTopEffect(material));
    material->addParameter(new Qt3DRender::QParameter(QLatin1String(OnTopEffect::colourParameter), color, material));
    arrow->addComponent(material);
    auto* const place = new Qt3DCore::QTransform(arrow);
    place->setMatrix(matrix);
    place->setScale3D(arrowScale);
    arrow->addComponent(place);
}

Qt3DRender::QGeometryRenderer* AxisControlArrows::createArrowMesh()
{
    auto* const mesh = new Qt3DRender::QMesh(this);
    mesh->setSource(QUrl(QStringLiteral("qrc:/models/dirArrow.obj")));
    return mesh;
}

} // namespace Torvik::View3d
