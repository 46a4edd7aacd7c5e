#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "geo/GdalGeoProjector.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::LogCapture;
using Kx::Test::TestProject;
using Torvik::AppState;
using Torvik::QmlWrapper::CQmlDomainObject;

namespace {

const QString placeA = QStringLiteral("POINT ZM(570000 5830000 40 16)");
const QString placeB = QStringLiteral("POINT ZM(570030 5830040 39 16)");
const QString placeC = QStringLiteral("POINT ZM(570060 5830040 38 16)");

SceneEntities& entities()
{
    return SceneEntities::instance();
}

Section* sectionOf(const CDomainObjectPointer& inspection)
{
    return entities().getPipeEntities().getByInspectionId(inspection->id());
}

bool arrowAt(const CDomainObjectPointer& inspection)
{
    return sectionOf(inspection)->isDirectionArrowShown();
}

/** Lines of the registry's log. */
int logged(const LogCapture& log, int level, const char* message)
{
    return log.count(level, QStringLiteral("View3d::SceneEntities"), QLatin1String(message));
}

void activate(const CDomainObjectPointer& inspection)
{
    AppState::instance().setActiveInspection(inspection);
}

} // namespace

/** Which section the active inspection makes the active one, and what the scene's registry knows. */
class tst_SceneEntities : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = new SceneRoot;
        m_root->qmlOnCompleted();
        m_project = std::make_unique<TestProject>(QStringLiteral("EPSG:25832"));
        m_a = m_project->addNode(QStringLiteral("A"), placeA);
        m_b = m_project->addNode(QStringLiteral("B"), placeB);
        m_pipe = m_project->addSection(QStringLiteral("S"), m_a, m_b);
        m_inspection = m_project->addInspection(m_pipe);
    }

    void cleanup()
    {
        AppState::instance().setActiveProject({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_a.reset();
        m_b.reset();
        m_pipe.reset();
        m_inspection.reset();
        m_project.reset();
        delete m_root;
        GdalGeoProjector::instance()->deinit();
    }

    void aNewRootConnectsItOnce()
    {
        delete m_root;
        const LogCapture log;
        m_root = new SceneRoot;
        QCOMPARE(log.count(4, QStringLiteral("View3d::SceneEntities"),
                           QStringLiteral("Connected to application state data")),
                 1);
    }

    void connectingCatchesUpWithTheActiveInspection()
    {
        m_project->activate();
        activate(m_inspection);
        sectionOf(m_inspection)->hideDirectionArrow();

        entities().initConnections();

        QVERIFY(arrowAt(m_inspection));
    }

    void anInspectionThatIsActivatedWhileObjectsComeWaitsForItsSection()
    {
        const auto& manager = m_root->entitiesManager();
        const QObject here;
        connect(&manager, &EntitiesManager::loadingStarted, &here, [&] { activate(m_inspection); });
        QStringList heard;
        const auto note = [&](const char* signal) {
            heard << QStringLiteral("%1 %2").arg(signal).arg(sectionOf(m_inspection) && arrowAt(m_inspection));
        };
        connect(&manager, &EntitiesManager::loadingProgress, &here, [&] { note("progress"); });
        connect(&manager, &EntitiesManager::loadingFinished, &here, [&] { note("finished"); });

        m_project->activate();

        QTRY_VERIFY(!manager.isBusy());
        QCOMPARE(heard.last(), QStringLiteral("finished 1"));
        heard.removeLast();
        QVERIFY(!heard.isEmpty());
        QVERIFY2(!heard.contains(QStringLiteral("progress 1")), "the scene's objects were not all there yet");
    }

    void whatWaitedIsDroppedWithTheInspection()
    {
        const QObject here;
        connect(&m_root->entitiesManager(), &EntitiesManager::loadingStarted, &here, [&] {
            activate(m_inspection);
            activate({});
        });
        m_project->activate();
        QTRY_VERIFY(!m_root->entitiesManager().isBusy());
        QVERIFY(!arrowAt(m_inspection));
    }

    void anInspectionThatIsActiveBeforeALoadIsLeftAlone()
    {
        m_project->activate();
        activate(m_inspection);
        const QSignalSpy cleared(sectionOf(m_inspection), &Section::lateralNotInProximity);
        entities().setLoading(true);
        entities().setLoading(false);
        QCOMPARE(cleared.count(), 0);
    }

    void takingOverAnInspectionEndsAMeasurement()
    {
        m_project->activate();
        GlobalNav::instance()->setRealTimeEnabled(true);
        activate(m_inspection);
        QVERIFY(!GlobalNav::instance()->realTimeEnabled());
        QVERIFY(entities().getActiveSectionEntity());
    }

    void withoutAnInspectionTheArrowStaysAndAStructureStartsNothing()
    {
        m_project->activate();
        activate(m_inspection);
        QVERIFY(arrowAt(m_inspection));
        const QSignalSpy cleared(sectionOf(m_inspection), &Section::lateralNotInProximity);

        activate({});
        QVERIFY(arrowAt(m_inspection));
        QVERIFY(!entities().getActiveSectionEntity());
        entities().onActiveStructureChanged(CQmlDomainObject(m_pipe));
        QCOMPARE(cleared.count(), 0);
    }

    void aSectionThatNeedsNoArrowTakesTheOtherOnesAway()
    {
        const auto longOne =
            m_project->addInspection(m_project->addSection(QStringLiteral("T"), m_a, m_b),
                                     QStringLiteral("LINESTRING ZM(570030 5830040 37 320,570000 5830000 37 0)"));
        m_project->activate();
        QVERIFY(!sectionOf(longOne)->needsDirectionArrow());
        activate(m_inspection);
        QVERIFY(arrowAt(m_inspection));

        activate(longOne);

        QVERIFY(!arrowAt(m_inspection));
        QVERIFY(!arrowAt(longOne));
    }

    void anInspectionWithoutASectionInTheSceneChangesNoArrow()
    {
        m_project->activate();
        activate(m_inspection);
        // The scene hears of it with the next turn of the event loop.
        const auto unknown = m_project->addInspection(m_pipe);

        activate(unknown);

        QVERIFY(!entities().getActiveSectionEntity());
        QVERIFY(arrowAt(m_inspection));
        QTRY_VERIFY(entities().getActiveSectionEntity());
    }

    void theArrowStandsBeforeTheOldAnnouncementIsCleared()
    {
        m_project->activate();
        Section* const section = sectionOf(m_inspection);
        QVector<bool> arrow;
        const QObject here;
        connect(section, &Section::lateralNotInProximity, &here,
                [&] { arrow.append(section->isDirectionArrowShown()); });
        activate(m_inspection);
        QCOMPARE(arrow, QVector<bool> {true});
    }

    void theCrawlerGoesIntoTheActiveSection()
    {
        m_project->activate();
        Crawler* const crawler = addCrawler();
        const LogCapture log;

        activate(m_inspection);

        QCOMPARE(crawler->section(), sectionOf(m_inspection));
        QCOMPARE(logged(log, 4, "Crawler attached to the Section"), 1);
        QCOMPARE(logged(log, 3, "Cannot attach crawler to null section"), 0);
        const QVector3D ahead = sectionOf(m_inspection)->crawlerTransformMatrix().column(3).toVector3D();
        QVERIFY((crawler->position() - ahead).length() < 1e-4F);
    }

    void withoutASectionNothingIsAttachedAndTheLogSaysBoth()
    {
        m_project->activate();
        Crawler* const crawler = addCrawler();
        activate(m_inspection);
        const auto unknown = m_project->addInspection(m_pipe);
        const LogCapture log;

        activate(unknown);

        QCOMPARE(crawler->section(), sectionOf(m_inspection));
        QCOMPARE(logged(log, 3, "Cannot attach crawler to null section"), 1);
        QCOMPARE(logged(log, 4, "Crawler attached to the Section"), 1);
    }

    void theAnnouncementIsClearedBeforeTheCrawlerComes()
    {
        m_project->activate();
        const Crawler* const crawler = addCrawler();
        QVector<bool> attached;
        const QObject here;
        connect(sectionOf(m_inspection), &Section::lateralNotInProximity, &here,
                [&] { attached.append(crawler->section() != nullptr); });

        activate(m_inspection);

        QCOMPARE(attached, QVector<bool> {false});
    }

    void aStructureThatComesBeforeTheInspectionAttachesNothingYet()
    {
        m_project->activate();
        const Crawler* const crawler = addCrawler();

        entities().onActiveStructureChanged(CQmlDomainObject(m_pipe));
        QVERIFY(!crawler->section());
        activate(m_inspection);

        QCOMPARE(crawler->section(), sectionOf(m_inspection));
    }

    void aStructureThatFollowsAttachesAgain()
    {
        m_project->activate();
        addCrawler();
        activate(m_inspection);
        const LogCapture log;

        entities().onActiveStructureChanged(CQmlDomainObject());
        QCOMPARE(logged(log, 4, "Crawler attached to the Section"), 0);
        entities().onActiveStructureChanged(CQmlDomainObject(m_pipe));
        QCOMPARE(logged(log, 4, "Crawler attached to the Section"), 1);
    }

    void withoutAnInspectionTheCrawlerStaysInItsSectionUnseen()
    {
        m_project->activate();
        const Crawler* const crawler = addCrawler();
        activate(m_inspection);
        QVERIFY(crawler->isEnabled());

        activate({});

        QCOMPARE(crawler->section(), sectionOf(m_inspection));
        QVERIFY(!crawler->isEnabled());
    }

    void theCounterMovesTheCrawlerAndIsKeptWithoutASection()
    {
        m_project->activate();
        const Crawler* const crawler = addCrawler();
        activate(m_inspection);

        entities().onCrawlerPositionChanged(20.0);
        const QVector3D ahead = sectionOf(m_inspection)->crawlerTransformMatrix().column(3).toVector3D();
        QVERIFY((crawler->position() - ahead).length() < 1e-4F);
        QVERIFY((crawler->position() - sectionOf(m_inspection)->position()).length() > 19.0F);

        activate({});
        entities().onCrawlerPositionChanged(8.0);
        QVERIFY((crawler->position() - ahead).length() < 1e-4F);
        activate(m_inspection);
        QSignalSpy started(&entities(), &SceneEntities::start3dRealTimeMeasurements);
        entities().enable3dMeasurement(true);
        QCOMPARE(started.takeFirst().at(2).toFloat(), 8.0F);
    }

    void aCrawlerThatDiesLeavesNoPointerBehind()
    {
        m_project->activate();
        delete addCrawler();

        activate(m_inspection);

        QVERIFY(!entities().getCrawler());
        QVERIFY(entities().getActiveSectionEntity());
    }

    void theUpstreamNodeIsThePlaceToGoTo()
    {
        const auto c = m_project->addNode(QStringLiteral("C"), placeC);
        const auto nowhere = m_project->addNode(QStringLiteral("N"));
        const auto down = m_project->addSection(QStringLiteral("down"), m_b, c);
        const auto up = m_project->addSection(QStringLiteral("up"), m_b, c);
        const auto open = m_project->addSection(QStringLiteral("open"), nowhere, c);
        const auto lost = m_project->addSection(QStringLiteral("lost"), nowhere, {});
        m_project->addInspection(down, {}, 1);
        m_project->addInspection(up, {}, 2);
        m_project->addInspection(open, {}, 1);
        m_project->addInspection(lost, {}, 1);
        m_project->activate();
        const auto placeOf = [](const CDomainObjectPointer& pipe) {
            return entities().getPositionOfAnyNodeFromSection(pipe->id());
        };

        QCOMPARE(placeOf(down), QVariant(QVector3D(-30, -1, 40)));
        // Against the flow it starts at the lower end, and the upper one is its end.
        QCOMPARE(placeOf(up), QVariant(QVector3D(-30, -1, 40)));
        QCOMPARE(placeOf(open), QVariant(QVector3D(-60, -2, 40)));
        QVERIFY(!placeOf(lost).isValid());
    }

    void whatIsDestroyedLeavesEveryRegister()
    {
        m_project->activate();
        Section* const section = sectionOf(m_inspection);
        Node* const node = entities().getNodes().value(m_a->id());
        QObject stranger;

        entities().removeObject(&stranger);
        QCOMPARE(entities().getPipeEntities().count(), 1);
        QCOMPARE(entities().getNodes().size(), 2);

        entities().removeObject(section);
        QCOMPARE(entities().getPipeEntities().count(), 0);
        QVERIFY(entities().getPipeEntities().getBySectionId(m_pipe->id()).isEmpty());
        entities().removeObject(node);
        QCOMPARE(entities().getNodes().keys(), QStringList {m_b->id()});
        delete section;
        delete node;
    }

private:
    Crawler* addCrawler()
    {
        auto* const crawler = new Crawler(m_root);
        crawler->setActive(true);
        m_root->setCrawler(crawler);
        return crawler;
    }

    SceneRoot* m_root = nullptr;
    std::unique_ptr<TestProject> m_project;
    CDomainObjectPointer m_a;
    CDomainObjectPointer m_b;
    QSharedPointer<Torvik::Database::CSectionObject> m_pipe;
    CDomainObjectPointer m_inspection;
};

QTEST_MAIN(tst_SceneEntities)
#include "tst_SceneEntities.moc"
