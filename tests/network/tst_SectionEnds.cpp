#include "NetworkScene.h"

#include "common/LogCapture.h"
#include "scene/GlobalNav.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QVector<QVector3D> tenMetresNorth {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}};
const QString category = QStringLiteral("View3d::Section");

} // namespace

/** How a section stands to the nodes at its ends. */
class tst_SectionEnds : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void upstreamAndDownstreamNodes();
    void nodesAsVariants();
    void settingTheSameNodeOrNoneDoesNothing();
    void anotherStartNodeTakesTheSectionOver();
    void aBoundSectionGoesToItsStartNodeOnlyWhenForced();
    void aNodeCannotEndAndStartTheSamePipe();
    void aVirtualEndNodeIsNotReplacedByAnother();
    void aRealEndNodeReplacesAVirtualOne();
    void aLockedSectionHandsItsEndOver();
    void aNodeMayStartAndEndASection();
    void disconnectingAStrangerDoesNothing();
    void destructionLeavesTheNodes();

    void anEndLocksANodeWithoutAPosition();
    void anEndDoesNotLockANodeWithAPosition();
    void unlockingFreesTheNode();
    void theEndDistanceMovesALockedNode();
    void attachingMovesOnlyANodeWithoutAPosition();

    void modifyingFindsNodesThatCameLater();
    void aChangeOfDirectionSwapsTheNodes();
    void aChangeOfDirectionSnapsABoundSection();
    void aChangeOfDirectionLinksAConnection();

    void aDownstreamLateralGoesToItsNode();
    void anUpstreamLateralWithoutAConnectionIsLogged();

private:
    Node* nodeAt(const QVector3D& place, const QVariantMap& values = {}, int flags = TransformFlags::GIS)
    {
        return m_scene->nodeAt(place, values, flags);
    }
    Node* unplaced() { return m_scene->node("U"); }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_SectionEnds::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_SectionEnds::cleanup()
{
    m_scene.reset();
    GlobalNav::instance()->setRealTimeEnabled(false);
}

void tst_SectionEnds::upstreamAndDownstreamNodes()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const end = nodeAt({10.0F, 5.0F, 60.0F});
    Section* const section = m_scene->section(start, end);

    QCOMPARE(section->upstreamNode(), start);
    QCOMPARE(section->downstreamNode(), end);
    QVERIFY(section->hasUpstreamNode());
    QVERIFY(section->hasDownstreamNode());
    QCOMPARE(section->startNodePosition(), start->position());
    QCOMPARE(section->endNodePosition(), end->position());
    QVERIFY(start->sections().contains(section));
    QVERIFY(end->sections().contains(section));
}

void tst_SectionEnds::nodesAsVariants()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(start, nullptr);

    QCOMPARE(section->property("startNode").value<Node*>(), start);
    delete start;
    QVERIFY(!section->property("startNode").isValid());
}

void tst_SectionEnds::settingTheSameNodeOrNoneDoesNothing()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const end = nodeAt({10.0F, 5.0F, 60.0F});
    Section* const section = m_scene->section(start, end);
    section->transform()->setTranslation({}, 0);

    section->setStartNode(start, true);
    section->setStartNode(nullptr, true);
    section->setEndNode(end);
    section->setEndNode(nullptr);

    QCOMPARE(section->startNode(), start);
    QCOMPARE(section->endNode(), end);
    QCOMPARE(section->position(), QVector3D());
}

