#include "common/SceneTest.h"
#include "view/SceneWindow.h"

#include "measurement/SystemControlProxy.h"
#include "network/Crawler.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::SceneWindow;
using Kx::Test::TestProject;

namespace {

/** Where two pictures differ. */
struct Difference {
    Difference(const QImage& a, const QImage& b)
    {
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x)
                if (a.pixel(x, y) != b.pixel(x, y))
                    add({x, y});
    }
    void add(QPoint pixel)
    {
        area |= QRect(pixel, QSize(1, 1));
        ++pixels;
    }

    QRect area;
    int pixels = 0;
};

/** Of the hue of the body, in whatever light. */
bool isBlue(QRgb colour)
{
    return 2 * qBlue(colour) > 3 * qGreen(colour) && 2 * qGreen(colour) > 3 * qRed(colour);
}

} // namespace

/** The inspection vehicle as it is seen, driven by what the host tells of the cable. */
class tst_CrawlerView : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void itIsDrawnAroundThePipeAtTheCounter();
    void itMovesWithTheCounter();
    void withoutAnInspectionItIsNotDrawn();
    void theCameraFollowsIt();

private:
    Crawler* crawler() const { return m_view->root()->crawler(); }
    static void drive(float distance) { SystemControlProxy::instance().setSectionDistanceCounter(distance); }
    /** The picture as it would be without the crawler. */
    QImage withoutCrawler()
    {
        crawler()->setEnabled(false);
        m_view->frames(6);
        const QImage picture = m_view->grab();
        crawler()->setEnabled(true);
        m_view->frames(6);
        return picture;
    }
    QImage picture()
    {
        m_view->frames(6);
        return m_view->grab();
    }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<TestProject> m_project;
    CDomainObjectPointer m_inspection;
};

void tst_CrawlerView::initTestCase()
{
    m_view = std::make_unique<SceneWindow>();
    m_project = std::make_unique<TestProject>();
    const auto a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    const auto b = m_project->addNode("B", "POINT ZM(400040 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    const auto pipe = m_project->addSection("A-B", a, b, {{"OBJ_Size1", 1000}});
    m_inspection = m_project->addInspection(pipe, "LINESTRING ZM(400040 5600000 98 320,400000 5600000 98 0)");
    m_project->activate();
    QTRY_VERIFY(SceneEntities::instance().getPipeEntities().count() == 1);
    Torvik::AppState::instance().setActiveInspection(m_inspection);
    QTRY_VERIFY(crawler()->section());
    const auto course = crawler()->section()->pipe()->getShapePoints();
    m_view->lookDown((course.first() + course.last()) / 2.0F, 1000.0F);
}

void tst_CrawlerView::cleanupTestCase()
{
    Torvik::AppState::instance().setActiveInspection({});
    m_project.reset();
    m_view.reset();
}

void tst_CrawlerView::itIsDrawnAroundThePipeAtTheCounter()
{
    QVERIFY(crawler()->active());
    drive(8.0F);

    const QImage with = picture();
    m_view->keep("crawler-8");
    const Difference drawn(withoutCrawler(), with);

    QVERIFY2(drawn.pixels > 100, qPrintable(QString::number(drawn.pixels)));
    // From above its body is blue, and wider than the pipe.
    const QPoint place = m_view->inWindow(m_view->pixelOf(crawler()->position()));
    QVERIFY(drawn.area.contains(place));
    QVERIFY(isBlue(with.pixel(place)));
}

void tst_CrawlerView::itMovesWithTheCounter()
{
    drive(8.0F);
    const QVector3D from = crawler()->position();
    const QImage before = withoutCrawler();
    const Difference first(before, picture());

    drive(22.0F);
    const QVector3D to = crawler()->position();
    const Difference second(before, picture());
    m_view->keep("crawler-22");

    QVERIFY2(std::abs((to - from).length() - 14.0F) < 0.01F,
             qPrintable(QStringLiteral("%1 to %2").arg(double(from.x())).arg(double(to.x()))));
    const QPoint expected = m_view->pixelOf(to) - m_view->pixelOf(from);
    QVERIFY2(expected.manhattanLength() > 50, qPrintable(QString::number(expected.manhattanLength())));
    // Half a pixel of rounding at either end, and the perspective of what stands out.
    const QPoint moved = second.area.center() - first.area.center();
    QVERIFY2((moved - expected).manhattanLength() <= 4,
             qPrintable(QStringLiteral("%1 %2").arg(moved.x()).arg(expected.x())));
    QVERIFY(!second.area.intersects(first.area));
}

void tst_CrawlerView::withoutAnInspectionItIsNotDrawn()
{
    drive(15.0F);
    const QImage with = picture();

    Torvik::AppState::instance().setActiveInspection({});
    const QImage without = picture();

    QVERIFY(!crawler()->active());
    const QPoint place = m_view->inWindow(m_view->pixelOf(crawler()->position()));
    QVERIFY(isBlue(with.pixel(place)));
    QVERIFY(!isBlue(without.pixel(place)));
    Torvik::AppState::instance().setActiveInspection(m_inspection);
    QTRY_VERIFY(!m_view->camera()->property("animationsRunning").toBool());
}

void tst_CrawlerView::theCameraFollowsIt()
{
    m_view->setFollowing(true);
    drive(6.0F);
    QTRY_VERIFY(!m_view->camera()->property("animationsRunning").toBool());
    const QVector3D first = m_view->camera()->position();

    drive(20.0F);
    QTRY_VERIFY((m_view->camera()->position() - first).length() > 13.0F);
    QTRY_VERIFY(!m_view->camera()->property("animationsRunning").toBool());

    QVERIFY(std::abs((m_view->camera()->position() - first).length() - 14.0F) < 0.1F);
    m_view->keep("crawler-followed");
    m_view->setFollowing(false);
}

KX_SCENE_TEST_MAIN(tst_CrawlerView)
#include "tst_CrawlerView.moc"
