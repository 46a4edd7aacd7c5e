#include "NodeScene.h"

#include "common/LogCapture.h"
#include "domain/boundary/BaseServices.h"
#include "network/ManholeGeometry.h"
#include "network/NodeInformationToggle.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

Geometry::ManholeGeometry* manhole(const Node* node)
{
    return qobject_cast<Geometry::ManholeGeometry*>(node->geometry());
}

} // namespace

class tst_Node : public QObject, private NodeScene {
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void creationIsLogged();
    void aStoredPointPlacesTheNodeAndLeavesTheFlags();
    void aNodeWithoutARecordedDepthIsOneMetreDeep();
    void depthAndDiameterComeFromTheRecord();
    void aNodeWithoutADiameterIsOneMetreWide();
    void aNullDepthCountsAsOneMetre();
    void settingTheDepthEmitsOnAChangeOnly();
    void settingTheDiameterChangesTheMeshAndEmitsNothing();
    void aNullDiameterChangesNothing();
    void theLabelsLineHeightComesFromTheSettings();

    void identityOfARealNode();
    void identityOfANodeWithoutARecord();
    void nameEmitsOnAChangeOnly();
    void refreshingTheNameReadsTheRecord();
    void informationLines();
    void seaLevelCountsFromTheOrigin();

    void aPositionNeedsAShapeAndASource();
    void aVirtualNodeNeverHasAPosition();
    void aVirtualNodeIsShownAllTheSame();
    void aRealNodeIsShownOnlyWithAPosition();
    void settingTheSameVisibilityEmitsAllTheSame();
    void connectionPlaysNoPartInVisibility();

    void aTypeThatChangedGivesANewMeshEachTime();
    void modifyingReadsDepthAndDiameter();

    void aDestroyedNodeLeavesTheRegistry();
    void qmlCanMakeANode();
};

void tst_Node::creationIsLogged()
{
    const Kx::Test::LogCapture log;

    realNode();

    QCOMPARE(log.count(4, "View3d::Node", "create"), 1);
}

void tst_Node::aStoredPointPlacesTheNodeAndLeavesTheFlags()
{
    const auto record = m_scene->project().addNode("N", at());
    auto* const proxy = new Torvik::Database::CDomainObjectProxy(sharedNotificationMapper(), record, nullptr);

    const Node* const node = Node::create(m_scene->root.get(), new NodeAdapter(proxy, nullptr));

    QCOMPARE(node->position(), QVector3D(10.0F, 5.0F, 20.0F));
    QCOMPARE(node->transformFlags(), 0);
    QVERIFY(node->isVisible());
    QCOMPARE(node->name(), QString());
    QCOMPARE(node->getProps()->parent(), node);
}

void tst_Node::aNodeWithoutARecordedDepthIsOneMetreDeep()
{
    const Node* const node = realNode();

    QCOMPARE(node->depth(), 1.0F);
    QCOMPARE(manhole(node)->length(), 1.0F);
}

void tst_Node::depthAndDiameterComeFromTheRecord()
{
    const Node* const node = realNode({{"OBJ_DepthToInvert", 3.5}, {"OBJ_Size1", 1200}});

    QCOMPARE(node->depth(), 3.5F);
    QCOMPARE(node->radius(), 0.6F);
    QCOMPARE(manhole(node)->length(), 3.5F);
    QCOMPARE(manhole(node)->radius(), 0.6F);
}

void tst_Node::aNodeWithoutADiameterIsOneMetreWide()
{
    QCOMPARE(realNode()->radius(), 0.5F);
    QCOMPARE(realNode({{"OBJ_Size1", 0}})->radius(), 0.5F);
    QCOMPARE(realNode({{"OBJ_Size1", -300}})->radius(), 0.5F);
}

void tst_Node::aNullDepthCountsAsOneMetre()
{
    Node* const node = realNode({{"OBJ_DepthToInvert", 3.0}});
    const QSignalSpy shape(node, &Node::shapeChanged);

    node->setDepth(QVariant());

    QCOMPARE(node->depth(), 1.0F);
    QCOMPARE(shape.count(), 1);
    QCOMPARE(manhole(node)->length(), 1.0F);
}

