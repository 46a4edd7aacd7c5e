#include "SmallNetwork.h"
#include "common/LogCapture.h"
#include "domain/EntitiesManager.h"
#include "geo/GdalGeoProjector.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/SceneRoot.h"

#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using namespace Kx::Test;
using Torvik::AppState;

/** What the crawler does when records around it change, come and go. */
class tst_EntitiesManagerCrawler : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = new SceneRoot;
        m_crawler = new Crawler(m_root);
        m_crawler->setActive(true);
        m_root->setCrawler(m_crawler);
        m_root->qmlOnCompleted();
        m_net = std::make_unique<SmallNetwork>();
    }

    void cleanup()
    {
        AppState::instance().setActiveInspection({});
        AppState::instance().setActiveProject({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_net.reset();
        delete m_root;
        GdalGeoProjector::instance()->deinit();
    }

    void anInspectionThatWasActiveBeforeTheSceneGetsIt()
    {
        delete m_root;
        m_net->project.activate();
        AppState::instance().setActiveInspection(m_net->inspection);
        m_root = new SceneRoot;
        m_crawler = new Crawler(m_root);
        m_crawler->setActive(true);
        m_root->setCrawler(m_crawler);

        m_root->qmlOnCompleted();

        QTRY_COMPARE(m_crawler->section(), sectionOf(m_net->inspection));
        QVERIFY(m_crawler->section());
        QVERIFY(stands());
        // It was put there once: it hears what the section does.
        m_crawler->section()->setPosition({3.0F, 4.0F, 5.0F}, TransformFlags::Manual);
        QVERIFY(stands());
    }

    void anInspectionActivatedDuringTheStartGetsItOnce()
    {
        delete m_root;
        m_net->project.activate();
        m_root = new SceneRoot;
        m_crawler = new Crawler(m_root);
        m_crawler->setActive(true);
        m_root->setCrawler(m_crawler);
        const QObject here;
        connect(&manager(), &EntitiesManager::loadingStarted, &here,
                [this] { AppState::instance().setActiveInspection(m_net->inspection); });

        m_root->qmlOnCompleted();

        QTRY_COMPARE(m_crawler->section(), sectionOf(m_net->inspection));
        QVERIFY(m_crawler->section());
        QTRY_VERIFY(!manager().isBusy());
        m_crawler->section()->setPosition({3.0F, 4.0F, 5.0F}, TransformFlags::Manual);
        QVERIFY(stands());
    }

    void anInspectionActivatedAsItIsMadeGetsIt()
    {
        start();
        const auto made = m_net->project.addInspection(m_net->pipe);
        AppState::instance().setActiveInspection(made); // its section comes with the next turn of the event loop
        QTRY_VERIFY(sectionOf(made));
        QCOMPARE(m_crawler->section(), sectionOf(made));
    }

    void anySectionThatGoesTakesItOut()
    {
        const auto other = m_net->project.addInspection(m_net->pipe);
        start();

        manager().onObjectRemoved(other->id());

        QVERIFY(!m_crawler->section());
        QVERIFY(sectionOf(m_net->inspection));
    }

    void aNodeThatGoesLeavesItAlone()
    {
        start();
        manager().onObjectRemoved(m_net->a->id());
        QCOMPARE(m_crawler->section(), sectionOf(m_net->inspection));
    }

    void closingTheProjectTakesItOut()
    {
        start();
        const LogCapture log;
        m_net->project.close();
        QVERIFY(!m_crawler->section());
        QCOMPARE(log.count(1, QStringLiteral("View3d::Crawler"), QStringLiteral("crawlerTransform is null")), 1);
    }

    void aStructureActivatedDuringTheStartGivesItOnce()
    {
        delete m_root;
        m_net->project.activate();
        m_root = new SceneRoot;
        m_crawler = new Crawler(m_root);
        m_crawler->setActive(true);
        m_root->setCrawler(m_crawler);
        AppState::instance().setActiveInspection(m_net->inspection);
        const QObject here;
        connect(&manager(), &EntitiesManager::loadingStarted, &here,
                [this] { AppState::instance().setActiveStructure(m_net->pipe); });

        m_root->qmlOnCompleted();

        QTRY_COMPARE(m_crawler->section(), sectionOf(m_net->inspection));
        QTRY_VERIFY(!manager().isBusy());
        m_crawler->section()->setPosition({3.0F, 4.0F, 5.0F}, TransformFlags::Manual);
        QVERIFY(stands());
    }

    void aSectionThatTakesThePlaceOfItsOwnGetsIt()
    {
        start();
        PipeEntityBuilder builder(nullptr);

        Section* const fresh = builder.createOrReplace(
            m_crawler->section(), nullptr,
            qSharedPointerDynamicCast<Torvik::Database::CPipeInspectionObject>(m_net->inspection));

        QCOMPARE(m_crawler->section(), fresh);
        QVERIFY(stands());
        fresh->setPosition({3.0F, 4.0F, 5.0F}, TransformFlags::Manual);
        QVERIFY(stands());
        delete fresh; // its signals reach the builder
    }

    void aChangedRecordBringsItBackToItsPlace_data()
    {
        QTest::addColumn<QString>("record");
        QTest::newRow("a node") << "node";
        QTest::newRow("a section") << "section";
        QTest::newRow("an inspection") << "inspection";
        QTest::newRow("a finding") << "finding";
        QTest::newRow("a finding that goes") << "removal";
        QTest::newRow("a new finding") << "insertion";
    }

    void aChangedRecordBringsItBackToItsPlace()
    {
        QFETCH(QString, record);
        const auto finding = m_net->project.addObservation(m_net->inspection, "BCCAA", 5.0);
        start();
        QVERIFY(SceneEntities::instance().getObservations().contains(finding->id()));
        const auto another = record == "insertion" ? m_net->project.addObservation(m_net->inspection, "BCCAB", 7.0)
                                                   : QSharedPointer<Torvik::Database::CPipeObservationObject>();
        m_crawler->setPosition({1.0F, 1.0F, 1.0F}, 0);
        QVERIFY(!stands());

        if (record == "node")
            manager().onNodeModified(m_net->a);
        else if (record == "section")
            manager().onSectionModified(m_net->pipe);
        else if (record == "inspection")
            manager().onInspectionModified(m_net->inspection);
        else if (record == "finding")
            manager().onObservationModified(finding);
        else if (record == "removal")
            manager().onObjectRemoved(finding->id());
        else
            manager().onObservationInserted(another, false);

        QVERIFY(stands());
    }

    void aFindingReadFromTheDatabaseLeavesItWhereItIs()
    {
        start();
        const auto finding = m_net->project.addObservation(m_net->inspection, "BCCAA", 5.0);
        m_crawler->setPosition({1.0F, 1.0F, 1.0F}, 0);

        manager().onObservationInserted(finding, true);

        QCOMPARE(m_crawler->position(), QVector3D(1.0F, 1.0F, 1.0F));
    }

    void anUnknownSectionMovesNothing()
    {
        start();
        const auto unknown = m_net->project.addSection("U", {}, {});
        m_crawler->setPosition({1.0F, 1.0F, 1.0F}, 0);

        manager().onSectionModified(unknown);

        QCOMPARE(m_crawler->position(), QVector3D(1.0F, 1.0F, 1.0F));
    }

private:
    EntitiesManager& manager() { return m_root->entitiesManager(); }

    /** The crawler is in its section, which it no longer hears: what moves it now is the manager. */
    void start()
    {
        m_net->project.activate();
        QTRY_VERIFY(!manager().isBusy());
        AppState::instance().setActiveInspection(m_net->inspection);
        m_crawler->attachToSection(m_crawler->section());
        QVERIFY(stands());
    }

    bool stands() const
    {
        const Section* const section = sectionOf(m_net->inspection);
        const QVector3D place = section->crawlerTransformMatrix().column(3).toVector3D();
        return m_crawler->section() == section && (m_crawler->position() - place).length() < 1e-4F;
    }

    SceneRoot* m_root = nullptr;
    Crawler* m_crawler = nullptr;
    std::unique_ptr<SmallNetwork> m_net;
};

QTEST_MAIN(tst_EntitiesManagerCrawler)
#include "tst_EntitiesManagerCrawler.moc"
