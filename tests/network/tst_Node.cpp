#include "NetworkScene.h"

#include "common/LogCapture.h"
#include "domain/boundary/BaseServices.h"
#include "network/ManholeGeometry.h"
#include "network/NodeInformationToggle.h"

#include <QtTest>

using namespace Torvik::View3d;
using Torvik::Database::WktPoint;

namespace {

const QString at = QStringLiteral("POINT ZM(-10 20 5 16)"); // (10, 5, 20) in the scene, from a GIS

Geometry::ManholeGeometry* manhole(const Node* node)
{
    return qobject_cast<Geometry::ManholeGeometry*>(node->geometry());
}

} // namespace

class tst_Node : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

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

    void movingToTheStartOfNothingIsLogged();
    void movingToTheStartRaisesByTheDepth();
    void movingToARenderableTakesItsPlaceAndRotation();
    void aSnappedNodeFollowsItsSection();
    void snappingAddsTheSourceWithoutASignal();
    void aBoundNodeDoesNotSnap();
    void aNodeFollowsOneSectionOnly();
    void movingWithoutASectionIsLogged();
    void aBurstOfChangesMovesTheNodeOnce();
    void anUnchangedPlaceOnlyResetsTheFlags();
    void storedPositionBeatsThePipesEnd_data();
    void storedPositionBeatsThePipesEnd();
    void aNodeThatTheUserPlacedNoLongerFollowsItsSection();
    void unsnappingFromAnotherSectionDoesNothing();
    void aLinkedNodeGoesAlongWithTheStart();
    void aBoundNodeDoesNotGoAlongWithTheStart();
    void disconnectingTheSectionCutsTheLink();
    void connectionPointLiesAtThePipe();

    void anotherTieToTheEarthEndsEditing();
    void aMoveIsStored();
    void aDestroyedNodeLeavesItsSections();
    void aDestroyedNodeLeavesTheRegistry();
    void aDestroyedSectionLetsItsFollowerGo();
    void qmlCanMakeANode();

private:
    Node* realNode(const QVariantMap& values = {}, const QString& shape = at)
    {
        return m_scene->node("N", shape, values);
    }
    Node* virtualNode(bool visible = false, const QString& type = "NOD")
    {
        return Node::createVirtual(m_scene->root.get(), visible, "V", type);
    }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_Node::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_Node::cleanup()
{
    m_scene.reset();
}

void tst_Node::creationIsLogged()
{
    const Kx::Test::LogCapture log;

    realNode();

    QCOMPARE(log.count(4, "View3d::Node", "create"), 1);
}

void tst_Node::aStoredPointPlacesTheNodeAndLeavesTheFlags()
{
    const auto record = m_scene->project().addNode("N", at);
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

void tst_Node::movingToTheStartOfNothingIsLogged()
{
    Node* const node = virtualNode();
    const Kx::Test::LogCapture log;

    node->moveToStart(nullptr);

    QCOMPARE(log.count(1, "View3d::Node", "Node::calculateTranslation Section is null"), 1);
    QCOMPARE(node->position(), QVector3D());
}

void tst_Node::movingToTheStartRaisesByTheDepth()
{
    Section* const section = m_scene->section(realNode(), nullptr, {{"OBJ_ToNodeDepth", 2.0}});
    section->transform()->setTranslation({1.0F, -3.0F, 2.0F}, 0);
    Node* const node = virtualNode();

    node->moveToStart(section);

    VERIFY_NEAR(node->position(), QVector3D(1.0F, -1.0F, 2.0F));
    QCOMPARE(node->transformFlags(), int(TransformFlags::Observations));
}

void tst_Node::movingToARenderableTakesItsPlaceAndRotation()
{
    Node* const other = virtualNode();
    other->setPosition({1.0F, 2.0F, 3.0F}, TransformFlags::GPS);
    other->setRotation(QQuaternion::fromAxisAndAngle(0.0F, 1.0F, 0.0F, 90.0F), 0);
    Node* const node = virtualNode();

    node->moveToRenderable(other);

    QCOMPARE(node->position(), other->position());
    QCOMPARE(node->rotation(), other->rotation());
    QCOMPARE(node->transformFlags(), int(TransformFlags::Observations));
}

void tst_Node::aSnappedNodeFollowsItsSection()
{
    Section* const section =
        m_scene->section(realNode(), nullptr, {{"OBJ_ToNodeDepth", 2.0}}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}});
    Node* const end = section->endNode();
    QVERIFY(end->isVirtual());
    QCOMPARE(end->snappedSection(), section);

    section->transform()->setTranslation({5.0F, 0.0F, 0.0F}, 0);

    VERIFY_NEAR(end->position(), QVector3D(5.0F, 2.0F, 10.0F));
    section->setRotation(QQuaternion::fromDirection({1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}), 0);
    VERIFY_NEAR(end->position(), QVector3D(15.0F, 2.0F, 0.0F));
    section->onDistanceCounterChanged(12.0);
    VERIFY_NEAR(end->position(), QVector3D(17.0F, 2.0F, 0.0F));
}

