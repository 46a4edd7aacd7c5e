#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "interaction/Utils3d.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <Qt3DCore/QTransform>
#include <Qt3DRender/QCamera>
#include <Qt3DRender/QCameraLens>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;
using Kx::Test::TestProject;
using Torvik::AppState;

namespace {

// 50 m apart.
const QString placeA = QStringLiteral("POINT ZM(570000 5830000 40 16)");
const QString placeB = QStringLiteral("POINT ZM(570030 5830040 39 16)");
constexpr int kDownstream = 1;
constexpr int kUpstream = 2;

bool overPoint(const QVector3D& centre, const QVector3D& point)
{
    return std::hypot(centre.x() - point.x(), centre.z() - point.z()) < 0.01F && std::abs(centre.y()) < 0.01F;
}

/** Tell how many listen to them. */
class CountedCamera : public Qt3DRender::QCamera {
public:
    int listeners() const { return receivers(SIGNAL(positionChanged(QVector3D))); }
};
class CountedTransform : public Qt3DCore::QTransform {
public:
    int listeners() const { return receivers(SIGNAL(translationChanged(QVector3D))); }
};

} // namespace

/** Where the navigation takes the view in a project with an active inspection, and where it sees the crawler. */
class tst_GlobalNavGoTo : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_project = std::make_unique<TestProject>();
        m_root = new SceneRoot;
        m_root->setCamera(&m_camera);
        auto* const crawler = new Crawler(m_root);
        crawler->setActive(true);
        m_root->setCrawler(crawler);
        lookDownFromAfar();
        m_root->qmlOnCompleted();
    }

    void cleanup()
    {
        AppState::instance().setActiveInspection({});
        AppState::instance().setActiveProject({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_root->setCamera(nullptr);
        delete m_root;
        m_project.reset();
        GdalGeoProjector::instance()->deinit();
    }

    void theViewGoesToTheNodesOfTheFlow_data()
    {
        QTest::addColumn<int>("direction");
        QTest::newRow("inspected with the flow") << kDownstream;
        QTest::newRow("inspected against the flow") << kUpstream;
    }

    void theViewGoesToTheNodesOfTheFlow()
    {
        QFETCH(int, direction);
        const auto a = m_project->addNode("A", placeA);
        const auto b = m_project->addNode("B", placeB);
        activeSection(a, b, direction);
        const auto& nodes = SceneEntities::instance().getNodes();
        GlobalNav* nav = GlobalNav::instance();

        QVERIFY(nav->hasUpstreamNode());
        QVERIFY(nav->hasDownstreamNode());
        nav->goToDownstreamNode();
        QVERIFY(overPoint(m_camera.viewCenter(), nodes.value(b->id())->position()));
        nav->goToUpstreamNode();
        QVERIFY(overPoint(m_camera.viewCenter(), nodes.value(a->id())->position()));
    }

    void theViewGoesToWhereTheDistanceCounterStands()
    {
        const Section* section =
            activeSection(m_project->addNode("A", placeA), m_project->addNode("B", placeB), kDownstream);
        m_root->onDistanceValueChanged(12.5);

        GlobalNav::instance()->goToCurrentSection();

        QVERIFY(overPoint(m_camera.viewCenter(), section->crawlerTransformMatrix().column(3).toVector3D()));
        const QVector3D way = m_camera.viewCenter() - section->startNode()->position();
        QVERIFY(std::abs(std::hypot(way.x(), way.z()) - 12.5F) < 0.1F);
    }

    void anEndWithoutANodeIsNoPlaceToGoTo()
    {
        activeSection({}, m_project->addNode("B", placeB), kDownstream);
        GlobalNav* nav = GlobalNav::instance();

        QVERIFY(!nav->hasUpstreamNode());
        QVERIFY(nav->hasDownstreamNode());
        nav->goToUpstreamNode();

        QCOMPARE(m_camera.position(), m_afar);
    }

    void againstTheFlowTheStartDecidesWhetherThereIsAnUpstreamNode()
    {
        const Section* section = activeSection(m_project->addNode("A", placeA), {}, kUpstream);
        GlobalNav* nav = GlobalNav::instance();

        QVERIFY(section->startNode()->isVirtual());
        QVERIFY(!section->upstreamNode()->isVirtual());
        QVERIFY(!nav->hasUpstreamNode());
        nav->goToUpstreamNode();

        QCOMPARE(m_camera.position(), m_afar);
    }

    void aDeletedNodeIsNoPlaceToGoTo()
    {
        const Section* section =
            activeSection(m_project->addNode("A", placeA), m_project->addNode("B", placeB), kUpstream);
        GlobalNav* nav = GlobalNav::instance();

        delete section->endNode();
        QVERIFY(nav->hasUpstreamNode());
        QVERIFY(!nav->hasDownstreamNode());
        nav->goToUpstreamNode();
        QCOMPARE(m_camera.position(), m_afar);
    }

    void aDeletedStartNodeIsNoPlaceToGoToEither()
    {
        const Section* section =
            activeSection(m_project->addNode("A", placeA), m_project->addNode("B", placeB), kUpstream);
        GlobalNav* nav = GlobalNav::instance();

        delete section->startNode();
        QVERIFY(!nav->hasUpstreamNode());
        QVERIFY(nav->hasDownstreamNode());
        nav->goToDownstreamNode();
        QCOMPARE(m_camera.position(), m_afar);
    }

    void anAnnouncedLateralShowsTheCrawlersPlaceOnTheScreen()
    {
        GlobalNav* nav = GlobalNav::instance();
        activeSection(m_project->addNode("A", placeA), m_project->addNode("B", placeB), kDownstream);
        m_root->setSceneWidth(800.0);
        m_root->setSceneHeight(600.0);
        m_root->onDistanceValueChanged(6.0);
        nav->goToUpstreamNode();
        CountedTransform lateral;
        lateral.setTranslation({500, 0, 500});

        nav->onLateralInProximity("any", &lateral);
        const QPointF first = crawlerPixel();
        QVERIFY(near(nav->pipeProximityPos(), first));

        m_camera.setPosition(m_camera.position() + QVector3D(200, 0, 0));
        const QPointF afterCamera = crawlerPixel();
        QVERIFY(!near(afterCamera, first));
        QVERIFY(near(nav->pipeProximityPos(), afterCamera));

        // A crawler that moves isn't heard before the transform changes.
        m_root->onDistanceValueChanged(4.0);
        QVERIFY(!near(crawlerPixel(), afterCamera));
        QVERIFY(near(nav->pipeProximityPos(), afterCamera));
        lateral.setTranslation({501, 0, 500});
        QVERIFY(near(nav->pipeProximityPos(), crawlerPixel()));
        nav->onLateralNotInProximity();
    }

    void announcementsDontPileUp()
    {
        GlobalNav* nav = GlobalNav::instance();
        const int silent = m_camera.listeners();
        CountedTransform first;
        CountedTransform second;
        const int unheard = first.listeners();

        nav->onLateralInProximity("any", &first);
        nav->onLateralInProximity("any", &first);
        QCOMPARE(m_camera.listeners(), silent + 1);
        QCOMPARE(first.listeners(), unheard + 1);
        nav->onLateralInProximity("any", &second);
        QCOMPARE(m_camera.listeners(), silent + 1);
        QCOMPARE(first.listeners(), unheard);
        QCOMPARE(second.listeners(), unheard + 1);

        QSignalSpy ended(nav, &GlobalNav::lateralNotInProximity);
        QSignalSpy announced(nav, &GlobalNav::lateralInProximity);
        nav->onLateralNotInProximity();
        QCOMPARE(ended.count(), 1);
        QCOMPARE(m_camera.listeners(), silent);
        QCOMPARE(second.listeners(), unheard);
        nav->onLateralInProximity("any", &first);
        QCOMPARE(announced.count(), 0);
        nav->onLateralNotInProximity();
    }

    void aLateralThatDiesLeavesNobodyAtTheCamera()
    {
        GlobalNav* nav = GlobalNav::instance();
        const int silent = m_camera.listeners();
        for (int round = 0; round < 2; ++round) {
            CountedTransform lateral;
            nav->onLateralInProximity("any", &lateral);
        }
        QCOMPARE(m_camera.listeners(), silent + 1);

        nav->onLateralNotInProximity();
        QCOMPARE(m_camera.listeners(), silent);
    }

private:
    static bool near(const QPointF& a, const QPointF& b) { return (a - b).manhattanLength() < 0.5; }

    QPointF crawlerPixel()
    {
        const Section* section = SceneEntities::instance().getActiveSectionEntity();
        const QVector3D crawler = section->crawlerTransformMatrix().column(3).toVector3D();
        return Utils3d::pointWorldToScreen(&m_camera, crawler, 800.0F, 600.0F);
    }

    void lookDownFromAfar()
    {
        m_camera.lens()->setPerspectiveProjection(3.0F, 1.5F, 1.0F, 10000.0F);
        m_camera.setPosition(m_afar);
        m_camera.setViewCenter({1000, 0, 1000});
        m_camera.setUpVector({0, 0, 1});
    }

    Section* activeSection(const CDomainObjectPointer& from, const CDomainObjectPointer& to, int direction)
    {
        const auto inspection = m_project->addInspection(m_project->addSection("S", from, to), {}, direction);
        m_project->activate();
        AppState::instance().setActiveInspection(inspection);
        return SceneEntities::instance().getActiveSectionEntity();
    }

    const QVector3D m_afar {1000, 300, 1000};
    CountedCamera m_camera;
    std::unique_ptr<TestProject> m_project;
    SceneRoot* m_root = nullptr;
};

QTEST_MAIN(tst_GlobalNavGoTo)
#include "tst_GlobalNavGoTo.moc"
