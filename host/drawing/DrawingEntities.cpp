#include "host/drawing/DrawingEntities.h"

#include <Qt3DCore/QEntity>
#include <Qt3DRender/QAbstractTextureImage>
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
#include <Qt3DRender/QParameter>
#include <Qt3DRender/QPointSize>
#include <Qt3DRender/QPolygonOffset>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>
#include <Qt3DRender/QTexture>
#include <Qt3DRender/QTextureImageData>
#include <Qt3DRender/QTextureImageDataGenerator>

#include <cstddef>
#include <functional>

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

constexpr const char* newPictureVertex =
    "#version 140\nin vec3 vertexPosition;\nin vec2 vertexTexCoord;\nout vec2 place;\nuniform mat4 mvp;\n"
    "void main() { place = vertexTexCoord; gl_Position = mvp * vec4(vertexPosition, 1.0); }\n";
constexpr const char* newPictureFragment = "#version 140\nin vec2 place;\nout vec4 shown;\nuniform sampler2D picture;\n"
                                           "void main() { shown = texture(picture, place); }\n";
constexpr const char* oldPictureVertex =
    "attribute highp vec3 vertexPosition;\nattribute highp vec2 vertexTexCoord;\nvarying highp vec2 place;\n"
    "uniform highp mat4 mvp;\n"
    "void main() { place = vertexTexCoord; gl_Position = mvp * vec4(vertexPosition, 1.0); }\n";
constexpr const char* oldPictureFragment = "varying highp vec2 place;\nuniform sampler2D picture;\n"
                                           "void main() { gl_FragColor = texture2D(picture, place); }\n";

const Dialect dialects[] = {
    {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::CoreProfile, 3, 1, newVertex, newFragment},
    {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::NoProfile, 2, 0, oldVertex, oldFragment},
    {QGraphicsApiFilter::OpenGLES, QGraphicsApiFilter::NoProfile, 2, 0, oldVertex, oldFragment}};

const Dialect pictureDialects[] = {
    {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::CoreProfile, 3, 1, newPictureVertex, newPictureFragment},
    {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::NoProfile, 2, 0, oldPictureVertex, oldPictureFragment},
    {QGraphicsApiFilter::OpenGLES, QGraphicsApiFilter::NoProfile, 2, 0, oldPictureVertex, oldPictureFragment}};

/** Keeps the pixels, since a lost graphics context asks for them again. */
class Pixels : public Qt3DRender::QTextureImageDataGenerator {
public:
    Pixels(QByteArray pixels, int side)
        : m_pixels(std::move(pixels))
        , m_side(side)
    {
    }
    QT3D_FUNCTOR(Pixels)

    Qt3DRender::QTextureImageDataPtr operator()() override
    {
        const auto data = Qt3DRender::QTextureImageDataPtr::create();
        data->setTarget(QOpenGLTexture::Target2D);
        data->setFormat(QOpenGLTexture::RGBA8_UNorm);
        data->setPixelFormat(QOpenGLTexture::RGBA);
        data->setPixelType(QOpenGLTexture::UInt8);
        data->setWidth(m_side);
        data->setHeight(m_side);
        data->setDepth(1);
        data->setFaces(1);
        data->setLayers(1);
        data->setMipLevels(1);
        data->setData(m_pixels, sizeof(DrawingColour));
        return data;
    }

    bool operator==(const Qt3DRender::QTextureImageDataGenerator& other) const override
    {
        const auto* const pixels = Qt3DRender::functor_cast<Pixels>(&other);
        return pixels && pixels->m_pixels.constData() == m_pixels.constData();
    }

private:
    QByteArray m_pixels;
    int m_side;
};

class PixelsImage : public Qt3DRender::QAbstractTextureImage {
public:
    PixelsImage(const QByteArray& pixels, int side)
        : m_generator(new Pixels(pixels, side))
    {
    }

private:
    Qt3DRender::QTextureImageDataGeneratorPtr dataGenerator() const override { return m_generator; }

    Qt3DRender::QTextureImageDataGeneratorPtr m_generator;
};

void addDepthTest(Qt3DRender::QRenderPass* pass)
{
    auto* const depth = new Qt3DRender::QDepthTest;
    depth->setDepthFunction(Qt3DRender::QDepthTest::LessOrEqual);
    pass->addRenderState(depth);
}

void addBlending(Qt3DRender::QRenderPass* pass, Qt3DRender::QBlendEquationArguments::Blending source)
{
    auto* const behind = new Qt3DRender::QPolygonOffset;
    behind->setScaleFactor(1.0F);
    behind->setDepthSteps(1.0F);
    pass->addRenderState(behind);
    // Faces of one height would hide each other by the accident of their rounding.
    pass->addRenderState(new Qt3DRender::QNoDepthMask);
    auto* const blend = new Qt3DRender::QBlendEquationArguments;
    blend->setSourceRgb(source);
    blend->setDestinationRgb(Qt3DRender::QBlendEquationArguments::OneMinusSourceAlpha);
    blend->setSourceAlpha(Qt3DRender::QBlendEquationArguments::One);
    blend->setDestinationAlpha(Qt3DRender::QBlendEquationArguments::OneMinusSourceAlpha);
    pass->addRenderState(blend);
    pass->addRenderState(new Qt3DRender::QBlendEquation);
}