void tst_Node::settingTheDepthEmitsOnAChangeOnly()
{
    Node* const node = realNode({{"OBJ_DepthToInvert", 3.0}});
    const QSignalSpy shape(node, &Node::shapeChanged);

    node->setDepth(2.0);
    node->setDepth(2.0);
    // The comparison adds 1 to both: what is below a hundred-thousandth of that is no change.
    node->setDepth(2.00002);

    QCOMPARE(shape.count(), 1);
    QCOMPARE(node->depth(), 2.0F);
    QCOMPARE(manhole(node)->length(), 2.0F);
}

void tst_Node::settingTheDiameterChangesTheMeshAndEmitsNothing()
{
    Node* const node = realNode();
    const QSignalSpy shape(node, &Node::shapeChanged);

    node->setDiameter(2.0);

    QCOMPARE(node->radius(), 1.0F);
    QCOMPARE(manhole(node)->radius(), 1.0F);
    QCOMPARE(shape.count(), 0);
}

void tst_Node::aNullDiameterChangesNothing()
{
    Node* const node = realNode({{"OBJ_Size1", 800}});

    node->setDiameter(QVariant());

    QCOMPARE(node->radius(), 0.4F);
}

void tst_Node::theLabelsLineHeightComesFromTheSettings()
{
    auto& settings = Torvik::Base::CApplicationSettings::instance();
    const float before = settings.getDefaultLabelLineHeight();

    settings.setDefaultLabelLineHeight(7.0F);
    realNode();
    settings.setDefaultLabelLineHeight(before);

    QCOMPARE(NodeInformationToggle::m_labelLineHeight, 0.7F);
}

void tst_Node::identityOfARealNode()
{
    Node* const node = realNode();

    QCOMPARE(node->renderableType(), QStringLiteral("node"));
    QCOMPARE(node->guid(), NetworkScene::recordOf(node)->id());
    QCOMPARE(node->getDomainObjectId(), node->guid());
    QCOMPARE(node->getInspectionObjectId(), QString());
    QCOMPARE(node->wktPrefix(), QStringLiteral("POINT ZM"));
    QCOMPARE(node->getShapePoints(), (QVector<QVector<QVector3D>> {{node->position()}}));
    QVERIFY(!node->isVirtual());
}

void tst_Node::identityOfANodeWithoutARecord()
{
    Node* const node = virtualNode();

    QVERIFY(node->guid().startsWith("rnd_"));
    QCOMPARE(node->getDomainObjectId(), QString());
    QCOMPARE(node->nodeType(), QStringLiteral("NOD"));
    QCOMPARE(node->name(), QStringLiteral("V"));
    QVERIFY(node->isVirtual());
    QVERIFY(!node->isVisible());

    // A real one without a record: two of them must not share the empty key.
    Node bare(nullptr, nullptr, false, false, QString());
    QVERIFY(bare.guid().startsWith("rnd_"));
    QCOMPARE(bare.getDomainObjectId(), QString());
}

void tst_Node::nameEmitsOnAChangeOnly()
{
    Node* const node = virtualNode();
    const QSignalSpy named(node, &Node::nameChanged);

    node->setName("M12");
    node->setName("M12");

    QCOMPARE(named.count(), 1);
    QCOMPARE(named.first().first().toString(), QStringLiteral("M12"));
    QCOMPARE(node->name(), QStringLiteral("M12"));
}

void tst_Node::refreshingTheNameReadsTheRecord()
{
    Node* const node = realNode();
    NetworkScene::recordOf(node)->updateValue("OBJ_Key", "M13");

    node->refreshName();
    QCOMPARE(node->name(), QStringLiteral("M13"));

    Node* const other = virtualNode();
    other->refreshName();
    QCOMPARE(other->name(), QStringLiteral("V"));
}

void tst_Node::informationLines()
{
    NetworkScene::tieToEarth("POINT ZM(0 0 413.25 0)");
    Node* const node = realNode({{"OBJ_DepthToInvert", 2.5}}, QString());

    QCOMPARE(node->getFullManholeInfo(), QStringLiteral("\n DN + 1 \n D + 2.5 \n t = 413.25"));
}

void tst_Node::seaLevelCountsFromTheOrigin()
{
    NetworkScene::tieToEarth("POINT ZM(0 0 400 0)");
    Node* const node = virtualNode();

    node->setPosition({1.0F, 2.0F, 3.0F}, 0);

    QCOMPARE(node->seaLevel(), 402.0F);
}

