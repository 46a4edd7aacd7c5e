#include "common/PlainView.h"
#include "common/SceneTest.h"
#include "labels/OnTopEffect.h"
#include "labels/OnTopTextureEffect.h"
#include "labels/OnTopUnlitTextureMaterial.h"
#include "plans/PlaneVertexShape.h"

#include <QOpenGLContext>
#include <QPainter>
#include <Qt3DCore/QEntity>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QPlaneMesh>
#include <Qt3DRender/QAttribute>
#include <Qt3DRender/QBuffer>
#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QGeometry>
#include <Qt3DRender/QGraphicsApiFilter>
#include <Qt3DRender/QPaintedTextureImage>
#include <Qt3DRender/QParameter>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>
#include <Qt3DRender/QTexture>
#include <QtTest>

#include <cstring>
#include <memory>

using namespace Torvik::View3d;
using Qt3DRender::QGraphicsApiFilter;

namespace {

constexpr int side = 300;
/** Metres that the picture shows at a distance of one metre: 2 tan 1.5 degrees. */
constexpr float spread = 0.0523720F;

class GreenTexture : public Qt3DRender::QPaintedTextureImage {
public:
    using QPaintedTextureImage::QPaintedTextureImage;

protected:
    void paint(QPainter* painter) override { painter->fillRect(0, 0, 16, 16, QColor(0, 255, 0)); }
};

int greenPixels(const QImage& picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            count += qGreen(pixel) > 240 && qRed(pixel) < 10 && qBlue(pixel) < 10 ? 1 : 0;
        }
    }
    return count;
}

Qt3DRender::QAbstractTexture* makeTexture(Qt3DCore::QNode* parent)
{
    auto* const texture = new Qt3DRender::QTexture2D(parent);
    auto* const image = new GreenTexture(texture);
    image->setSize({16, 16});
    texture->addTextureImage(image);
    return texture;
}

Qt3DRender::QMaterial* onTopColour(Qt3DCore::QNode* parent)
{
    auto* const material = new Qt3DRender::QMaterial(parent);
    material->setEffect(new OnTopEffect(material));
    material->addParameter(new Qt3DRender::QParameter(QLatin1String(OnTopEffect::colourParameter), QColor(0, 255, 0)));
    return material;
}

Qt3DRender::QMaterial* onTopTexture(Qt3DCore::QNode* parent)
{
    auto* const material = new OnTopUnlitTextureMaterial(parent);
    material->setTexture(makeTexture(material));
    return material;
}

Qt3DRender::QMaterial* plainTexture(Qt3DCore::QNode* parent)
{
    auto* const material = new Qt3DExtras::QTextureMaterial(parent);
    material->setTexture(makeTexture(material));
    return material;
}

/** As a window of the scene has it. */
QSurfaceFormat usual()
{
    QSurfaceFormat format;
    format.setDepthBufferSize(24);
    format.setStencilBufferSize(8);
    return format;
}

QSurfaceFormat coreProfile()
{
    QSurfaceFormat format = usual();
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    return format;
}

QSurfaceFormat openGlEs2()
{
    QSurfaceFormat format = usual();
    format.setRenderableType(QSurfaceFormat::OpenGLES);
    format.setVersion(2, 0);
    return format;
}

using MakeMaterial = Qt3DRender::QMaterial* (*)(Qt3DCore::QNode*);

} // namespace

Q_DECLARE_METATYPE(MakeMaterial)

class tst_OnTop : public QObject {
    Q_OBJECT

private slots:
    void theTextureEffectIsThereForBothKindsOfOpenGl();
    void theMaterialHasItsBaseEffectUntilATextureIsSet();
    void eachTextureAddsItsParameters();
    void thePlaneIsASquareAlongZ();
    void anObjectIsSeenThroughAPipeInFrontOfIt_data();
    void anObjectIsSeenThroughAPipeInFrontOfIt();

private:
    void show(const QSurfaceFormat& format, float height);
    void addPipe(float radius, float height);
    void addObject(MakeMaterial makeMaterial, float width);

    std::unique_ptr<QQuickView> m_view;
    Qt3DCore::QEntity* m_root = nullptr;
};