void addStates(Qt3DRender::QRenderPass* pass, DrawingMesh::Kind kind)
{
    addDepthTest(pass);
    if (kind == DrawingMesh::Points) {
        auto* const size = new Qt3DRender::QPointSize;
        size->setSizeMode(Qt3DRender::QPointSize::Programmable);
        pass->addRenderState(size);
    }
    if (kind == DrawingMesh::Fills)
        addBlending(pass, Qt3DRender::QBlendEquationArguments::SourceAlpha);
}

Qt3DRender::QTechnique* makeTechnique(const Dialect& dialect,
                                      const std::function<void(Qt3DRender::QRenderPass*)>& states)
{
    auto* const program = new Qt3DRender::QShaderProgram;
    program->setVertexShaderCode(dialect.vertexShader);
    program->setFragmentShaderCode(dialect.fragmentShader);
    auto* const pass = new Qt3DRender::QRenderPass;
    pass->setShaderProgram(program);
    states(pass);

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
                          uint offset, int count, uint stride = sizeof(DrawingMesh::Vertex))
{
    auto* const attribute = new QAttribute;
    attribute->setName(name);
    attribute->setAttributeType(QAttribute::VertexAttribute);
    attribute->setBuffer(buffer);
    attribute->setVertexBaseType(type);
    attribute->setVertexSize(size);
    attribute->setByteOffset(offset);
    attribute->setByteStride(stride);
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
    auto* const bounds = makeAttribute(buffer, QStringLiteral("bounds"), QAttribute::Float, 3, 0, 2, 3 * sizeof(float));
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
        effect->addTechnique(makeTechnique(dialect, [kind](auto* pass) { addStates(pass, kind); }));
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

Qt3DRender::QEffect* makePictureEffect(Qt3DCore::QNode* parent)
{
    auto* const effect = new Qt3DRender::QEffect(parent);
    const auto states = [](Qt3DRender::QRenderPass* pass) {
        addDepthTest(pass);
        addBlending(pass, Qt3DRender::QBlendEquationArguments::One);
    };
    for (const Dialect& dialect : pictureDialects)
        effect->addTechnique(makeTechnique(dialect, states));
    return effect;
}

Qt3DCore::QEntity* makePictureEntity(const DrawingPicture& picture, const QVector3D& cropOffset,
                                     Qt3DRender::QEffect* effect, Qt3DCore::QEntity* parent)
{
    const DrawingRegion& region = picture.region;
    const auto left = float(-region.left - double(cropOffset.x()));
    const auto right = float(-region.left - region.side - double(cropOffset.x()));
    const auto bottom = float(region.bottom - double(cropOffset.z()));
    const auto top = float(region.bottom + region.side - double(cropOffset.z()));
    const float corners[] = {left, 0, bottom, 0, 1, right, 0, bottom, 1, 1, left, 0, top, 0, 0, right, 0, top, 1, 0};
    constexpr uint stride = 5 * sizeof(float);

    auto* const geometry = new Qt3DRender::QGeometry;
    auto* const buffer = new Qt3DRender::QBuffer(geometry);
    buffer->setData(QByteArray(reinterpret_cast<const char*>(corners), sizeof corners));
    geometry->addAttribute(
        makeAttribute(buffer, QAttribute::defaultPositionAttributeName(), QAttribute::Float, 3, 0, 4, stride));
    geometry->addAttribute(makeAttribute(buffer, QAttribute::defaultTextureCoordinateAttributeName(), QAttribute::Float,
                                         2, 3 * sizeof(float), 4, stride));

    auto* const texture = new Qt3DRender::QTexture2D;
    texture->setMinificationFilter(Qt3DRender::QAbstractTexture::Linear);
    texture->setMagnificationFilter(Qt3DRender::QAbstractTexture::Linear);
    texture->addTextureImage(new PixelsImage(picture.pixels, picture.side));
    auto* const material = new Qt3DRender::QMaterial;
    material->setEffect(effect);
    material->addParameter(new Qt3DRender::QParameter(QStringLiteral("picture"), texture));

    auto* const entity = new Qt3DCore::QEntity(parent);
    auto* const renderer = new Qt3DRender::QGeometryRenderer;
    renderer->setPrimitiveType(Qt3DRender::QGeometryRenderer::TriangleStrip);
    renderer->setVertexCount(4);
    renderer->setGeometry(geometry);
    entity->addComponent(renderer);
    entity->addComponent(material);
    return entity;
}

} // namespace Torvik::DXF
