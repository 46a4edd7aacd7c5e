#include "NetworkScene.h"

#include "common/LogCapture.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QVector<QVector3D> tenMetresNorth {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}};

} // namespace

/** What a changed record, or another node, does to a section. */
class tst_SectionNodes : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void modifyingWithoutAChangeTellsOnce();
    void modifyingTurnsToAnEndNodeThatCameLater();
    void modifyingKeepsNodesThatTheSceneHasNoLonger();
    void modifyingReplacesNodesThatHaveGone();
    void anotherStartNodeInTheRecordLeavesABoundSection();
    void modifyingLinksAConnectionOnlyToAnotherDirection();
    void aStoredDirectionStandsInForAnUnknownOne();

    void aVirtualStartNodeKeepsTheSectionBesideAnother();
    void anotherEndNodeLeavesTheCommonNodeAsTheStart();
    void aLockedSectionTakesItsNextEndNode();
    void anEndNodeThatIsNotLockedStaysOffThePipe();
    void endNodeAsVariant();
    void nodesUpAndDownAreTakenInTheOrderOfTheInspection();

    void aManualBitAmongOthersHoldsTheSection();
    void aMeasuredSectionWithoutManholesStaysWhereItWasMeasured();
    void aConnectionAtTheEndHasNoDepth();
    void theSectionTellsItsHeightAboveTheSea();

private:
    Node* unplaced() { return m_scene->node("U"); }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_SectionNodes::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_SectionNodes::cleanup()
{
    m_scene.reset();
}

void tst_SectionNodes::modifyingWithoutAChangeTellsOnce()
{
    Section* const section = m_scene->section(m_scene->nodeAt({10.0F, 5.0F, 20.0F}), nullptr);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->modify();

    QCOMPARE(geometry.count(), 1);
}

void tst_SectionNodes::modifyingTurnsToAnEndNodeThatCameLater()
{
    const auto startRecord = m_scene->project().addNode("A", NetworkScene::storedPoint({0.0F, 5.0F, 0.0F}));
    const auto endRecord = m_scene->project().addNode("B", NetworkScene::storedPoint({30.0F, 5.0F, 0.0F}));
    m_scene->node(startRecord);
    const auto pipe = m_scene->project().addSection("S", startRecord, endRecord);
    Section* const section = m_scene->section(m_scene->project().addInspection(pipe));
    QVERIFY(section->endNode()->isVirtual());
    VERIFY_NEAR(section->direction(), QVector3D(0.0F, 0.0F, -1.0F));

    Node* const end = m_scene->node(endRecord);
    section->modify();

    QCOMPARE(section->endNode(), end);
    VERIFY_NEAR(section->direction(), QVector3D(-1.0F, 0.0F, 0.0F));
}

void tst_SectionNodes::modifyingKeepsNodesThatTheSceneHasNoLonger()
{
    Node* const start = m_scene->nodeAt({10.0F, 5.0F, 20.0F});
    Node* const end = m_scene->nodeAt({10.0F, 5.0F, 60.0F});
    Section* const section = m_scene->section(start, end);
    SceneEntities::instance().getNodes().removeObject(start);
    SceneEntities::instance().getNodes().removeObject(end);

    section->modify();

    QCOMPARE(section->startNode(), start);
    QCOMPARE(section->endNode(), end);
}

void tst_SectionNodes::modifyingReplacesNodesThatHaveGone()
{
    Node* const start = m_scene->nodeAt({10.0F, 5.0F, 20.0F});
    Node* const end = m_scene->nodeAt({10.0F, 5.0F, 60.0F});
    Section* const section = m_scene->section(start, end);
    delete start;
    delete end;

    section->modify();

    for (const Node* const node : {section->startNode(), section->endNode()}) {
        QVERIFY(node && node->isVirtual() && !node->isVisible());
        QCOMPARE(node->nodeType(), QStringLiteral("NOD"));
    }
    QVERIFY(section->startNode() != section->endNode());
}