void tst_Node::snappingAddsTheSourceWithoutASignal()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const node = virtualNode();
    node->setPosition(section->endNode()->position(), 0);
    const QSignalSpy flags(node->transform(), &FlaggedTransform::flagsChanged);

    node->snapToSection(section);

    QCOMPARE(node->transformFlags(), int(TransformFlags::Observations));
    QCOMPARE(flags.count(), 0);
}

void tst_Node::aBoundNodeDoesNotSnap()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const node = virtualNode();
    node->setPosition({1.0F, 2.0F, 3.0F}, TransformFlags::Manual);

    node->snapToSection(section);
    node->moveToEnd();

    QVERIFY(!node->snappedSection());
    QCOMPARE(node->transformFlags(), int(TransformFlags::Manual));
    QCOMPARE(node->position(), QVector3D(1.0F, 2.0F, 3.0F));
}

void tst_Node::aNodeFollowsOneSectionOnly()
{
    Section* const first = m_scene->section(realNode(), nullptr);
    Section* const second = m_scene->section(realNode(), nullptr);
    Node* const node = virtualNode();

    node->snapToSection(first);
    node->snapToSection(second);
    QCOMPARE(node->snappedSection(), first);

    node->unSnapFromSection(first);
    node->snapToSection(second);
    QCOMPARE(node->snappedSection(), second);
}

void tst_Node::movingWithoutASectionIsLogged()
{
    Node* const virtualOne = virtualNode();
    Node* const realOne = realNode({}, QString());
    const Kx::Test::LogCapture log;

    virtualOne->moveToEnd();
    realOne->moveToEnd();

    QCOMPARE(log.count(1, "View3d::Node", "Node::calculateTranslation Section is null"), 2);
    QCOMPARE(virtualOne->position(), QVector3D());
    QCOMPARE(realOne->position(), QVector3D());
}

void tst_Node::aBurstOfChangesMovesTheNodeOnce()
{
    Node* const end = realNode({}, QString());
    Section* const section =
        m_scene->section(realNode(), end, {{"OBJ_ToNodeDepth", 2.0}}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}});
    section->setEndDistance(10.0F);
    section->lockAsEnded();
    QCoreApplication::processEvents();
    const QSignalSpy moved(end->transform(), &FlaggedTransform::translationChanged);

    section->transform()->setTranslation({5.0F, 0.0F, 0.0F}, 0);
    section->transform()->setTranslation({6.0F, 0.0F, 0.0F}, 0);
    emit section->sectionGeometryChanged();

    QCOMPARE(moved.count(), 1);
    VERIFY_NEAR(end->position(), QVector3D(5.0F, 2.0F, 10.0F));
    QCoreApplication::processEvents();
    emit section->sectionGeometryChanged();
    QCOMPARE(moved.count(), 2);
    VERIFY_NEAR(end->position(), QVector3D(6.0F, 2.0F, 10.0F));
}

void tst_Node::anUnchangedPlaceOnlyResetsTheFlags()
{
    Node* const end = realNode({}, QString());
    Section* const section = m_scene->section(realNode(), end, {}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}});
    section->setEndDistance(10.0F);
    section->lockAsEnded();
    QCoreApplication::processEvents();
    end->setTransformFlags(0);
    const QSignalSpy moved(end->transform(), &FlaggedTransform::translationChanged);

    end->moveToEnd();

    QCOMPARE(moved.count(), 0);
    QCOMPARE(end->transformFlags(), int(TransformFlags::Observations));
}

void tst_Node::storedPositionBeatsThePipesEnd_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVector3D>("expected");
    // The pipe ends 10 m north of the origin, 2 m below the node.
    QTest::newRow("nothing stored") << QString() << QVector3D(0.0F, 2.0F, 10.0F);
    QTest::newRow("place and height") << "POINT ZM(-7 8 9 0)" << QVector3D(7.0F, 9.0F, 8.0F);
    QTest::newRow("no northing") << "POINT ZM(-7 0 9 0)" << QVector3D(0.0F, 9.0F, 10.0F);
    QTest::newRow("no height") << "POINT ZM(-7 8 0 0)" << QVector3D(7.0F, 2.0F, 8.0F);
    QTest::newRow("only a height") << "POINT ZM(0 0 9 0)" << QVector3D(0.0F, 9.0F, 10.0F);
}

void tst_Node::storedPositionBeatsThePipesEnd()
{
    QFETCH(QString, shape);
    QFETCH(QVector3D, expected);
    Node* const end = realNode({}, shape);
    Section* const section =
        m_scene->section(realNode(), end, {{"OBJ_ToNodeDepth", 2.0}}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}});

    section->setEndDistance(10.0F);
    end->snapToSection(section);

    VERIFY_NEAR(end->position(), expected);
}

