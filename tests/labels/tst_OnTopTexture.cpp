#include "common/PlainView.h"
#include "common/SceneTest.h"
#include "labels/OnTopTextureEffect.h"
#include "labels/OnTopUnlitTextureMaterial.h"

#include <QPainter>
#include <Qt3DCore/QEntity>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QPlaneMesh>
#include <Qt3DRender/QPaintedTextureImage>
#include <Qt3DRender/QParameter>
#include <Qt3DRender/QTexture>
#include <Qt3DRender/QTextureWrapMode>

#include <memory>

using namespace Torvik::View3d;

namespace {

constexpr int side = 300;
constexpr float height = 350.0F;
/** Metres that a pixel shows: 2 tan 1.5 degrees a metre of distance. */
constexpr float metresPerPixel = 0.0523720F * height / side;

/** One colour in the left half, another in the right one. */
class Halves : public Qt3DRender::QPaintedTextureImage {
public:
    Halves(const QColor& left, const QColor& right)
        : m_left(left)
        , m_right(right)
    {
        setSize({16, 16});
    }

protected:
    void paint(QPainter* painter) override
    {
        painter->fillRect(0, 0, 8, 16, m_left);
        painter->fillRect(8, 0, 8, 16, m_right);
    }

private:
    QColor m_left;
    QColor m_right;
};

struct Square {
    Qt3DCore::QTransform* place;
    OnTopUnlitTextureMaterial* material;
};

} // namespace

/** What the texture over everything shows, and which of two is seen. */
class tst_OnTopTexture : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_view.reset(); }

    void theOffsetShiftsTheTexture();
    void ofTwoTheOrderOfDrawingCountsAndNotTheirHeight();

private:
    Square add(const QVector3D& at, const QColor& left, const QColor& right);
    /** Pixels to the right of the picture's middle. */
    QColor colourAt(int right) const { return m_view->grabWindow().pixelColor(side / 2 + right, side / 2); }

    std::unique_ptr<QQuickView> m_view;
    Qt3DCore::QEntity* m_root = nullptr;
};

void tst_OnTopTexture::init()
{
    m_view = std::make_unique<QQuickView>();
    m_root = Kx::Test::showPlainScene(*m_view, side, double(height));
    QVERIFY(m_root);
}

Square tst_OnTopTexture::add(const QVector3D& at, const QColor& left, const QColor& right)
{
    auto* const object = new Qt3DCore::QEntity;
    auto* const texture = new Qt3DRender::QTexture2D(object);
    texture->addTextureImage(new Halves(left, right));
    texture->setWrapMode(Qt3DRender::QTextureWrapMode(Qt3DRender::QTextureWrapMode::Repeat));
    Square square {new Qt3DCore::QTransform(object), new OnTopUnlitTextureMaterial(object)};
    square.material->setTexture(texture);
    square.place->setTranslation(at);
    auto* const mesh = new Qt3DExtras::QPlaneMesh(object);
    mesh->setWidth(80.0F * metresPerPixel);
    mesh->setHeight(80.0F * metresPerPixel);
    object->addComponent(mesh);
    object->addComponent(square.place);
    object->addComponent(square.material);
    object->setParent(m_root);
    return square;
}

void tst_OnTopTexture::theOffsetShiftsTheTexture()
{
    const QColor red(255, 0, 0);
    const QColor green(0, 255, 0);
    const Square square = add({}, red, green);
    // A plane's texture runs from its left as the camera sees it, or from its right.
    QTRY_VERIFY(colourAt(-20) == red || colourAt(-20) == green);
    const QColor left = colourAt(-20);
    const QColor right = left == red ? green : red;
    QCOMPARE(colourAt(20), right);

    const auto parameters = square.material->effect()->parameters();
    int set = 0;
    for (auto* const parameter : parameters) {
        if (parameter->name() == QLatin1String(OnTopTextureEffect::offsetParameter)) {
            parameter->setValue(QVector2D(0.5F, 0.0F));
            ++set;
        }
    }
    QCOMPARE(set, 1);

    QTRY_COMPARE(colourAt(-20), right);
    QCOMPARE(colourAt(20), left);
}

void tst_OnTopTexture::ofTwoTheOrderOfDrawingCountsAndNotTheirHeight()
{
    const QColor red(255, 0, 0);
    const QColor green(0, 255, 0);
    // +x runs to the left of the picture.
    const QVector3D right(-30.0F * metresPerPixel, 0, 0);
    const QVector3D high(0, 2, 0);
    const Square first = add(high, red, red);
    const Square second = add(right, green, green);
    QTRY_COMPARE(colourAt(-30), red);
    QTRY_COMPARE(colourAt(60), green);
    const QColor seen = colourAt(15);
    QVERIFY(seen == red || seen == green);

    first.place->setTranslation(-right);
    QTRY_COMPARE(colourAt(-60), red);
    first.place->setTranslation({});
    second.place->setTranslation(right + high);
    QTRY_VERIFY(colourAt(-60) != red);
    QTRY_COMPARE(colourAt(60), green);

    QCOMPARE(colourAt(15), seen);
}

KX_SCENE_TEST_MAIN(tst_OnTopTexture)
#include "tst_OnTopTexture.moc"
