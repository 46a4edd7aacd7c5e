#include "labels/GridPlane.h"

#include "domain/boundary/BaseServices.h"
#include "labels/GridMath.h"
#include "scene/Fuzzy.h"

#include <QMutexLocker>
#include <Qt3DCore/QTransform>
#include <Qt3DRender/QAttribute>
#include <Qt3DRender/QBuffer>
#include <Qt3DRender/QGeometry>
#include <Qt3DRender/QGeometryRenderer>
#include <Qt3DRender/QMaterial>

namespace Torvik::View3d {

using Base::GlobalLocaleData;
using Qt3DRender::QAttribute;
using Qt3DRender::QBuffer;
using Qt3DRender::QGeometry;
using Qt3DRender::QGeometryRenderer;

namespace {

constexpr int unitFeet = 2;
constexpr unsigned ordinates = 3;
constexpr unsigned colourOffset = ordinates * sizeof(float);
constexpr unsigned stride = GridMath::floatsPerVertex * sizeof(float);

void addAttribute(QGeometry* geometry, QBuffer* buffer, const QString& name, unsigned offset, unsigned count)
{
    auto* const attribute = new QAttribute(geometry);
    attribute->setName(name);
    attribute->setAttributeType(QAttribute::VertexAttribute);
    attribute->setVertexBaseType(QAttribute::Float);
    attribute->setVertexSize(ordinates);
    attribute->setByteOffset(offset);
    attribute->setByteStride(stride);
    attribute->setCount(count);
    attribute->setBuffer(buffer);
    geometry->addAttribute(attribute);
}

} // namespace

GridPlane::GridPlane(Qt3DCore::QEntity* parent, Qt3DRender::QMaterial* material)
    : Qt3DCore::QEntity(parent)
    , m_transform(new Qt3DCore::QTransform(this))
    , m_squareSize(GridMath::baseSquareSize(imperialUnits()))
    , m_scales(GridMath::scales(imperialUnits()))
{
    resize();
    m_transform->setRotation(QQuaternion::fromAxisAndAngle(1, 0, 0, 90));
    m_transform->setTranslation({});
    addComponent(createWireframePlaneMesh(2 * static_cast<unsigned>(m_squaresPerSide) + 1));
    addComponent(material);
    addComponent(m_transform);
    connect(&GlobalLocaleData::instance(), &GlobalLocaleData::localeChanged, this, &GridPlane::onLocaleChanged);
}

QVector3D GridPlane::position() const
{
    return m_transform->translation();
}

bool GridPlane::imperialUnits()
{
    return Base::CLocaleSupport::getDistanceUnit() == unitFeet;
}

void GridPlane::resize()
{
    const float scale = 2 * m_squareSize * static_cast<float>(m_squaresPerSide);
    m_transform->setScale3D({scale, scale, 1});
}

void GridPlane::reposition(const QVector3D& point)
{
    const QVector3D before = position();
    m_transform->setTranslation(GridMath::onLattice(point, m_squareSize));
    if (position() != before)
        emit positionChanged();
}

float GridPlane::calculateGridSquareSize(float distance) const
{
    return GridMath::squareSizeForDistance(distance, m_squareSize, GridMath::baseSquareSize(imperialUnits()), m_scales);
}

void GridPlane::resizeForDistance(float distance)
{
    m_distance = distance;
    const float size = calculateGridSquareSize(distance);
    if (Fuzzy::equalBiased(size, m_squareSize))
        return;
    m_squareSize = size;
    emit gridSquareSizeChanged(size);
    resize();
}

void GridPlane::onLocaleChanged()
{
    const QMutexLocker lock(&m_mutex);
    const float before = m_squareSize;
    const float base = GridMath::baseSquareSize(imperialUnits());
    m_squareSize = base;
    m_scales = GridMath::scales(imperialUnits());
    resizeForDistance(m_distance);
    if (m_squareSize == base && base != before) {
        // Near enough for the base size there is no step that would tell of it.
        emit gridSquareSizeChanged(base);
        resize();
    }
    reposition(position());
}

QGeometryRenderer* GridPlane::createWireframePlaneMesh(unsigned linesPerDirection)
{
    const QVector<float> vertices = GridMath::wireframe(linesPerDirection);
    auto* const mesh = new QGeometryRenderer;
    auto* const geometry = new QGeometry(mesh);
    auto* const buffer = new QBuffer(geometry);
    buffer->setData(QByteArray(reinterpret_cast<const char*>(vertices.constData()),
                               vertices.size() * static_cast<int>(sizeof(float))));
    const auto count = static_cast<unsigned>(vertices.size() / GridMath::floatsPerVertex);
    addPositionAttributeToGeometry(geometry, buffer, count);
    addColorAttributeToGeometry(geometry, buffer, count);
    mesh->setGeometry(geometry);
    mesh->setPrimitiveType(QGeometryRenderer::Lines);
    return mesh;
}

void GridPlane::addPositionAttributeToGeometry(QGeometry* geometry, QBuffer* buffer, unsigned count)
{
    addAttribute(geometry, buffer, QAttribute::defaultPositionAttributeName(), 0, count);
}

void GridPlane::addColorAttributeToGeometry(QGeometry* geometry, QBuffer* buffer, unsigned count)
{
    addAttribute(geometry, buffer, QAttribute::defaultColorAttributeName(), colourOffset, count);
}

} // namespace Torvik::View3d
