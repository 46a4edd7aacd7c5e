#include "interaction/AxisControlArrows.h"

#include "interaction/DragMath.h"
#include "interaction/ObjectPicker.h"
#include "interaction/Utils3d.h"
#include "labels/OnTopEffect.h"
#include "scene/Renderable.h"
#include "scene/SceneRoot.h"

#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCuboidMesh>
#include <Qt3DRender/QCamera>
#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QMesh>
#include <Qt3DRender/QParameter>

#include <QUrl>

namespace Torvik::View3d {

namespace {

constexpr float distancePerSize = -1.2F;
const QVector3D arrowScale(0.5F, 1.0F, 2.0F);
constexpr float padWidth = 0.7F;
constexpr float padLength = 1.1F;
/** The object itself is to be picked inside. */
constexpr float padBegin = 0.4F;

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

AxisControlArrows::AxisControlArrows(Renderable* parent, QVector3D normal, QVector3D axis, float size)
    : Qt3DCore::QEntity(parent)
    , m_renderable(parent)
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
    createPad(root);
    m_transform->setMatrix(orientation(m_normal, m_axis));
    root->setParent(this);
    root->addComponent(m_transform);
    followView();
    if (const auto* const camera = SceneRoot::camera())
        connect(camera, &Qt3DRender::QCamera::viewVectorChanged, this, &AxisControlArrows::followView);
}

void AxisControlArrows::followView()
{
    m_transform->setScale(DragMath::handleScale(Utils3d::lensDistance(SceneRoot::camera())));
}

void AxisControlArrows::createPad(Qt3DCore::QEntity* parent)
{
    // Never drawn: it is there for the finger, which is wider than an arrow.
    for (const float side : {-1.0F, 1.0F}) {
        auto* const pad = new Qt3DCore::QEntity(parent);
        auto* const box = new Qt3DExtras::QCuboidMesh(pad);
        box->setXExtent(padWidth);
        box->setYExtent(padWidth);
        box->setZExtent(padLength);
        auto* const place = new Qt3DCore::QTransform(pad);
        place->setTranslation({0.0F, 0.0F, side * (padBegin + padLength / 2.0F)});
        pad->addComponent(box);
        pad->addComponent(place);
    }
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
