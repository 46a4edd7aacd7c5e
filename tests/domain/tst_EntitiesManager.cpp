#include "SmallNetwork.h"
#include "common/LogCapture.h"
#include "domain/EntitiesManager.h"
#include "geo/GdalGeoProjector.h"
#include "network/Node.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/SceneRoot.h"

#include <QSignalSpy>
#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;
using Torvik::AppState;
using Torvik::Database::ProjectStore;

class tst_EntitiesManager : public QObject {
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

    void aNetworkStandsWhereTheProjectSays()
    {
        SmallNetwork net;
        net.project.activate();

        Node* const a = nodeOf(net.a);
        Node* const b = nodeOf(net.b);
        QVERIFY(a && b);
        // The first positioned node is the scene's origin; x grows to the west, z to the north.
        QCOMPARE(a->position(), QVector3D(0, 0, 0));
        QCOMPARE(b->position(), QVector3D(-30, -1, 40));
        QCOMPARE(a->transformFlags(), 16);
        QVERIFY(a->has3dPosition());
        QVERIFY(a->isVisible());
        QCOMPARE(a->name(), QStringLiteral("A"));
        QCOMPARE(a->depth(), 3.0F);
        QCOMPARE(a->seaLevel(), 40.0F);

        Section* const section = sectionOf(net.inspection);
        QVERIFY(section);
        QCOMPARE(section->startNode(), a);
        QCOMPARE(section->endNode(), b);
        QCOMPARE(section->pipeScale(), 0.2F);
        QCOMPARE(section->length(), 50.0);
        QCOMPARE(section->position(), QVector3D(0, -3, 0));
        const auto points = section->getShapePoints().first();
        QCOMPARE(points.size(), 2);
        QVERIFY((points.first() - QVector3D(0, -3, 0)).length() < 1e-3F);
        QVERIFY((points.last() - QVector3D(-30, -3, 40)).length() < 1e-3F);
        QCOMPARE(section->name(), QStringLiteral("A-B"));
    }

    void aNodeWithoutAShapeIsHiddenAndLeavesTheProjectorAlone()
    {
        TestProject project(utm32);
        const auto a = project.addNode(QStringLiteral("A"));
        project.activate();
        QVERIFY(nodeOf(a));
        QVERIFY(!nodeOf(a)->isVisible());
        QCOMPARE(nodeOf(a)->transformFlags(), 0);
        QVERIFY(!GdalGeoProjector::instance()->initialized());
    }

    void theFirstPositionedNodeWritesTheProjectionBackAndTheSecondDoesNot()
    {
        TestProject project;
        project.addNode(QStringLiteral("A"), placeA);
        project.addNode(QStringLiteral("B"), placeB);
        QVERIFY(project.project()->projectionWKT().isEmpty());

        project.activate();

        const QString written = project.project()->projectionWKT();
        QVERIFY(written.contains(QStringLiteral("Pseudo")));
        project.project()->setProjectionWKT(QString());
        project.addNode(QStringLiteral("C"), placeB);
        QTRY_COMPARE(SceneEntities::instance().getNodes().size(), 3);
        QVERIFY(project.project()->projectionWKT().isEmpty());
    }

