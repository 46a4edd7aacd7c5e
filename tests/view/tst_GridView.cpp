#include "view/SceneWindow.h"

#include "host/domain/HostSettings.h"
#include "labels/GridPlane.h"

#include <Qt3DCore/QTransform>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::SceneWindow;
namespace HostSettings = Torvik::Base::HostSettings;

namespace {

bool isDark(QRgb colour)
{
    return qRed(colour) < 150 && qGreen(colour) < 150 && qBlue(colour) < 150;
}

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
    void theBarIsAsLongAsASquare();
    void whileNothingMovesNothingIsChanged();

private:
    QQuickItem* area() const { return m_view->window()->findChild<QQuickItem*>("window3d"); }
    int columnOf(float x) const { return m_view->inWindow(m_view->pixelOf({x, 0, 0})).x(); }

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

QTEST_MAIN(tst_GridView)
#include "tst_GridView.moc"