void tst_SectionEnds::anotherStartNodeTakesTheSectionOver()
{
    Node* const first = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const second = nodeAt({-10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(first, nullptr, {{"OBJ_FromNodeDepth", 2.0}});

    section->setStartNode(second, false);

    VERIFY_NEAR(section->position(), QVector3D(-10.0F, 3.0F, 20.0F));
    QVERIFY(!first->isConnected());
    QVERIFY(second->isConnected());
    first->setPosition({0.0F, 0.0F, 0.0F}, TransformFlags::Manual);
    VERIFY_NEAR(section->position(), QVector3D(-10.0F, 3.0F, 20.0F));
    second->setPosition({-11.0F, 5.0F, 20.0F}, TransformFlags::Manual);
    VERIFY_NEAR(section->position(), QVector3D(-11.0F, 3.0F, 20.0F));
}

void tst_SectionEnds::aBoundSectionGoesToItsStartNodeOnlyWhenForced()
{
    Node* const first = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const second = nodeAt({-10.0F, 5.0F, 20.0F});
    Section* const section =
        m_scene->section(first, nullptr, {{"OBJ_FromNodeDepth", 2.0}}, tenMetresNorth, TransformFlags::PipeShape);
    section->transform()->setTranslation({}, 0);

    section->setStartNode(second, false);
    VERIFY_NEAR(section->position(), QVector3D());

    section->setStartNode(first, true);
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 3.0F, 20.0F));
}

void tst_SectionEnds::aNodeCannotEndAndStartTheSamePipe()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const end = unplaced();
    Section* const section = m_scene->section(start, end);
    section->lockAsEnded();
    QCOMPARE(end->snappedSection(), section);

    section->setStartNode(end, false);

    QVERIFY(!end->snappedSection());
    QCOMPARE(section->startNode(), end);
}

void tst_SectionEnds::aVirtualEndNodeIsNotReplacedByAnother()
{
    Section* const section = m_scene->section(nullptr, nullptr);
    Node* const end = section->endNode();

    section->setEndNode(Node::createVirtual(m_scene->root.get(), false, QString(), "NOD"));

    QCOMPARE(section->endNode(), end);
}

void tst_SectionEnds::aRealEndNodeReplacesAVirtualOne()
{
    Section* const section = m_scene->section(nullptr, nullptr);
    Node* const before = section->endNode();
    Node* const end = nodeAt({10.0F, 5.0F, 20.0F});

    section->setEndNode(end);

    QCOMPARE(section->endNode(), end);
    QVERIFY(!before->isConnected());
    QVERIFY(end->isConnected());
    QVERIFY(!end->snappedSection());
}

void tst_SectionEnds::aLockedSectionHandsItsEndOver()
{
    Node* const first = unplaced();
    Node* const second = unplaced();
    Section* const section = m_scene->section(nodeAt({10.0F, 5.0F, 20.0F}), first);
    section->lockAsEnded();

    section->setEndNode(second);

    QVERIFY(!first->snappedSection());
    QCOMPARE(second->snappedSection(), section);
}

void tst_SectionEnds::aNodeMayStartAndEndASection()
{
    Node* const node = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(node, node, {{"OBJ_FromNodeDepth", 2.0}});
    QCOMPARE(section->startNode(), node);
    QCOMPARE(section->endNode(), node);

    section->disconnectNode(node);
    QVERIFY(node->isConnected());
    node->setPosition({11.0F, 5.0F, 20.0F}, TransformFlags::Manual);
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 3.0F, 20.0F));

    delete node;
    QCOMPARE(section->startNode(), nullptr);
    QCOMPARE(section->endNode(), nullptr);
}

void tst_SectionEnds::disconnectingAStrangerDoesNothing()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(start, nullptr);
    Node* const stranger = nodeAt({});
    stranger->connectSection(section);

    section->disconnectNode(stranger);
    section->disconnectNode(nullptr);

    QVERIFY(stranger->isConnected());
    QVERIFY(start->isConnected());
}

void tst_SectionEnds::destructionLeavesTheNodes()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const stranger = nodeAt({});
    Section* const section = m_scene->section(start, nullptr);
    Node* const end = section->endNode();
    stranger->connectSection(section);
    const QSignalSpy away(section, &Section::lateralNotInProximity);

    delete section;

    QCOMPARE(away.count(), 1);
    QVERIFY(!start->isConnected());
    QVERIFY(!end->isConnected());
    QVERIFY(!stranger->isConnected());
    start->setPosition({}, TransformFlags::Manual);
}