void tst_OnTop::theTextureEffectIsThereForBothKindsOfOpenGl()
{
    const OnTopTextureEffect effect;

    const auto techniques = effect.techniques();

    QCOMPARE(techniques.size(), 2);
    const auto* const desktop = techniques.first()->graphicsApiFilter();
    QCOMPARE(desktop->api(), QGraphicsApiFilter::OpenGL);
    QCOMPARE(desktop->profile(), QGraphicsApiFilter::CoreProfile);
    QCOMPARE(desktop->majorVersion() * 10 + desktop->minorVersion(), 31);
    const auto* const mobile = techniques.last()->graphicsApiFilter();
    QCOMPARE(mobile->api(), QGraphicsApiFilter::OpenGLES);
    QCOMPARE(mobile->profile(), QGraphicsApiFilter::NoProfile);
    QCOMPARE(mobile->majorVersion() * 10 + mobile->minorVersion(), 20);
    for (const auto* const technique : techniques) {
        QCOMPARE(technique->filterKeys().size(), 1);
        QCOMPARE(technique->filterKeys().first()->name(), QString("renderingStyle"));
        QCOMPARE(technique->filterKeys().first()->value(), QVariant("forward"));
        QCOMPARE(technique->renderPasses(), techniques.first()->renderPasses());
    }
    QCOMPARE(techniques.first()->renderPasses().size(), 1);
    const auto* const pass = techniques.first()->renderPasses().first();
    QVERIFY(pass->renderStates().isEmpty());
    QVERIFY(pass->shaderProgram()->vertexShaderCode().contains("gl_Position.z = 0.0;"));
    QVERIFY(pass->shaderProgram()->fragmentShaderCode().contains("texture2D(diffuseTexture, texCoord)"));
}

void tst_OnTop::theMaterialHasItsBaseEffectUntilATextureIsSet()
{
    OnTopUnlitTextureMaterial material;
    Qt3DRender::QTexture2D texture;
    const auto* const before = material.effect();
    QVERIFY(before && !qobject_cast<const OnTopTextureEffect*>(before));

    material.setTexture(&texture);

    QVERIFY(qobject_cast<OnTopTextureEffect*>(material.effect()));
    QCOMPARE(material.texture(), &texture);
}

void tst_OnTop::eachTextureAddsItsParameters()
{
    OnTopUnlitTextureMaterial material;
    Qt3DRender::QTexture2D first;
    Qt3DRender::QTexture2D second;

    material.setTexture(&first);
    material.setTexture(&first);

    auto* const effect = material.effect();
    auto parameters = effect->parameters();
    QCOMPARE(parameters.size(), 2);
    QCOMPARE(parameters.at(0)->name(), QString("diffuseTexture"));
    QCOMPARE(parameters.at(0)->value().value<Qt3DCore::QNode*>(), static_cast<Qt3DCore::QNode*>(&first));
    QCOMPARE(parameters.at(1)->name(), QString("texCoordOffset"));
    QCOMPARE(parameters.at(1)->value(), QVariant(QVector2D(0, 0)));

    material.setTexture(&second);

    QCOMPARE(material.effect(), effect);
    QCOMPARE(effect->parameters().size(), 4);
}

void tst_OnTop::thePlaneIsASquareAlongZ()
{
    const PlaneVertexShape shape;
    QCOMPARE(shape.instanceCount(), 1);
    QCOMPARE(shape.firstVertex(), 0);
    QCOMPARE(shape.firstInstance(), 0);
    QCOMPARE(shape.primitiveType(), Qt3DRender::QGeometryRenderer::Triangles);
    QCOMPARE(shape.vertexCount(), 6);
    QCOMPARE(shape.geometry()->parent(), &shape);
    const auto attributes = shape.geometry()->attributes();
    QCOMPARE(attributes.size(), 1);
    const auto* const position = attributes.first();
    QCOMPARE(position->name(), QString("vertexPosition"));
    QCOMPARE(position->vertexBaseType(), Qt3DRender::QAttribute::Float);
    QCOMPARE(position->vertexSize(), 3U);
    QCOMPARE(position->count(), 6U);
    QCOMPARE(position->byteStride(), 12U);
    QCOMPARE(position->byteOffset(), 0U);

    const QByteArray bytes = position->buffer()->data();

    const QVector<float> expected {-0.5F, 0, 0, -0.5F, 0, 1, 0.5F, 0, 1, 0.5F, 0, 1, 0.5F, 0, 0, -0.5F, 0, 0};
    QCOMPARE(bytes.size(), expected.size() * int(sizeof(float)));
    QVector<float> found(expected.size());
    std::memcpy(found.data(), bytes.constData(), static_cast<size_t>(bytes.size()));
    QCOMPARE(found, expected);
}

