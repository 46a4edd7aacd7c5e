#include "host/drawing/DrawingEntities.h"

#include <Qt3DCore/QEntity>
#include <Qt3DRender/QAttribute>
#include <Qt3DRender/QBlendEquation>
#include <Qt3DRender/QBlendEquationArguments>
#include <Qt3DRender/QBuffer>
#include <Qt3DRender/QDepthTest>
#include <Qt3DRender/QEffect>
#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QGeometry>
#include <Qt3DRender/QGeometryRenderer>
#include <Qt3DRender/QGraphicsApiFilter>
#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QNoDepthMask>
#include <Qt3DRender/QPointSize>
#include <Qt3DRender/QPolygonOffset>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>

#include <cstddef>

namespace Torvik::DXF {

namespace {

using Qt3DRender::QAttribute;
using Qt3DRender::QGraphicsApiFilter;

struct Dialect {
    QGraphicsApiFilter::Api api;
    QGraphicsApiFilter::OpenGLProfile profile;
    int major;
    int minor;
    const char* vertexShader;
    const char* fragmentShader;
};

constexpr const char* newVertex = "#version 140\n"
                                  "in vec3 vertexPosition;\nin vec4 vertexColor;\nout vec4 colour;\nuniform mat4 mvp;\n"
                                  "void main() { colour = vertexColor; gl_PointSize = 5.0;\n"
                                  "gl_Position = mvp * vec4(vertexPosition, 1.0); }\n";
constexpr const char* newFragment = "#version 140\nin vec4 colour;\nout vec4 shown;\nvoid main() { shown = colour; }\n";
constexpr const char* oldVertex =
    "attribute highp vec3 vertexPosition;\nattribute lowp vec4 vertexColor;\nvarying lowp vec4 colour;\n"
    "uniform highp mat4 mvp;\nvoid main() { colour = vertexColor; gl_PointSize = 5.0;\n"
    "gl_Position = mvp * vec4(vertexPosition, 1.0); }\n";
constexpr const char* oldFragment = "varying lowp vec4 colour;\nvoid main() { gl_FragColor = colour; }\n";

const Dialect dialects[] = {
    {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::CoreProfile, 3, 1, newVertex, newFragment},
    {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::NoProfile, 2, 0, oldVertex, oldFragment},
    {QGraphicsApiFilter::OpenGLES, QGraphicsApiFilter::NoProfile, 2, 0, oldVertex, oldFragment}};

void addStates(Qt3DRender::QRenderPass* pass, DrawingMesh::Kind kind)
{
    auto* const depth = new Qt3DRender::QDepthTest;
    depth->setDepthFunction(Qt3DRender::QDepthTest::LessOrEqual);
    pass->addRenderState(depth);
    if (kind == DrawingMesh::Points) {
        auto* const size = new Qt3DRender::QPointSize;
        size->setSizeMode(Qt3DRender::QPointSize::Programmable);
        pass->addRenderState(size);
    }
    if (kind != DrawingMesh::Fills)
        return;
    auto* const behind = new Qt3DRender::QPolygonOffset;
    behind->setScaleFactor(1.0F);
    behind->setDepthSteps(1.0F);
    pass->addRenderState(behind);
    // Fills of one height would hide each other by the accident of their rounding.
    pass->addRenderState(new Qt3DRender::QNoDepthMask);
    auto* const blend = new Qt3DRender::QBlendEquationArguments;
    blend->setSourceRgb(Qt3DRender::QBlendEquationArguments::SourceAlpha);
    blend->setDestinationRgb(Qt3DRender::QBlendEquationArguments::OneMinusSourceAlpha);
    blend->setSourceAlpha(Qt3DRender::QBlendEquationArguments::One);
    blend->setDestinationAlpha(Qt3DRender::QBlendEquationArguments::OneMinusSourceAlpha);
    pass->addRenderState(blend);
    pass->addRenderState(new Qt3DRender::QBlendEquation);
}

Qt3DRender::QTechnique* makeTechnique(const Dialect& dialect, DrawingMesh::Kind kind)
{
    auto* const program = new Qt3DRender::QShaderProgram;
    program->setVertexShaderCode(dialect.vertexShader);
    program->setFragmentShaderCode(dialect.fragmentShader);
    auto* const pass = new Qt3DRender::QRenderPass;
    pass->setShaderProgram(program);
    addStates(pass, kind);

    auto* const technique = new Qt3DRender::QTechnique;
    auto* const filter = technique->graphicsApiFilter();
    filter->setApi(dialect.api);
    filter->setProfile(dialect.profile);
    filter->setMajorVersion(dialect.major);
    filter->setMinorVersion(dialect.minor);
    auto* const key = new Qt3DRender::QFilterKey;
    key->setName(QStringLiteral("renderingStyle"));
    key->setValue(QStringLiteral("forward"));
    technique->addFilterKey(key);
    technique->addRenderPass(pass);
    return technique;
}

QAttribute* makeAttribute(Qt3DRender::QBuffer* buffer, const QString& name, QAttribute::VertexBaseType type, uint size,
                          uint offset, int count)
{
    auto* const attribute = new QAttribute;
    attribute->setName(name);
    attribute->setAttributeType(QAttribute::VertexAttribute);
    attribute->setBuffer(buffer);
    attribute->setVertexBaseType(type);
    attribute->setVertexSize(size);
    attribute->setByteOffset(offset);
    attribute->setByteStride(sizeof(DrawingMesh::Vertex));
    attribute->setCount(uint(count));
    return attribute;
}

/** Two places that span what the mesh does. */
QAttribute* makeBounds(const DrawingMesh& mesh, Qt3DCore::QNode* parent)
{
    const float corners[6] = {mesh.smallest.x(), mesh.smallest.y(), mesh.smallest.z(),
                              mesh.largest.x(),  mesh.largest.y(),  mesh.largest.z()};
    auto* const buffer = new Qt3DRender::QBuffer(parent);
    buffer->setData(QByteArray(reinterpret_cast<const char*>(corners), sizeof corners));
    auto* const bounds = makeAttribute(buffer, QStringLiteral("bounds"), QAttribute::Float, 3, 0, 2);
    bounds->setByteStride(3 * sizeof(float));
    return bounds;
}

Qt3DRender::QGeometry* makeGeometry(const DrawingMesh& mesh)
{
    auto* const geometry = new Qt3DRender::QGeometry;
    auto* const buffer = new Qt3DRender::QBuffer(geometry);
    buffer->setData(mesh.vertices);
    auto* const bounds = makeBounds(mesh, geometry);
    bounds->setParent(geometry);
    geometry->addAttribute(
        makeAttribute(buffer, QAttribute::defaultPositionAttributeName(), QAttribute::Float, 3, 0, mesh.count));
    geometry->addAttribute(makeAttribute(buffer, QAttribute::defaultColorAttributeName(), QAttribute::UnsignedByte, 4,
                                         offsetof(DrawingMesh::Vertex, colour), mesh.count));
    geometry->setBoundingVolumePositionAttribute(bounds);
    return geometry;
}

Qt3DRender::QGeometryRenderer::PrimitiveType primitiveOf(DrawingMesh::Kind kind)
{
    switch (kind) {
    case DrawingMesh::Fills:
        return Qt3DRender::QGeometryRenderer::Triangles;
    case DrawingMesh::Lines:
        return Qt3DRender::QGeometryRenderer::Lines;
    case DrawingMesh::Points:
        break;
    }
    return Qt3DRender::QGeometryRenderer::Points;
}

} // namespace

Qt3DRender::QMaterial* makeDrawingMaterial(DrawingMesh::Kind kind, Qt3DCore::QNode* parent)
{
    auto* const material = new Qt3DRender::QMaterial(parent);
    auto* const effect = new Qt3DRender::QEffect(material);
    for (const Dialect& dialect : dialects)
        effect->addTechnique(makeTechnique(dialect, kind));
    material->setEffect(effect);
    return material;
}

Qt3DCore::QEntity* makeMeshEntity(const DrawingMesh& mesh, Qt3DRender::QMaterial* material, Qt3DCore::QEntity* parent)
{
    auto* const entity = new Qt3DCore::QEntity(parent);
    auto* const renderer = new Qt3DRender::QGeometryRenderer;
    renderer->setPrimitiveType(primitiveOf(mesh.kind));
    renderer->setVertexCount(mesh.count);
    renderer->setGeometry(makeGeometry(mesh));
    entity->addComponent(renderer);
    entity->addComponent(material);
    return entity;
}

} // namespace Torvik::DXF