void tst_SectionEnds::anEndLocksANodeWithoutAPosition()
{
    Node* const end = unplaced();
    Section* const section = m_scene->section(nullptr, end, {{"OBJ_ToNodeDepth", 2.0}}, tenMetresNorth);
    section->setEndDistance(4.0F);

    section->lockAsEnded();
    section->lockAsEnded();

    QVERIFY(section->isLockedAsEnded());
    VERIFY_NEAR(end->position(), QVector3D(0.0F, 2.0F, 4.0F));
    QCOMPARE(end->transformFlags(), int(TransformFlags::Observations));
}

void tst_SectionEnds::anEndDoesNotLockANodeWithAPosition()
{
    Node* const end = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(nullptr, end, {}, tenMetresNorth);

    section->lockAsEnded();

    QVERIFY(!section->isLockedAsEnded());
    QVERIFY(!end->snappedSection());
}

void tst_SectionEnds::unlockingFreesTheNode()
{
    Node* const end = unplaced();
    Section* const section = m_scene->section(nullptr, end, {}, tenMetresNorth);
    section->setEndDistance(4.0F);
    section->unlockEnded();
    QCOMPARE(section->endDistance(), 4.0F);
    section->lockAsEnded();

    section->unlockEnded();

    QVERIFY(!section->isLockedAsEnded());
    QCOMPARE(section->endDistance(), 0.0F);
    QVERIFY(!end->snappedSection());
}

void tst_SectionEnds::theEndDistanceMovesALockedNode()
{
    Node* const end = unplaced();
    Section* const section = m_scene->section(nullptr, end, {{"OBJ_ToNodeDepth", 2.0}}, tenMetresNorth);
    section->lockAsEnded();
    QCoreApplication::processEvents();
    const QSignalSpy moved(end->transform(), &FlaggedTransform::translationChanged);

    section->setEndDistance(6.0F);
    QCoreApplication::processEvents();
    section->setEndDistance(6.00001F);

    QCOMPARE(moved.count(), 1);
    VERIFY_NEAR(end->position(), QVector3D(0.0F, 2.0F, 6.0F));
}

void tst_SectionEnds::attachingMovesOnlyANodeWithoutAPosition()
{
    Section* const free = m_scene->section(nullptr, unplaced(), {}, tenMetresNorth);
    free->attachEndNode(3.0F);
    QCOMPARE(free->endDistance(), 3.0F);

    Section* const fixed = m_scene->section(nullptr, nodeAt({10.0F, 5.0F, 20.0F}), {}, tenMetresNorth);
    fixed->attachEndNode(3.0F);
    QCOMPARE(fixed->endDistance(), 0.0F);
}

void tst_SectionEnds::modifyingFindsNodesThatCameLater()
{
    const auto startRecord = m_scene->project().addNode("A", "POINT ZM(-10 20 5 16)");
    const auto pipe = m_scene->project().addSection("S", startRecord, nullptr, {{"OBJ_FromNodeDepth", 2.0}});
    Section* const section = m_scene->section(m_scene->project().addInspection(pipe));
    QVERIFY(section->startNode()->isVirtual());

    Node* const start = m_scene->node(startRecord);
    section->modify();

    QCOMPARE(section->startNode(), start);
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 3.0F, 20.0F));
}

