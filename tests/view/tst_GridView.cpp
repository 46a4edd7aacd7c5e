#include "common/SceneTest.h"
#include "view/GridPicture.h"
#include "view/SceneWindow.h"

#include "host/domain/HostSettings.h"
#include "labels/GridPlane.h"

#include <Qt3DCore/QTransform>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;
using Kx::Test::columnsOfLines;
using Kx::Test::isDark;
using Kx::Test::SceneWindow;
namespace HostSettings = Torvik::Base::HostSettings;

namespace {

/** Whether a dark line crosses the picture within a pixel of the column. */
bool lineAtColumn(const QImage& picture, int column)
{
    int rows = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const auto dark = [&](int x) { return isDark(picture.pixel(x, y)); };
        rows += dark(column - 1) || dark(column) || dark(column + 1) ? 1 : 0;
    }
    // Labels over the scene may hide a part.
    return rows > picture.height() * 9 / 10;
}

int darkPixels(const QImage& picture)
{
    int dark = 0;
    // Without the lower edge, where the scale stands.
    for (int y = 0; y < picture.height() - 60; ++y)
        for (int x = 0; x < picture.width(); ++x)
            dark += isDark(picture.pixel(x, y)) ? 1 : 0;
    return dark;
}

} // namespace

/** The ruled ground as it is seen. */
class tst_GridView : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { m_view = std::make_unique<SceneWindow>(); }
    void init();
    void cleanup();
    void cleanupTestCase() { m_view.reset(); }

    void itsLinesStandWhereTheSquaresEnd();
    void itsLinesStayOnTheGroundWhenTheCameraMoves();
    void fromNearbyTheSquaresAreSmaller();
    void itIsDrawnOnlyWhileItIsVisible();
    void fromFarAwayItIsNotDrawn();
    void inFeetItsSquaresAreOfFeet();
    void inTheFrontViewItIsNotDrawn();
    void theBarIsAsLongAsASquare();
    void theBarAgreesAtEveryDistance_data();
    void theBarAgreesAtEveryDistance();
    void itsLinesStayOnTheGroundUnderTheFinger_data();
    void itsLinesStayOnTheGroundUnderTheFinger();
    void itsLinesStayOnTheGroundFarFromTheOrigin();
    void whileNothingMovesNothingIsChanged();

private:
    QQuickItem* area() const { return m_view->window()->findChild<QQuickItem*>("window3d"); }
    int columnOf(float x) const { return m_view->inWindow(m_view->pixelOf({x, 0, 0})).x(); }
    /** Corners of the squares near the view's centre without lines, and middles with one; and how many were looked at.
     */
    void compareWithTheGround(const QImage& picture, float square, int& looked, int& wrong) const;

    std::unique_ptr<SceneWindow> m_view;
};

void tst_GridView::init()
{
    // 400 m of a lens of 3 degrees are 59.4 m of one of 20: squares of 5 m.
    m_view->lookDown({0, 0, 0}, 400);
}

void tst_GridView::cleanup()
{
    HostSettings::setDistanceUnit(HostSettings::unitMetres);
    area()->setProperty("gridVisible", true);
}

void tst_GridView::itsLinesStandWhereTheSquaresEnd()
{
    QCOMPARE(m_view->root()->gridSize(), 50.0);
    const QImage picture = m_view->grab();
    m_view->keep("grid-top");

    for (const float x : {-10.0F, -5.0F, 0.0F, 5.0F, 10.0F})
        QVERIFY2(lineAtColumn(picture, columnOf(x)), qPrintable(QString::number(double(x))));
    for (const float x : {-7.5F, -4.0F, -1.0F, 1.0F, 2.5F, 9.0F})
        QVERIFY2(!lineAtColumn(picture, columnOf(x)), qPrintable(QString::number(double(x))));
}

void tst_GridView::itsLinesStayOnTheGroundWhenTheCameraMoves()
{
    m_view->lookDown({7.3F, 0, 403.1F}, 400);

    const QImage picture = m_view->grab();
    for (const float x : {0.0F, 5.0F, 10.0F, 15.0F})
        QVERIFY2(lineAtColumn(picture, columnOf(x)), qPrintable(QString::number(double(x))));
    QVERIFY(!lineAtColumn(picture, columnOf(7.3F)));
}