    void flagsAreCutToTheKnownBits()
    {
        TestProject project(utm32);
        const auto a = project.addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 272)"));
        project.activate();
        QCOMPARE(nodeOf(a)->transformFlags(), 16);
    }

    void aShapeThatComesLaterMovesTheNode()
    {
        TestProject project(utm32);
        project.addNode(QStringLiteral("A"), placeA);
        const auto b = project.addNode(QStringLiteral("B"));
        project.activate();

        write(b, "OBJ_Shape_WKT", placeB);

        QTRY_COMPARE(nodeOf(b)->position(), QVector3D(-30, -1, 40));
        QCOMPARE(nodeOf(b)->transformFlags(), 16);
    }

    void aNodeThatGetsItsFirstPositionTurnsItsSections()
    {
        TestProject project(utm32);
        const auto a = project.addNode(QStringLiteral("A"), placeA);
        const auto b = project.addNode(QStringLiteral("B"));
        const auto pipe = project.addSection(QStringLiteral("A-B"), a, b);
        const auto inspection = project.addInspection(pipe);
        project.activate();

        write(b, "OBJ_Shape_WKT", placeB);

        QTRY_COMPARE(nodeOf(b)->position(), QVector3D(-30, -1, 40));
        Section* const section = sectionOf(inspection);
        const QVector3D course = section->rotation().rotatedVector(QVector3D(0, 0, 1)).normalized();
        const QVector3D wanted = (section->getOutletPosition(nodeOf(b)) - section->position()).normalized();
        QVERIFY2((course - wanted).length() < 1e-3F, "the pipe points at the end node's outlet");
    }

    void aShapeThatTheViewWroteItselfDoesNotMoveTheNode()
    {
        SmallNetwork net;
        net.project.activate();
        write(net.b, "OBJ_Shape_WKT", QStringLiteral("POINT ZM(570100 5830100 39 16)"), 5000);
        QTest::qWait(100);
        QCOMPARE(nodeOf(net.b)->position(), QVector3D(-30, -1, 40));
    }

    void anotherColumnLeavesThePositionAlone()
    {
        SmallNetwork net;
        net.project.activate();
        write(net.b, "OBJ_DepthToInvert", 2.5);
        QTRY_COMPARE(nodeOf(net.b)->depth(), 2.5F);
        QCOMPARE(nodeOf(net.b)->position(), QVector3D(-30, -1, 40));
    }

    void aNodesNewNameIsShown()
    {
        SmallNetwork net;
        net.project.activate();
        write(net.a, "OBJ_Key", QStringLiteral("A2"));
        QTRY_COMPARE(nodeOf(net.a)->name(), QStringLiteral("A2"));
    }

    void aSectionWithTwoInspectionsHasTwoEntitiesAndAChangeReachesBoth()
    {
        SmallNetwork net;
        const auto second = net.project.addInspection(net.pipe);
        net.project.activate();
        QCOMPARE(SceneEntities::instance().getPipeEntities().getBySectionId(net.pipe->id()).size(), 2);

        write(net.pipe, "OBJ_Size1", 600);

        QTRY_COMPARE(sectionOf(second)->diameter(), 600.0);
        QCOMPARE(sectionOf(net.inspection)->diameter(), 600.0);
        QCOMPARE(sectionOf(net.inspection)->pipe()->radius(), 0.3F);
    }

    void aDeletedNodeLeavesTheSceneAndItsSectionKeepsStanding()
    {
        SmallNetwork net;
        net.project.activate();
        QPointer<Node> a = nodeOf(net.a);
        ProjectStore::instance().deleteObject(net.a);
        QTRY_VERIFY(a.isNull());
        QVERIFY(!SceneEntities::instance().getNodes().contains(net.a->id()));
        QVERIFY(!sectionOf(net.inspection)->startNode());
    }

    void aDeletedInspectionTakesItsSectionOutOfTheScene()
    {
        SmallNetwork net;
        net.project.activate();
        QPointer<Section> section = sectionOf(net.inspection);
        ProjectStore::instance().deleteObject(net.inspection);
        QTRY_VERIFY(section.isNull());
        QCOMPARE(SceneEntities::instance().getPipeEntities().count(), 0);
        QVERIFY(SceneEntities::instance().getPipeEntities().getBySectionId(net.pipe->id()).isEmpty());
    }

    void anInspectionThatMovesToAnotherPipeLeavesNoGhostBehind()
    {
        SmallNetwork net;
        const auto other = net.project.addSection(QStringLiteral("B-A"), net.b, net.a);
        net.project.activate();
        QPointer<Section> before = sectionOf(net.inspection);
        const QString id = net.inspection->id();

        QVERIFY(ProjectStore::instance().deleteObject(net.inspection));
        const auto moved = net.project.addInspection(other, {}, 1, {{"INS_PK", id}});

        QTRY_VERIFY(before.isNull());
        QTRY_COMPARE(m_root->findChildren<Section*>().size(), 1);
        QCOMPARE(sectionOf(moved)->name(), QStringLiteral("B-A"));
        QVERIFY(SceneEntities::instance().getPipeEntities().getBySectionId(net.pipe->id()).isEmpty());
        QCOMPARE(SceneEntities::instance().getPipeEntities().getBySectionId(other->id()).size(), 1);
    }

    void anUnknownIdIsIgnored()
    {
        LogCapture log;
        m_root->entitiesManager().onObjectRemoved(QStringLiteral("nobody"));
        QVERIFY(log.lines().isEmpty());
    }

    void aClosedProjectLeavesNothingBehind()
    {
        SmallNetwork net;
        TestProject other(utm32);
        net.project.activate();
        QVERIFY(!m_root->findChildren<Node*>().isEmpty());

        net.project.close();

        QCOMPARE(SceneEntities::instance().getNodes().size(), 0);
        QCOMPARE(SceneEntities::instance().getPipeEntities().count(), 0);
        QTRY_VERIFY(m_root->findChildren<Renderable*>().isEmpty());
        QVERIFY(!GdalGeoProjector::instance()->initialized());
    }

    void virtualNodesGoWithTheProject()
    {
        TestProject project(utm32);
        const auto a = project.addNode(QStringLiteral("A"), placeA);
        project.addInspection(project.addSection(QStringLiteral("S"), a, {}));
        project.activate();
        const auto nodes = m_root->findChildren<Node*>();
        QCOMPARE(nodes.size(), 2);
        project.close();
        QTRY_VERIFY(m_root->findChildren<Node*>().isEmpty());
    }

    void aProjectOpenedAgainStandsAgain()
    {
        SmallNetwork net;
        net.project.activate();
        net.project.reopen();
        net.project.activate();
        QTest::qWait(100);
        QCOMPARE(SceneEntities::instance().getNodes().size(), 2);
        QCOMPARE(SceneEntities::instance().getPipeEntities().count(), 1);
        QTRY_COMPARE(m_root->findChildren<Node*>().size(), 2);
    }

    void openingStoresNothing()
    {
        SmallNetwork net;
        const QString before = net.inspection->readValue(QStringLiteral("INS_Shape_WKT")).toString();
        net.project.activate();
        QTest::qWait(2000); // longer than the end of editing and the batch of writes together
        QCOMPARE(net.inspection->readValue(QStringLiteral("INS_Shape_WKT")).toString(), before);
        QCOMPARE(net.a->readValue(QStringLiteral("OBJ_Shape_WKT")).toString(), placeA);
    }

    void aLargeProjectIsPutTogetherOutsideTheScene()
    {
        Qt3DCore::QEntity scene;
        m_root->setParent(&scene);
        TestProject town(utm32);
        for (int i = 0; i < 3100; ++i)
            town.addNode(QString::number(i), placeA);
        auto& manager = m_root->entitiesManager();
        bool inSceneMeanwhile = true;
        connect(&manager, &EntitiesManager::loadingStarted, this,
                [&] { inSceneMeanwhile = m_root->parentNode() == &scene; });

        town.activate();

        QTRY_VERIFY_WITH_TIMEOUT(!manager.isBusy(), 20000);
        QVERIFY(!inSceneMeanwhile);
        QCOMPARE(m_root->parentNode(), &scene);
        QCOMPARE(SceneEntities::instance().getNodes().size(), 3100);

        // Opened again while the first lot still leaves: the root goes out of the scene after that only.
        town.reopen();
        QVERIFY(manager.isBusy());
        town.activate();
        QVERIFY(inSceneMeanwhile);
        QTRY_VERIFY_WITH_TIMEOUT(!manager.isBusy(), 20000);
        QCOMPARE(m_root->parentNode(), &scene);

        m_root->setParent(static_cast<Qt3DCore::QNode*>(nullptr));
    }

    void whatWaitsForItsRemovalStoresNothingAnyMore()
    {
        TestProject town(utm32);
        for (int i = 0; i < 400; ++i)
            town.addNode(QString::number(i), placeA);
        town.activate();
        QTRY_VERIFY_WITH_TIMEOUT(!m_root->entitiesManager().isBusy(), 20000);
        const auto nodes = SceneEntities::instance().getNodes().values();

        town.close();

        int waiting = 0;
        for (Node* node : nodes) {
            if (node->isEnabled())
                continue; // goes in this very turn of the event loop
            ++waiting;
            QVERIFY2(!disconnect(node, &Renderable::editingFinished, nullptr, nullptr),
                     "somebody still listens to the end of editing");
        }
        QVERIFY(waiting > 0);
    }

    void badInputIsLoggedAndChangesNothing()
    {
        auto& manager = m_root->entitiesManager();
        SmallNetwork net;
        LogCapture log;
        const auto logged = [&log](const char* message) {
            return log.count(1, QStringLiteral("View3d"), QLatin1String(message));
        };

        manager.onSectionInspectionInserted({});
        QCOMPARE(logged("onSectionInspectionInserted invalid object"), 1);
        manager.onNodeModified({});
        QCOMPARE(logged("onNodeModified invalid object"), 1);
        manager.onNodeModified(net.a);
        QCOMPARE(logged("onNodeModified object not found"), 1);
        SceneEntities::instance().getNodes().insert(net.a->id(), nullptr);
        manager.onNodeModified(net.a);
        QCOMPARE(logged("onNodeModified empty Node reference"), 1);
        SceneEntities::instance().getNodes().take(net.a->id());
        manager.onSectionModified(net.pipe);
        QCOMPARE(logged("onSectionModified object not found"), 1);
        manager.onSectionModified(net.inspection);
        QCOMPARE(logged("onSectionModified object not found"), 2);
        manager.onSectionModified(net.a);
        manager.onSectionModified({});
        QCOMPARE(logged("onSectionModified object not found"), 2);
        QCOMPARE(logged("onSectionInspectionInserted invalid object2"), 0);
    }

    void aPostponedNodeWaitsForAnInspectionOfItsSection()
    {
        SmallNetwork net;
        net.project.activate();
        const auto c = net.project.addNode(QStringLiteral("C"), placeB);
        QTRY_VERIFY(nodeOf(c));
        delete nodeOf(c);
        QVERIFY(!nodeOf(c));
        m_root->entitiesManager().postponeNodeInsertion(c);
        const auto other = net.project.addSection(QStringLiteral("other"), net.a, net.b);
        net.project.addInspection(other);
        QTRY_COMPARE(SceneEntities::instance().getPipeEntities().count(), 2);
        QVERIFY(!nodeOf(c));

        net.project.addInspection(net.project.addSection(QStringLiteral("C-A"), c, net.a));

        QTRY_VERIFY(nodeOf(c));
    }

    void aNodePostponedTwiceStandsOnce()
    {
        SmallNetwork net;
        net.project.activate();
        const auto c = net.project.addNode(QStringLiteral("C"), placeB);
        QTRY_VERIFY(nodeOf(c));
        delete nodeOf(c);
        m_root->entitiesManager().postponeNodeInsertion(c);
        m_root->entitiesManager().postponeNodeInsertion(c);
        const auto pipe = net.project.addSection(QStringLiteral("C-A"), c, net.a);

        net.project.addInspection(pipe);
        net.project.addInspection(pipe);

        QTRY_COMPARE(SceneEntities::instance().getPipeEntities().getBySectionId(pipe->id()).size(), 2);
        QVERIFY(nodeOf(c));
        int standing = 0;
        for (Node* node : m_root->findChildren<Node*>())
            standing += node->guid() == c->id() ? 1 : 0;
        QCOMPARE(standing, 1);
    }

    void aLargeProjectLeavesInBatchesAndTheNextOneWaitsForThem()
    {
        TestProject large(utm32);
        large.close();
        TestProject filled(utm32);
        TestProject next(utm32);
        const auto start = next.addNode(QStringLiteral("N"), placeA);
        const auto inspection = next.addInspection(next.addSection(QStringLiteral("S"), start, {}));
        for (int i = 0; i < 400; ++i)
            filled.addNode(QString::number(i), placeA);
        filled.activate();
        QTRY_VERIFY_WITH_TIMEOUT(!m_root->entitiesManager().isBusy(), 20000);
        QCOMPARE(SceneEntities::instance().getNodes().size(), 400);

        filled.close();
        QVERIFY(m_root->entitiesManager().isBusy());
        next.activate();
        QCOMPARE(SceneEntities::instance().getNodes().size(), 0);
        // Its section is still to come.
        AppState::instance().setActiveInspection(inspection);

        QTRY_COMPARE_WITH_TIMEOUT(SceneEntities::instance().getNodes().size(), 1, 20000);
        QTRY_VERIFY(!m_root->entitiesManager().isBusy());
        // The second one is the section's virtual end.
        QTRY_COMPARE(m_root->findChildren<Node*>().size(), 2);
        QVERIFY(m_root->isEnabled());
        QVERIFY(sectionOf(inspection)->isDirectionArrowShown());
    }

private:
    SceneRoot* m_root = nullptr;
};

QTEST_MAIN(tst_EntitiesManager)
#include "tst_EntitiesManager.moc"