void tst_Node::aNodeThatTheUserPlacedNoLongerFollowsItsSection()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const end = section->endNode();
    const QVector3D before = end->position();

    end->move({1.0F, 0.0F, 0.0F}, TransformFlags::GPS);
    section->transform()->setTranslation({50.0F, 0.0F, 0.0F}, 0);
    emit section->sectionGeometryChanged();

    QCOMPARE(end->transformFlags(), int(TransformFlags::Manual));
    QVERIFY(!end->snappedSection());
    QCOMPARE(end->position(), before + QVector3D(1.0F, 0.0F, 0.0F));
}

void tst_Node::unsnappingFromAnotherSectionDoesNothing()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Section* const other = m_scene->section(realNode(), nullptr);
    Node* const end = section->endNode();

    end->unSnapFromSection(other);
    QCOMPARE(end->snappedSection(), section);

    end->unSnapFromSection(nullptr);
    QCOMPARE(end->snappedSection(), section);
}

void tst_Node::aLinkedNodeGoesAlongWithTheStart()
{
    Section* const section = m_scene->section(realNode(), nullptr, {{"OBJ_ToNodeDepth", 2.0}});
    section->setTransformFlags(TransformFlags::Observations);
    Node* const node = virtualNode();
    node->setTransformFlags(TransformFlags::Observations);

    node->linkToBegining(section);
    node->linkToBegining(section);
    const QSignalSpy moved(node->transform(), &FlaggedTransform::translationChanged);
    section->transform()->setTranslation({3.0F, 1.0F, 0.0F}, 0);

    QCOMPARE(moved.count(), 1);
    VERIFY_NEAR(node->position(), QVector3D(3.0F, 1.0F + section->toNodeDepth(), 0.0F));
}

void tst_Node::aBoundNodeDoesNotGoAlongWithTheStart()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const node = virtualNode();
    node->linkToBegining(section);

    section->setTransformFlags(TransformFlags::Observations);
    node->setTransformFlags(TransformFlags::Manual);
    section->transform()->setTranslation({3.0F, 1.0F, 0.0F}, 0);
    QCOMPARE(node->position(), QVector3D());

    section->setTransformFlags(0);
    node->setTransformFlags(TransformFlags::Observations);
    section->transform()->setTranslation({4.0F, 1.0F, 0.0F}, 0);
    QCOMPARE(node->position(), QVector3D());
}

void tst_Node::disconnectingTheSectionCutsTheLink()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    section->setTransformFlags(TransformFlags::Observations);
    Node* const node = virtualNode();
    node->setTransformFlags(TransformFlags::Observations);
    node->connectSection(section);
    node->linkToBegining(section);

    node->disconnectSection(section);
    section->transform()->setTranslation({3.0F, 1.0F, 0.0F}, 0);

    QCOMPARE(node->position(), QVector3D());
}

void tst_Node::connectionPointLiesAtThePipe()
{
    Node* const start = realNode({{"OBJ_DepthToInvert", 4.0}});
    Section* const section = m_scene->section(start, nullptr, {{"OBJ_ToNodeDepth", 3.0}});

    VERIFY_NEAR(start->connectionPoint(section), start->position() - QVector3D(0.0F, 3.0F, 0.0F));
    VERIFY_NEAR(start->connectionPoint(virtualNode()), start->position());
    VERIFY_NEAR(start->connectionPoint(nullptr), start->position());
}

void tst_Node::anotherTieToTheEarthEndsEditing()
{
    Node* const node = realNode();
    const QSignalSpy finished(node, &Node::editingFinished);

    NetworkScene::tieToEarth();

    QCOMPARE(finished.count(), 1);
}

void tst_Node::aMoveIsStored()
{
    Node* const node = realNode();
    const auto record = NetworkScene::recordOf(node);

    node->move({1.0F, 0.0F, 0.0F}, TransformFlags::Manual);

    QTRY_COMPARE(m_scene->project().stored("NODE", "OBJ_PK", record->id(), "OBJ_Shape_WKT").toString(),
                 QStringLiteral("POINT ZM(-11 20 5 4)"));
}

void tst_Node::aDestroyedNodeLeavesItsSections()
{
    Node* const start = realNode();
    Node* const end = realNode();
    Section* const section = m_scene->section(start, end);

    delete start;
    QCOMPARE(section->startNode(), nullptr);
    QCOMPARE(section->endNode(), end);
    QCOMPARE(section->fromNodeDepth(), 0.0F);

    delete end;
    QCOMPARE(section->endNode(), nullptr);
}

void tst_Node::aDestroyedNodeLeavesTheRegistry()
{
    Node* const node = realNode();
    const QString id = node->guid();
    QVERIFY(SceneEntities::instance().getNodes().contains(id));

    delete node;

    QVERIFY(!SceneEntities::instance().getNodes().contains(id));
}

void tst_Node::aDestroyedSectionLetsItsFollowerGo()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const end = section->endNode();

    delete section;

    QVERIFY(!end->snappedSection());
    QVERIFY(!end->isConnected());
    Section* const next = m_scene->section(realNode(), nullptr);
    end->snapToSection(next);
    QCOMPARE(end->snappedSection(), next);
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