void tst_GridView::fromNearbyTheSquaresAreSmaller()
{
    m_view->lookDown({0, 0, 0}, 80); // 11.9 m

    QCOMPARE(m_view->root()->gridSize(), 10.0);
    const QImage picture = m_view->grab();
    for (const float x : {-2.0F, -1.0F, 0.0F, 1.0F, 2.0F})
        QVERIFY2(lineAtColumn(picture, columnOf(x)), qPrintable(QString::number(double(x))));
}

void tst_GridView::itIsDrawnOnlyWhileItIsVisible()
{
    QVERIFY(darkPixels(m_view->grab()) > 1000);

    area()->setProperty("gridVisible", false);
    m_view->frames(6);
    QCOMPARE(darkPixels(m_view->grab()), 0);

    area()->setProperty("gridVisible", true);
    m_view->frames(6);
    QVERIFY(darkPixels(m_view->grab()) > 1000);
}

void tst_GridView::fromFarAwayItIsNotDrawn()
{
    m_view->lookDown({0, 0, 0}, 3400);
    QVERIFY(darkPixels(m_view->grab()) > 1000);

    m_view->lookDown({0, 0, 0}, 3600);
    QCOMPARE(darkPixels(m_view->grab()), 0);
}

void tst_GridView::inFeetItsSquaresAreOfFeet()
{
    HostSettings::setDistanceUnit(HostSettings::unitFeet);
    m_view->frames(6);

    const QImage picture = m_view->grab();
    for (const float x : {-3.048F, 0.0F, 3.048F, 6.096F})
        QVERIFY2(lineAtColumn(picture, columnOf(x)), qPrintable(QString::number(double(x))));
    QVERIFY(!lineAtColumn(picture, columnOf(5.0F)));
    QCOMPARE(m_view->window()->findChild<QQuickItem*>("gridScaleText")->property("text").toString(), QString("10 ft"));
}

void tst_GridView::theBarIsAsLongAsASquare()
{
    const auto* const bar = m_view->window()->findChild<QQuickItem*>("rulerBody");
    QVERIFY(bar);
    QVERIFY(bar->isVisible());

    // Half a pixel of rounding at either end.
    const int square = qAbs(columnOf(5) - columnOf(0));
    QVERIFY2(qAbs(bar->width() - square) <= 1.0, qPrintable(QString::number(bar->width())));
    QCOMPARE(m_view->window()->findChild<QQuickItem*>("gridScaleText")->property("text").toString(), QString("5 m"));
}

void tst_GridView::inTheFrontViewItIsNotDrawn()
{
    m_view->look({0, 0, -400}, {0, 0, 0}, {0, 1, 0}, CameraController::View2dFront);
    QCOMPARE(darkPixels(m_view->grab()), 0);

    m_view->lookDown({0, 0, 0}, 400);
    QVERIFY(darkPixels(m_view->grab()) > 1000);
}

void tst_GridView::theBarAgreesAtEveryDistance_data()
{
    QTest::addColumn<bool>("feet");
    QTest::addColumn<float>("distance");
    for (const bool feet : {false, true}) {
        for (const float distance : {8.0F, 20.0F, 60.0F, 130.0F, 250.0F, 400.0F, 700.0F, 1300.0F, 2400.0F, 3450.0F})
            QTest::addRow("%s, %d m", feet ? "feet" : "metres", qRound(distance)) << feet << distance;
    }
}

void tst_GridView::theBarAgreesAtEveryDistance()
{
    QFETCH(bool, feet);
    QFETCH(float, distance);
    if (feet)
        HostSettings::setDistanceUnit(HostSettings::unitFeet);
    m_view->lookDown({0, 0, 0}, distance);
    const auto* const bar = m_view->window()->findChild<QQuickItem*>("rulerBody");

    const QVector<float> lines = columnsOfLines(m_view->grab());

    // The mean over all squares in the picture says it to a fraction of a pixel.
    QVERIFY2(lines.size() >= 3, qPrintable(QString::number(lines.size())));
    const float square = (lines.last() - lines.first()) / static_cast<float>(lines.size() - 1);
    QVERIFY2(qAbs(bar->width() - qreal(square)) <= 1.0,
             qPrintable(QStringLiteral("bar %1, square %2").arg(bar->width()).arg(double(square))));
    for (int line = 1; line < lines.size(); ++line)
        QVERIFY(qAbs(lines.at(line) - lines.at(line - 1) - square) <= 1.0F);
    QVERIFY(bar->width() > 30);
}