void tst_OnTop::anObjectIsSeenThroughAPipeInFrontOfIt_data()
{
    QTest::addColumn<QSurfaceFormat>("format");
    QTest::addColumn<float>("height");
    QTest::addColumn<MakeMaterial>("makeMaterial");
    QTest::addColumn<bool>("seen");

    for (const float height : {10.0F, 350.0F, 9000.0F}) {
        const int metres = qRound(height);
        QTest::addRow("a colour, %d m", metres) << usual() << height << &onTopColour << true;
        QTest::addRow("a texture, %d m", metres) << usual() << height << &onTopTexture << true;
        QTest::addRow("a texture as others are, %d m", metres) << usual() << height << &plainTexture << false;
    }
    QTest::newRow("a texture, core profile") << coreProfile() << 350.0F << &onTopTexture << true;
    QTest::newRow("a texture as others are, core profile") << coreProfile() << 350.0F << &plainTexture << false;
    QTest::newRow("a colour, OpenGL ES 2") << openGlEs2() << 350.0F << &onTopColour << true;
    QTest::newRow("a texture, OpenGL ES 2") << openGlEs2() << 350.0F << &onTopTexture << true;
    QTest::newRow("a texture as others are, OpenGL ES 2") << openGlEs2() << 350.0F << &plainTexture << false;
}

void tst_OnTop::anObjectIsSeenThroughAPipeInFrontOfIt()
{
    QFETCH(QSurfaceFormat, format);
    QFETCH(float, height);
    QFETCH(MakeMaterial, makeMaterial);
    QFETCH(bool, seen);
    const float metresPerPixel = spread * height / side;
    show(format, height);
    if (QTest::currentTestFailed())
        return;
    if (!m_root) {
        if (qEnvironmentVariableIsSet("KX_WITHOUT_ES2"))
            QSKIP("This driver makes no such context.");
        QFAIL("This driver makes no such context; KX_WITHOUT_ES2 leaves these tests out.");
    }

    addObject(makeMaterial, 20.0F * metresPerPixel);

    // The object alone, then under a pipe twice as wide that lies above it.
    const int whole = 20 * 20;
    QTRY_VERIFY2(qAbs(greenPixels(m_view->grabWindow()) - whole) <= 41,
                 qPrintable(QString::number(greenPixels(m_view->grabWindow()))));
    addPipe(20.0F * metresPerPixel, 0.3F * height);
    const auto pipePixel = [this] { return m_view->grabWindow().pixel(side / 2 + 60, side / 2); };
    QTRY_VERIFY(qRed(pipePixel()) > 60);
    QTest::qWait(50);
    const int found = greenPixels(m_view->grabWindow());
    QVERIFY2(seen ? qAbs(found - whole) <= 41 : found == 0, qPrintable(QString::number(found)));
    m_view.reset();
}

void tst_OnTop::show(const QSurfaceFormat& format, float height)
{
    m_view = std::make_unique<QQuickView>();
    m_view->setFormat(format);
    m_root = Kx::Test::showPlainScene(*m_view, side, double(height));
    QVERIFY(m_root);
    const QSurfaceFormat given = m_view->openglContext()->format();
    if (format.renderableType() == QSurfaceFormat::OpenGLES && given.renderableType() != format.renderableType())
        m_root = nullptr;
    if (format.profile() == QSurfaceFormat::CoreProfile)
        QCOMPARE(given.profile(), QSurfaceFormat::CoreProfile);
}

void tst_OnTop::addPipe(float radius, float height)
{
    auto* const pipe = new Qt3DCore::QEntity;
    auto* const mesh = new Qt3DExtras::QCylinderMesh(pipe);
    mesh->setRadius(radius);
    mesh->setLength(20.0F * radius);
    auto* const place = new Qt3DCore::QTransform(pipe);
    place->setRotation(QQuaternion::fromAxisAndAngle(0, 0, 1, 90));
    place->setTranslation({0, height, 0});
    auto* const material = new Qt3DExtras::QGoochMaterial(pipe);
    material->setWarm(QColor(255, 0, 0));
    material->setCool(QColor(255, 0, 0));
    pipe->addComponent(mesh);
    pipe->addComponent(place);
    pipe->addComponent(material);
    pipe->setParent(m_root);
}

void tst_OnTop::addObject(MakeMaterial makeMaterial, float width)
{
    auto* const object = new Qt3DCore::QEntity;
    auto* const mesh = new Qt3DExtras::QPlaneMesh(object);
    mesh->setWidth(width);
    mesh->setHeight(width);
    object->addComponent(mesh);
    object->addComponent(new Qt3DCore::QTransform(object));
    object->addComponent(makeMaterial(object));
    object->setParent(m_root);
}

KX_SCENE_TEST_MAIN(tst_OnTop)
#include "tst_OnTop.moc"