void tst_SectionNodes::anotherStartNodeInTheRecordLeavesABoundSection()
{
    Node* const a = m_scene->nodeAt({10.0F, 5.0F, 20.0F});
    Node* const b = m_scene->nodeAt({-10.0F, 5.0F, 20.0F});
    const auto pipe = m_scene->project().addSection("S", NetworkScene::recordOf(a), nullptr);
    const auto inspection =
        m_scene->project().addInspection(pipe, NetworkScene::storedShape(tenMetresNorth, TransformFlags::Manual, 1));
    Section* const section = m_scene->section(inspection);
    inspection->updateValue("INS_StartNode_REF", b->guid());

    section->modify();

    QCOMPARE(section->startNode(), b);
    VERIFY_NEAR(section->position(), QVector3D());
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);
    b->setPosition({-12.0F, 5.0F, 20.0F}, TransformFlags::GIS);
    QCOMPARE(geometry.count(), 0);
}

void tst_SectionNodes::modifyingLinksAConnectionOnlyToAnotherDirection()
{
    Node* const a = m_scene->nodeAt({10.0F, 5.0F, 20.0F});
    Node* const b = m_scene->nodeAt({10.0F, 5.0F, 60.0F}, {{"OBJ_Type", "CON"}}, TransformFlags::Observations);
    const auto pipe = m_scene->project().addSection("S", NetworkScene::recordOf(a), nullptr);
    const auto inspection = m_scene->project().addInspection(pipe);
    Section* const section = m_scene->section(inspection);
    inspection->updateValue("INS_StartNode_REF", b->guid());
    section->modify();
    QCOMPARE(section->startNode(), b);
    section->setTransformFlags(TransformFlags::Observations);

    section->transform()->setTranslation({1.0F, 2.0F, 3.0F}, 0);

    VERIFY_NEAR(b->position(), QVector3D(10.0F, 5.0F, 60.0F));
}

void tst_SectionNodes::aStoredDirectionStandsInForAnUnknownOne()
{
    const auto pipe = m_scene->project().addSection("S", nullptr, nullptr);
    const QString shape = NetworkScene::storedShape(tenMetresNorth, TransformFlags::Manual, 2);
    Section* const section = m_scene->section(m_scene->project().addInspection(pipe, shape, 7));
    QCOMPARE(section->inspectionDirection(), int(InspectionDir::Upstream));

    QVERIFY(section->setInspectionDirection());
    QVERIFY(section->inspectionDirUnknown());
    QVERIFY(!section->setInspectionDirection());
}

void tst_SectionNodes::aVirtualStartNodeKeepsTheSectionBesideAnother()
{
    Section* const section = m_scene->section(nullptr, nullptr);
    Node* const before = section->startNode();
    Node* const after = Node::createVirtual(m_scene->root.get(), false, QString(), "NOD");

    section->setStartNode(after, false);

    QCOMPARE(section->startNode(), after);
    QVERIFY(after->isConnected());
    QVERIFY(before->isConnected());
}

void tst_SectionNodes::anotherEndNodeLeavesTheCommonNodeAsTheStart()
{
    Node* const node = m_scene->nodeAt({10.0F, 5.0F, 20.0F});
    Node* const end = m_scene->nodeAt({10.0F, 5.0F, 60.0F});
    Section* const section = m_scene->section(node, node, {{"OBJ_FromNodeDepth", 2.0}});

    section->setEndNode(end);

    QCOMPARE(section->startNode(), node);
    QCOMPARE(section->endNode(), end);
    QVERIFY(node->isConnected());
    node->setPosition({11.0F, 5.0F, 20.0F}, TransformFlags::Manual);
    VERIFY_NEAR(section->position(), QVector3D(11.0F, 3.0F, 20.0F));
}

void tst_SectionNodes::aLockedSectionTakesItsNextEndNode()
{
    Node* const first = unplaced();
    Section* const section = m_scene->section(nullptr, first, {{"OBJ_ToNodeDepth", 2.0}}, tenMetresNorth);
    section->setEndDistance(4.0F);
    section->lockAsEnded();
    delete first;
    Node* const second = unplaced();

    section->setEndNode(second);

    QCOMPARE(second->snappedSection(), section);
    QVERIFY(second->isConnected());
}