void tst_GridView::compareWithTheGround(const QImage& picture, float square, int& looked, int& wrong) const
{
    const auto darkNear = [&](QVector3D point, int reach) {
        const QPoint pixel = m_view->inWindow(m_view->pixelOf(point));
        for (int y = pixel.y() - reach; y <= pixel.y() + reach; ++y) {
            for (int x = pixel.x() - reach; x <= pixel.x() + reach; ++x) {
                if (picture.valid(x, y) && isDark(picture.pixel(x, y)))
                    return true;
            }
        }
        return false;
    };
    const QRect inside = picture.rect().adjusted(5, 5, -5, -80);
    const QVector3D centre = m_view->camera()->viewCenter();
    const float firstX = std::round(centre.x() / square);
    const float firstZ = std::round(centre.z() / square);
    for (int i = -12; i <= 12; ++i) {
        for (int k = -12; k <= 12; ++k) {
            const QVector3D corner((firstX + static_cast<float>(i)) * square, centre.y(),
                                   (firstZ + static_cast<float>(k)) * square);
            const QVector3D middle = corner + QVector3D(square / 2, 0, square / 2);
            if (inside.contains(m_view->inWindow(m_view->pixelOf(corner)))) {
                ++looked;
                wrong += darkNear(corner, 1) ? 0 : 1;
            }
            if (inside.contains(m_view->inWindow(m_view->pixelOf(middle)))) {
                ++looked;
                wrong += darkNear(middle, 1) ? 1 : 0;
            }
        }
    }
}

void tst_GridView::itsLinesStayOnTheGroundUnderTheFinger_data()
{
    QTest::addColumn<bool>("fromTheTop");
    QTest::addColumn<bool>("feet");
    QTest::newRow("top") << true << false;
    QTest::newRow("top, feet") << true << true;
    QTest::newRow("3D") << false << false;
    QTest::newRow("3D, feet") << false << true;
}

void tst_GridView::itsLinesStayOnTheGroundUnderTheFinger()
{
    QFETCH(bool, fromTheTop);
    QFETCH(bool, feet);
    if (feet)
        HostSettings::setDistanceUnit(HostSettings::unitFeet);
    if (!fromTheTop)
        m_view->look({-100, 250, -300}, {0, 0, 0}, QVector3D(100, 400, 300).normalized());
    const float square = feet ? 3.048F : 5.0F;
    QVERIFY(qAbs(m_view->root()->gridSize() - double(square * 10.0F)) < 1e-4);
    const QVector3D before = m_view->camera()->viewCenter();

    // Over several squares, in steps that are none of them.
    m_view->press({610, 420});
    for (int step = 0; step <= 12; ++step) {
        m_view->moveTo({610 - 37 * step, 420 - 23 * step});
        int looked = 0;
        int wrong = 0;
        compareWithTheGround(m_view->grab(), square, looked, wrong);
        QVERIFY2(looked > 20 && wrong == 0,
                 qPrintable(QStringLiteral("step %1: %2 of %3").arg(step).arg(wrong).arg(looked)));
    }
    m_view->release({610 - 37 * 12, 420 - 23 * 12});

    QVERIFY((m_view->camera()->viewCenter() - before).length() > 2 * square);
}

void tst_GridView::itsLinesStayOnTheGroundFarFromTheOrigin()
{
    // A city's other end; places there are known to half a millimetre.
    for (const QVector3D centre : {QVector3D(-7321.7F, 12.5F, 4003.3F), QVector3D(6666.6F, -3, -8888.8F)}) {
        m_view->lookDown(centre, 400);
        int looked = 0;
        int wrong = 0;
        compareWithTheGround(m_view->grab(), 5, looked, wrong);
        m_view->keep("grid-far");
        QVERIFY2(looked > 20 && wrong == 0, qPrintable(QStringLiteral("%1 of %2").arg(wrong).arg(looked)));
    }
}

void tst_GridView::whileNothingMovesNothingIsChanged()
{
    const auto* const root = m_view->root();
    QSignalSpy size(root, &SceneRoot::gridSizeChanged);
    QSignalSpy level(root, &SceneRoot::gridSeaLevelChanged);
    auto* const grid = root->findChild<GridPlane*>();
    QVERIFY(grid);
    QSignalSpy moved(grid->componentsOfType<Qt3DCore::QTransform>().first(), &Qt3DCore::QTransform::matrixChanged);

    m_view->frames(30);

    QCOMPARE(size.count() + level.count() + moved.count(), 0);
}

KX_SCENE_TEST_MAIN(tst_GridView)
#include "tst_GridView.moc"