void tst_Node::aPositionNeedsAShapeAndASource()
{
    Node* const node = realNode();
    QVERIFY(node->has3dPosition());
    QVERIFY(node->property("hasPosition").toBool());

    node->setTransformFlags(0);
    QVERIFY(!node->has3dPosition());

    Node* const unplaced = realNode({}, QString());
    unplaced->setTransformFlags(TransformFlags::Manual);
    QVERIFY(!unplaced->has3dPosition());

    NetworkScene::recordOf(unplaced)->updateValue("OBJ_Shape_WKT", "POINT EMPTY");
    QVERIFY(!unplaced->has3dPosition());
}

void tst_Node::aVirtualNodeNeverHasAPosition()
{
    Node* const node = virtualNode();
    node->setTransformFlags(TransformFlags::Manual);

    QVERIFY(!node->has3dPosition());
}

void tst_Node::aVirtualNodeIsShownAllTheSame()
{
    Node* const node = virtualNode();

    node->show();
    QVERIFY(node->isVisible());
    QVERIFY(manhole(node)->isVisible());

    node->ensureVisibility();
    QVERIFY(!node->isVisible());
    QVERIFY(!manhole(node)->isVisible());
}

void tst_Node::aRealNodeIsShownOnlyWithAPosition()
{
    Node* const unplaced = realNode({}, QString());
    unplaced->show();
    QVERIFY(!unplaced->isVisible());

    Node* const placed = realNode();
    placed->setVisible(false);
    placed->show();
    QVERIFY(placed->isVisible());
}

void tst_Node::settingTheSameVisibilityEmitsAllTheSame()
{
    Node* const node = virtualNode();
    const QSignalSpy visibility(node, &Node::visibilityChanged);

    node->setVisible(true);
    node->setVisible(true);
    node->setVisible(false);

    QCOMPARE(visibility.count(), 3);
    QCOMPARE(visibility.at(1).first().toBool(), true);
    QCOMPARE(visibility.at(2).first().toBool(), false);
}

void tst_Node::connectionPlaysNoPartInVisibility()
{
    Node* const node = realNode();
    QVERIFY(!node->isConnected());
    QVERIFY(node->isVisible());

    Section* const section = m_scene->section(node, nullptr);
    QVERIFY(node->isConnected());
    QVERIFY(node->isVisible());

    node->disconnectSection(section);
    QVERIFY(!node->isConnected());
    QVERIFY(node->isVisible());
}

void tst_Node::aTypeThatChangedGivesANewMeshEachTime()
{
    Node* const node = realNode({{"OBJ_Type", "MH"}, {"OBJ_DepthToInvert", 2.0}});
    QCOMPARE(node->nodeType(), QStringLiteral("MH"));
    NetworkScene::recordOf(node)->updateValue("OBJ_Type", "BLD");
    const QSignalSpy shape(node, &Node::shapeChanged);

    node->modify();
    const QPointer<Geometry::NodeGeometry> first = node->geometry();
    QVERIFY(!manhole(node));
    node->modify();

    QCOMPARE(shape.count(), 2);
    QVERIFY(first.isNull());
    QCOMPARE(node->nodeType(), QStringLiteral("MH"));
}

void tst_Node::modifyingReadsDepthAndDiameter()
{
    Node* const node = realNode();
    const auto record = NetworkScene::recordOf(node);
    record->updateValue("OBJ_DepthToInvert", 4.0);
    record->updateValue("OBJ_Size1", 1500);
    auto* const mesh = node->geometry();

    node->modify();

    QCOMPARE(node->geometry(), mesh);
    QCOMPARE(node->depth(), 4.0F);
    QCOMPARE(node->radius(), 0.75F);
}

void tst_Node::aDestroyedNodeLeavesTheRegistry()
{
    Node* const node = realNode();
    const QString id = node->guid();
    QVERIFY(SceneEntities::instance().getNodes().contains(id));

    delete node;

    QVERIFY(!SceneEntities::instance().getNodes().contains(id));
}

void tst_Node::qmlCanMakeANode()
{
    const auto node = std::make_unique<Node>();

    QVERIFY(node->isVirtual());
    QVERIFY(!node->isVisible());
    QCOMPARE(node->depth(), 1.0F);
}

QTEST_MAIN(tst_Node)
#include "tst_Node.moc"
