#include "labels/VertexLabel.h"

#include <Qt3DExtras/QExtrudedTextMesh>
#include <Qt3DExtras/QPhongMaterial>
#include <Qt3DRender/QAttribute>
#include <Qt3DRender/QGeometry>

namespace Torvik::View3d {

using Qt3DRender::QAttribute;

namespace {

const QVector3D up(0.0F, 1.0F, 0.0F);
/** From the front, a vertex of the letters also stands at the back and in the side. */
constexpr unsigned copiesOfAVertex = 3;

} // namespace

VertexLabel* VertexLabel::create(Renderable* parent, QString const& text)
{
    return new VertexLabel(parent, text);
}

VertexLabel::VertexLabel(Renderable* parent, QString const& text)
    : Label(parent, text)
    , m_mesh(new Qt3DExtras::QExtrudedTextMesh(this))
{
    auto* const phong = new Qt3DExtras::QPhongMaterial(this);
    phong->setAmbient(textColor());
    m_material = phong;
    m_mesh->setDepth(0.0F);
    m_mesh->setFont(font());
    m_mesh->setText(text);
    removeRedundantVertices();
    resizeAndReposition();
    addComponent(m_mesh);
    addComponent(m_material);
}

QQuaternion VertexLabel::orientation() const
{
    return parentRenderable() ? parentRenderable()->orientation() : QQuaternion();
}

void VertexLabel::setMaterial(Qt3DRender::QMaterial* material)
{
    removeComponent(m_material);
    m_material = material;
    addComponent(m_material);
}

void VertexLabel::debugPrintVertices(Qt3DRender::QAttribute*) {}

void VertexLabel::onTextChanged(QString text)
{
    m_mesh->setText(text);
    // The mesh keeps its letters when it is given none.
    if (text.trimmed().isEmpty())
        removeComponent(m_mesh);
    else
        addComponent(m_mesh);
    removeRedundantVertices();
    resizeAndReposition();
}

void VertexLabel::onHeightChanged() {}

void VertexLabel::onFontChanged()
{
    m_mesh->setFont(font());
    removeRedundantVertices();
    resizeAndReposition();
}

void VertexLabel::removeRedundantVertices()
{
    if (text().trimmed().isEmpty() || !m_mesh->geometry())
        return;
    const auto attributes = m_mesh->geometry()->attributes();
    if (attributes.isEmpty())
        return;
    QAttribute* const first = attributes.first();
    if (first->attributeType() != QAttribute::VertexAttribute || first->count() % copiesOfAVertex != 0)
        return;
    // The renderer takes a count over only with the mesh.
    removeComponent(m_mesh);
    first->setCount(first->count() / copiesOfAVertex);
    addComponent(m_mesh);
}

void VertexLabel::resizeAndReposition()
{
    const QQuaternion ofParent = parentRenderable() ? parentRenderable()->rotation() : QQuaternion();
    const QVector3D ahead = ofParent.rotatedVector({0.0F, 0.0F, 1.0F});
    const QQuaternion lying = QQuaternion::rotationTo(up, {0.0F, 0.0F, -1.0F});
    const QQuaternion turned = ofParent.inverted() * QQuaternion::fromDirection({ahead.x(), 0.0F, ahead.z()}, up) *
                               QQuaternion::fromDirection({-1.0F, 0.0F, 0.0F}, up) * lying;
    transform()->setRotation(turned, 0);

    // Another text is not a reason to move farther: only the difference to the last shift is a move.
    const QVector3D shift = turned.inverted().rotatedVector({0.0F, 0.0F, height() / 2.0F});
    Renderable::move(shift - m_shift, MeasurementType(1));
    m_shift = shift;
}

} // namespace Torvik::View3d