void tst_SectionEnds::aChangeOfDirectionSwapsTheNodes()
{
    Node* const a = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const b = nodeAt({10.0F, 5.0F, 60.0F});
    const auto pipe = m_scene->project().addSection("S", NetworkScene::recordOf(a), NetworkScene::recordOf(b),
                                                    {{"OBJ_FromNodeDepth", 2.0}, {"OBJ_ToNodeDepth", 3.0}});
    const auto inspection = m_scene->project().addInspection(pipe);
    Section* const section = m_scene->section(inspection);
    QCOMPARE(section->startNode(), a);
    inspection->updateValue("INS_InspectionDir", 2);
    inspection->updateValue("INS_StartNode_REF", b->guid());
    inspection->updateValue("INS_EndNode_REF", a->guid());

    section->modify();

    QCOMPARE(section->startNode(), b);
    QCOMPARE(section->endNode(), a);
    QVERIFY(a->isConnected());
    QVERIFY(b->isConnected());
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 2.0F, 60.0F));
    // The section now goes along with b, and a moves it no longer.
    a->setPosition({0.0F, 5.0F, 20.0F}, TransformFlags::GIS);
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 2.0F, 60.0F));
    b->setPosition({12.0F, 5.0F, 60.0F}, TransformFlags::GIS);
    VERIFY_NEAR(section->position(), QVector3D(12.0F, 2.0F, 60.0F));
}

void tst_SectionEnds::aChangeOfDirectionSnapsABoundSection()
{
    Node* const a = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const b = nodeAt({10.0F, 5.0F, 60.0F});
    const auto pipe = m_scene->project().addSection("S", NetworkScene::recordOf(a), NetworkScene::recordOf(b));
    const auto inspection =
        m_scene->project().addInspection(pipe, NetworkScene::storedShape(tenMetresNorth, TransformFlags::PipeShape, 1));
    Section* const section = m_scene->section(inspection);
    QVERIFY(section->transform()->positionBound());
    inspection->updateValue("INS_InspectionDir", 2);
    inspection->updateValue("INS_StartNode_REF", b->guid());
    inspection->updateValue("INS_EndNode_REF", a->guid());

    section->modify();

    VERIFY_NEAR(section->position(), section->getOutletPosition(b));
    b->setPosition({12.0F, 5.0F, 60.0F}, TransformFlags::GIS);
    VERIFY_NEAR(section->position(), section->getOutletPosition(b));
}

void tst_SectionEnds::aChangeOfDirectionLinksAConnection()
{
    Node* const a = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const b = nodeAt({10.0F, 5.0F, 60.0F}, {{"OBJ_Type", "CON"}}, TransformFlags::Observations);
    const auto pipe = m_scene->project().addSection("S", NetworkScene::recordOf(a), NetworkScene::recordOf(b));
    const auto inspection = m_scene->project().addInspection(pipe);
    Section* const section = m_scene->section(inspection);
    inspection->updateValue("INS_InspectionDir", 2);
    inspection->updateValue("INS_StartNode_REF", b->guid());
    inspection->updateValue("INS_EndNode_REF", a->guid());
    section->modify();
    section->setTransformFlags(TransformFlags::Observations);

    section->transform()->setTranslation({1.0F, 2.0F, 3.0F}, 0);

    VERIFY_NEAR(b->position(), QVector3D(1.0F, 2.0F, 3.0F));
}

void tst_SectionEnds::aDownstreamLateralGoesToItsNode()
{
    const Kx::Test::LogCapture log;
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F}, {{"OBJ_Type", "CON"}});

    Section* const section = m_scene->lateral(start, nullptr, 1);

    VERIFY_NEAR(section->position(), QVector3D(10.0F, 5.0F, 20.0F));
    QCOMPARE(log.count(3, category, "Lateral ? snapped to Node ?"), 1);
    QCOMPARE(log.count(1, category, "Lateral connection does not exist"), 0);
}

void tst_SectionEnds::anUpstreamLateralWithoutAConnectionIsLogged()
{
    const Kx::Test::LogCapture log;
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F}, {{"OBJ_Type", "CON"}});

    Section* const section = m_scene->lateral(start, nullptr, 2);

    QCOMPARE(log.count(1, category, "Lateral connection does not exist"), 1);
    QCOMPARE(log.count(3, category, "Lateral ? snapped to Node ?"), 1);
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 5.0F, 20.0F));
}

QTEST_MAIN(tst_SectionEnds)
#include "tst_SectionEnds.moc"
