#include "labels/VertexText.h"

#include <QFont>
#include <QMatrix4x4>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QExtrudedTextMesh>
#include <Qt3DExtras/QPerVertexColorMaterial>
#include <Qt3DRender/QAttribute>
#include <Qt3DRender/QBuffer>
#include <Qt3DRender/QGeometry>

#include <algorithm>
#include <cstring>

namespace Torvik::View3d {

using Qt3DRender::QAttribute;

namespace {

constexpr float depthMetres = 0.01F;
const QString family = QStringLiteral("DejaVuSans");

enum Horizontal { Centre = 1, Right = 2, Middle = 4 };
enum Vertical { Baseline = 0, HalfHeight = 2, Top = 3 };

const QAttribute* positionsOf(const Qt3DRender::QGeometryRenderer* mesh)
{
    if (!mesh->geometry())
        return nullptr;
    const auto attributes = mesh->geometry()->attributes();
    const auto found = std::find_if(attributes.begin(), attributes.end(), [](const QAttribute* attribute) {
        return attribute->name() == QAttribute::defaultPositionAttributeName();
    });
    return found == attributes.end() ? nullptr : *found;
}

/** From the plane of the letters, x along the text and y up, onto the ground. */
QMatrix4x4 ontoTheGround()
{
    QMatrix4x4 matrix;
    matrix.rotate(180, 0, 0, 1);
    matrix.rotate(90, 1, 0, 0);
    return matrix;
}

} // namespace

VertexText::VertexText(Qt3DCore::QEntity* parent, Params const& params)
    : Qt3DCore::QEntity(parent)
{
    auto* const letters = new Qt3DCore::QEntity(this);
    m_mesh = new Qt3DExtras::QExtrudedTextMesh(letters);
    m_mesh->setDepth(depthMetres);
    m_mesh->setFont(QFont(family));
    m_mesh->setText(params.text);

    QMatrix4x4 matrix;
    matrix.rotate(params.rotationDeg, 0, 1, 0);
    matrix.scale(params.scale);
    matrix.translate(getTextAlignOffset(params));
    matrix *= ontoTheGround();
    auto* const transform = new Qt3DCore::QTransform(letters);
    transform->setMatrix(matrix);

    letters->addComponent(m_mesh);
    letters->addComponent(new Qt3DExtras::QPerVertexColorMaterial(letters));
    letters->addComponent(transform);
}

QRectF VertexText::getTextRectF(Qt3DExtras::QExtrudedTextMesh* mesh)
{
    const QAttribute* const positions = positionsOf(mesh);
    if (!positions || !positions->buffer())
        return {};
    const QByteArray bytes = positions->buffer()->data();
    const auto stride = static_cast<int>(std::max(positions->byteStride(), positions->vertexSize() * 4U));
    QPointF low;
    QPointF high;
    bool any = false;
    for (int at = static_cast<int>(positions->byteOffset()); at + 2 * int(sizeof(float)) <= bytes.size();
         at += stride) {
        float xy[2];
        std::memcpy(xy, bytes.constData() + at, sizeof(xy));
        const QPointF point(static_cast<qreal>(xy[0]), static_cast<qreal>(xy[1]));
        low = any ? QPointF(std::min(low.x(), point.x()), std::min(low.y(), point.y())) : point;
        high = any ? QPointF(std::max(high.x(), point.x()), std::max(high.y(), point.y())) : point;
        any = true;
    }
    return {low, high};
}

QVector3D VertexText::getTextAlignOffset(Params const& params) const
{
    const QRectF rect = getTextRectF(m_mesh);
    const auto width = static_cast<float>(rect.width());
    const auto height = static_cast<float>(rect.height());
    QVector3D offset;
    if (params.horizontalAlignment == Right)
        offset.setX(width);
    else if (params.horizontalAlignment == Centre || params.horizontalAlignment == Middle)
        offset.setX(width / 2);
    if (params.verticalAlignment == Top)
        offset.setZ(-height);
    else if (params.verticalAlignment == Baseline || params.verticalAlignment == HalfHeight)
        offset.setZ(height / -2);
    return offset;
}

} // namespace Torvik::View3d
