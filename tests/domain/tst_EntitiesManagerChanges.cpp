#include "SmallNetwork.h"
#include "common/LogCapture.h"
#include "common/NotificationRecorder.h"
#include "domain/EntitiesManager.h"
#include "domain/NodeAdapter.h"
#include "geo/GdalGeoProjector.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/SceneRoot.h"

#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;
using Torvik::AppState;

/** What becomes of the scene's objects when their records change, return or wait. */
class tst_EntitiesManagerChanges : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = new SceneRoot;
        m_root->qmlOnCompleted();
    }

    void cleanup()
    {
        AppState::instance().setActiveProject({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_root;
        GdalGeoProjector::instance()->deinit();
    }

    void aChangedInspectionReachesItsSection()
    {
        SmallNetwork net;
        net.project.activate();
        QVERIFY(!sectionOf(net.inspection)->inspectionUpstream());
        write(net.inspection, "INS_InspectionDir", 2);
        QTRY_VERIFY(sectionOf(net.inspection)->inspectionUpstream());
    }

    void anInspectedLateralStandsAndFollowsItsRecord()
    {
        SmallNetwork net;
        const auto lateral = net.project.addLateral(QStringLiteral("L"), net.pipe);
        const auto inspection = net.project.addInspection(lateral, {}, 0);
        net.project.activate();
        QVERIFY(sectionOf(inspection));
        QCOMPARE(sectionOf(inspection)->name(), QStringLiteral("L"));

        write(lateral, "OBJ_Size1", 200);

        QTRY_COMPARE(sectionOf(inspection)->diameter(), 200.0);
    }

    void aPipesNewNameIsShown()
    {
        SmallNetwork net;
        net.project.activate();
        write(net.pipe, "OBJ_Key", QStringLiteral("X"));
        QTRY_COMPARE(sectionOf(net.inspection)->name(), QStringLiteral("X"));
    }

    void aNodeThatComesBackIsTakenByItsSections()
    {
        SmallNetwork net;
        net.project.activate();
        delete nodeOf(net.a);
        QVERIFY(!sectionOf(net.inspection)->startNode());

        manager().onNodeInserted(net.a);

        QVERIFY(nodeOf(net.a));
        QCOMPARE(sectionOf(net.inspection)->startNode(), nodeOf(net.a));
    }

    void aNodeWithoutAShapeIsTakenWithTheNextChangeOfItsSection()
    {
        TestProject project(utm32);
        const auto a = project.addNode(QStringLiteral("A"), placeA);
        const auto b = project.addNode(QStringLiteral("B"));
        const auto pipe = project.addSection(QStringLiteral("A-B"), a, b);
        const auto inspection = project.addInspection(pipe);
        project.activate();
        delete nodeOf(b);

        manager().onNodeInserted(b);
        QVERIFY(nodeOf(b));
        QVERIFY(sectionOf(inspection)->endNode() != nodeOf(b));

        write(pipe, "OBJ_Size1", 600);
        QTRY_COMPARE(sectionOf(inspection)->endNode(), nodeOf(b));
    }

    void aNodeInsertedAgainTakesTheEntry()
    {
        SmallNetwork net;
        net.project.activate();
        Node* const first = nodeOf(net.a);
        manager().onNodeInserted(net.a);
        QVERIFY(nodeOf(net.a));
        QVERIFY(nodeOf(net.a) != first);
        delete first;
        QVERIFY(nodeOf(net.a));
    }

    void aNodeThatReturnsUnderItsIdStandsOnce()
    {
        SmallNetwork net;
        net.project.activate();
        const QString id = net.b->id();
        const QPointer<Node> before = nodeOf(net.b);
        QVERIFY(Torvik::Database::ProjectStore::instance().deleteObject(net.b));
        const auto again = net.project.addNode(QStringLiteral("B2"), placeB, {{"OBJ_PK", id}});

        QTRY_VERIFY(before.isNull());
        QVERIFY(nodeOf(again));
        QCOMPARE(nodeOf(again)->name(), QStringLiteral("B2"));
        QCOMPARE(nodeOf(again)->position(), QVector3D(-30, -1, 40));
    }

    void aNodesRemovalIsLeftToItsId()
    {
        SmallNetwork net;
        net.project.activate();
        manager().onNodeRemoved(net.a);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(nodeOf(net.a));
    }

    void theFirstPositionedNodeHasTheProjectionStoredOnce()
    {
        TestProject project;
        project.addNode(QStringLiteral("A"), placeA);
        project.addNode(QStringLiteral("B"), placeB);
        const QString id = project.project()->id();
        QCoreApplication::processEvents();
        NotificationRecorder recorder;

        project.activate();
        QTest::qWait(50);

        QCOMPARE(recorder.heard.filter(QStringLiteral("PRJ_ProjectionWKT")),
                 QStringList {QStringLiteral("2 %1 PRJ_ProjectionWKT -1").arg(id)});
        const QString written = project.project()->projectionWKT();
        QVERIFY(!written.isEmpty());
        QCOMPARE(
            project.stored(QStringLiteral("PROJECT"), QStringLiteral("PRJ_PK"), id, QStringLiteral("PRJ_ProjectionWKT"))
                .toString(),
            written);
    }

    void centimetresSurviveTheDistanceToTheOriginOfTheMap()
    {
        SmallNetwork net;
        net.project.activate();
        const QVector3D position =
            EntitiesManager::positionFromWKT(QStringLiteral("POINT ZM(570030.137 5830040.291 39.053 16)"));
        QVERIFY((position - QVector3D(-30.137F, -0.947F, 40.291F)).length() < 1e-4F);
    }

    void withoutAShapeOrASourceThereAreNoFlags()
    {
        SmallNetwork net;
        const auto bare = net.project.addNode(QStringLiteral("C"));
        const auto sourceless =
            net.project.addNode(QStringLiteral("D"), QStringLiteral("POINT ZM(570030 5830040 39 none)"));
        net.project.activate();

        const auto nowhere = EntitiesManager::domainObjScenePos(*bare);
        QCOMPARE(nowhere.position, QVector3D(0, 0, 0));
        QCOMPARE(nowhere.flags.getFlags(), 0);
        const auto somewhere = EntitiesManager::domainObjScenePos(*sourceless);
        QCOMPARE(somewhere.position, QVector3D(-30, -1, 40));
        QCOMPARE(somewhere.flags.getFlags(), 0);
        QCOMPARE(EntitiesManager::domainObjScenePos(*net.b).flags.getFlags(), 16);
    }

    void aNodeThatHadAPositionLeavesItsSectionsAsTheyAre()
    {
        TestProject project(utm32);
        const auto a = project.addNode(QStringLiteral("A"), placeA);
        const auto b = project.addNode(QStringLiteral("B"), placeB);
        const auto inspection = project.addInspection(project.addSection(QStringLiteral("A-B"), a, b));
        project.activate();
        Section* const section = sectionOf(inspection);
        const QQuaternion byHand = QQuaternion::fromAxisAndAngle(0, 1, 0, 77);
        section->setRotation(byHand, 0);

        write(b, "OBJ_Shape_WKT", QStringLiteral("POINT ZM(570060 5830000 40 16)"));

        QTRY_COMPARE(nodeOf(b)->position(), QVector3D(-60, 0, 0));
        QCOMPARE(section->rotation(), byHand);
    }

    void aValueThatTheRecordHoldsMovesNothing()
    {
        SmallNetwork net;
        net.project.activate();
        const QVector3D elsewhere(7, 8, 9);
        nodeOf(net.b)->setPosition(elsewhere, 0);
        auto* const proxy = nodeOf(net.b)->getProps()->getProxy();

        emit proxy->objectValueChanged(QStringLiteral("OBJ_Shape_WKT"),
                                       net.b->readValue(QStringLiteral("OBJ_Shape_WKT")), 1);
        QCOMPARE(nodeOf(net.b)->position(), elsewhere);
        emit proxy->objectValueChanged(QStringLiteral("OBJ_Shape_WKT"), placeA, 1);
        QCOMPARE(nodeOf(net.b)->position(), QVector3D(-30, -1, 40));
    }

    void anotherColumnMovesNothing()
    {
        SmallNetwork net;
        net.project.activate();
        const QVector3D elsewhere(7, 8, 9);
        nodeOf(net.b)->setPosition(elsewhere, 0);
        write(net.b, "OBJ_DepthToInvert", 2.5);
        QTRY_COMPARE(nodeOf(net.b)->depth(), 2.5F);
        QCOMPARE(nodeOf(net.b)->position(), elsewhere);
    }

    void anInspectionWhosePipeHasGoneIsLogged()
    {
        CDomainObjectPointer orphan;
        {
            TestProject gone(utm32);
            orphan = gone.addInspection(gone.addSection(QStringLiteral("S"), {}, {}), {}, 0);
        }
        QCoreApplication::processEvents(); // the notifications hold the pipe
        LogCapture log;
        manager().onSectionInspectionInserted(orphan);
        QCOMPARE(log.count(1, QStringLiteral("View3d"), QStringLiteral("onSectionInspectionInserted invalid object2")),
                 1);
        QCOMPARE(SceneEntities::instance().getPipeEntities().count(), 0);
    }

    void theCrawlerDrawsTheActiveSectionOut()
    {
        SmallNetwork net;
        net.project.activate();
        AppState::instance().setActiveInspection(net.inspection);
        manager().onCrawlerPositionChanged(60.0);
        QCOMPARE(sectionOf(net.inspection)->length(), 60.0);
    }

    void whatHangsOnOthersLeavesBeforeThem()
    {
        TestProject project(utm32);
        const auto a = project.addNode(QStringLiteral("A"), placeA);
        const auto inspection = project.addInspection(project.addSection(QStringLiteral("S"), a, {}));
        project.activate();
        Section* const section = sectionOf(inspection);
        Node* const end = section->endNode();
        QVERIFY(end && end->isVirtual());
        QStringList gone;
        connect(nodeOf(a), &QObject::destroyed, this, [&] { gone << QStringLiteral("node"); });
        connect(section, &QObject::destroyed, this, [&] { gone << QStringLiteral("section"); });
        connect(end, &QObject::destroyed, this, [&] { gone << QStringLiteral("virtual node"); });

        manager().onCleanAll();

        QTRY_COMPARE(gone,
                     (QStringList {QStringLiteral("node"), QStringLiteral("section"), QStringLiteral("virtual node")}));
    }

    void virtualNodesGoWithoutAnEntryAndOtherThingsStay()
    {
        const QPointer<Node> guide = Node::createVirtual(m_root, true, QStringLiteral("V"), QStringLiteral("NOD"));
        const QPointer<Qt3DCore::QEntity> marker = m_root->createMarker(Qt::red);
        manager().onCleanAll();
        QTRY_VERIFY(guide.isNull());
        QVERIFY(marker);
    }

    void aNodeThatIsTheLowerEndWaitsJustAsWell()
    {
        SmallNetwork net;
        net.project.activate();
        const auto c = waitingNode(net, QStringLiteral("C"));

        const auto inspection = net.project.addInspection(net.project.addSection(QStringLiteral("A-C"), net.a, c));

        QTRY_VERIFY(nodeOf(c));
        QCOMPARE(sectionOf(inspection)->endNode(), nodeOf(c));
    }

    void ofTwoWaitingEndsTheUpperOneComesFirst()
    {
        SmallNetwork net;
        net.project.activate();
        const auto c = waitingNode(net, QStringLiteral("C"));
        const auto d = waitingNode(net, QStringLiteral("D"));
        const auto pipe = net.project.addSection(QStringLiteral("C-D"), c, d);

        net.project.addInspection(pipe);
        QTRY_COMPARE(SceneEntities::instance().getPipeEntities().count(), 2);
        QVERIFY(nodeOf(c));
        QVERIFY(!nodeOf(d));

        net.project.addInspection(pipe);
        QTRY_COMPARE(SceneEntities::instance().getPipeEntities().count(), 3);
        QVERIFY(nodeOf(d));

        // Nobody waits any more.
        delete nodeOf(c);
        net.project.addInspection(pipe);
        QTRY_COMPARE(SceneEntities::instance().getPipeEntities().count(), 4);
        QVERIFY(!nodeOf(c));
    }

private:
    EntitiesManager& manager() { return m_root->entitiesManager(); }

    /** A node of the project that is not in the scene and waits. */
    CDomainObjectPointer waitingNode(SmallNetwork& net, const QString& key)
    {
        const auto node = net.project.addNode(key, placeB);
        [&] { QTRY_VERIFY(nodeOf(node)); }();
        delete nodeOf(node);
        manager().postponeNodeInsertion(node);
        return node;
    }

    SceneRoot* m_root = nullptr;
};

QTEST_MAIN(tst_EntitiesManagerChanges)
#include "tst_EntitiesManagerChanges.moc"