void tst_SectionNodes::anEndNodeThatIsNotLockedStaysOffThePipe()
{
    const Kx::Test::LogCapture log;
    Node* const end = unplaced();

    Section* const section = m_scene->section(nullptr, end, {}, tenMetresNorth);
    section->setEndDistance(3.0F);

    VERIFY_NEAR(end->position(), QVector3D());
    QCOMPARE(end->transformFlags(), 0);
    QVERIFY(!end->snappedSection());
    QCOMPARE(log.count(1, "View3d::Node", "Node::calculateTranslation Section is null"), 0);
}

void tst_SectionNodes::endNodeAsVariant()
{
    Node* const end = m_scene->nodeAt({10.0F, 5.0F, 60.0F});
    Section* const section = m_scene->section(nullptr, end);

    QCOMPARE(section->property("endNode").value<Node*>(), end);
    delete end;
    QVERIFY(!section->property("endNode").isValid());
}

void tst_SectionNodes::nodesUpAndDownAreTakenInTheOrderOfTheInspection()
{
    // Against the flow the start lies downstream; what the two tell is the start and the end all the same.
    const Section* const section =
        m_scene->section(m_scene->nodeAt({10.0F, 5.0F, 20.0F}), nullptr, {}, {}, TransformFlags::Manual, 2);

    QVERIFY(section->hasUpstreamNode());
    QVERIFY(!section->hasDownstreamNode());
    QVERIFY(section->upstreamNode()->isVirtual());
}

void tst_SectionNodes::aManualBitAmongOthersHoldsTheSection()
{
    Node* const start = m_scene->nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section =
        m_scene->section(start, nullptr, {}, tenMetresNorth, TransformFlags::Manual | TransformFlags::GIS);

    section->alignToOutlet(start);

    VERIFY_NEAR(section->position(), QVector3D());
}

void tst_SectionNodes::aMeasuredSectionWithoutManholesStaysWhereItWasMeasured()
{
    const QVector<QVector3D> course {{10.0F, 5.0F, 20.0F}, {10.0F, 5.0F, 40.0F}};
    Section* const stored = m_scene->section(nullptr, nullptr, {}, course, TransformFlags::Geosensor);
    Section* const measured = m_scene->section(nullptr, nullptr, {}, course);
    measured->setTransformFlags(TransformFlags::Geosensor);

    for (Section* section : {stored, measured}) {
        VERIFY_NEAR(section->position(), course.first());
        section->modify();
        VERIFY_NEAR(section->position(), course.first());
        VERIFY_NEAR(section->getShapePoints().first().last(), course.last());
    }
}

void tst_SectionNodes::aConnectionAtTheEndHasNoDepth()
{
    Node* const end = m_scene->nodeAt({10.0F, 5.0F, 60.0F}, {{"OBJ_Type", "CON"}});
    const Section* const section =
        m_scene->section(nullptr, end, {{"OBJ_FromNodeDepth", 3.0}, {"OBJ_ToNodeDepth", 2.0}});

    QCOMPARE(section->fromNodeDepth(), 3.0F);
    QCOMPARE(section->toNodeDepth(), 0.0F);
    VERIFY_NEAR(section->getOutletPosition(end), end->position());
}

void tst_SectionNodes::theSectionTellsItsHeightAboveTheSea()
{
    NetworkScene::tieToEarth("POINT ZM(0 0 400 0)");
    Node* const start = m_scene->node("N", "POINT ZM(-10 20 405 16)");
    Section* const section = m_scene->section(start, nullptr, {{"OBJ_FromNodeDepth", 3.0}});
    QCOMPARE(section->property("seaLevel").toFloat(), 402.0F);
    const QSignalSpy told(section, &Section::transformChanged);

    section->transform()->setTranslation({10.0F, -7.0F, 20.0F}, 0);

    QCOMPARE(section->property("seaLevel").toFloat(), 393.0F);
    QCOMPARE(told.count(), 1);
    const auto property = section->metaObject()->property(section->metaObject()->indexOfProperty("seaLevel"));
    QCOMPARE(property.notifySignal().name(), QByteArray("transformChanged"));
}

QTEST_MAIN(tst_SectionNodes)
#include "tst_SectionNodes.moc"
