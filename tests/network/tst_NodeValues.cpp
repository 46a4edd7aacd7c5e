#include "NetworkScene.h"

#include "network/ManholeGeometry.h"

#include <QMetaProperty>
#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QString at = QStringLiteral("POINT ZM(-10 20 5 16)"); // (10, 5, 20) in the scene, from a GIS

/** Notes how picking is switched. */
class PickSwitch : public TouchControlBase {
public:
    explicit PickSwitch(Renderable* parent)
        : TouchControlBase(parent)
    {
    }
    void disableArrows() override {}
    void enablePick() override { calls << QStringLiteral("on"); }
    void disablePick() override { calls << QStringLiteral("off"); }
    void allow(bool) override {}
    bool isAllowed() const override { return false; }
    void setMode(Mode const&) override {}
    void addAxisControlArrows(float) override {}
    void clearAxisControlArrows() override {}
    bool axisArrowVisible() const override { return false; }
    void setAxisArrowVisible(bool) override {}
    QString axisArrowMode() const override { return {}; }
    void setAxisArrowMode(QString const&) override {}

    QStringList calls;
};

} // namespace

/** What a node tells of itself, and when it is shown. */
class tst_NodeValues : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aNullDepthIsStoredAsOneMetre();
    void noiseIsNoChangeOfTheDiameter();
    void informationLinesTellTheDepthThatCounts();
    void modifyingShowsAPlacedNode();
    void aRecordThatLostItsDiameterLeavesIt();
    void connectingAndDisconnectingDecideAnewWhetherToShow();
    void showingANodeWithoutAPlaceLeavesItAsItIs();
    void pickingGoesWithVisibility();
    void anEmptyPointLeavesTheNodeAtTheOrigin();
    void anotherTieToTheEarthRewritesTheShape();
    void propertiesForQml();

private:
    Node* realNode(const QVariantMap& values = {}, const QString& shape = at)
    {
        return m_scene->node("N", shape, values);
    }
    Node* virtualNode(bool visible = false) { return Node::createVirtual(m_scene->root.get(), visible, "V", "NOD"); }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_NodeValues::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_NodeValues::cleanup()
{
    m_scene.reset();
}

void tst_NodeValues::aNullDepthIsStoredAsOneMetre()
{
    Node* const deep = realNode({{"OBJ_DepthToInvert", 3.0}});
    deep->setDepth(QVariant());
    const QSignalSpy deepShape(deep, &Node::shapeChanged);
    deep->setDepth(1.0);
    QCOMPARE(deepShape.count(), 0);

    // Without a record the stored depth is 0, though it reads as 1.
    Node* const unknown = realNode();
    const QSignalSpy unknownShape(unknown, &Node::shapeChanged);
    unknown->setDepth(QVariant());
    unknown->setDepth(QVariant());
    QCOMPARE(unknownShape.count(), 1);
}

void tst_NodeValues::noiseIsNoChangeOfTheDiameter()
{
    Node* const node = realNode();
    const auto* const mesh = qobject_cast<Geometry::ManholeGeometry*>(node->geometry());

    // Both are compared with 1 added.
    node->setDiameter(1.000015);
    QVERIFY(node->radius() == 0.5F);
    QVERIFY(mesh->radius() == 0.5F);

    node->setDiameter(1.0001);
    QVERIFY(node->radius() > 0.5F);
    QVERIFY(mesh->radius() > 0.5F);
}

void tst_NodeValues::informationLinesTellTheDepthThatCounts()
{
    NetworkScene::tieToEarth("POINT ZM(0 0 413.25678 0)");

    const Node* const node = realNode({}, QString());

    QCOMPARE(node->getFullManholeInfo(), QStringLiteral("\n DN + 1 \n D + 1 \n t = 413.257"));
}

void tst_NodeValues::modifyingShowsAPlacedNode()
{
    Node* const placed = realNode();
    placed->setVisible(false);
    placed->modify();
    QVERIFY(placed->isVisible());

    Node* const unplaced = realNode({}, QString());
    unplaced->setVisible(true);
    unplaced->modify();
    QVERIFY(!unplaced->isVisible());
}

void tst_NodeValues::aRecordThatLostItsDiameterLeavesIt()
{
    Node* const node = realNode({{"OBJ_Size1", 800}});
    const auto record = NetworkScene::recordOf(node);
    record->updateValue("OBJ_Size1", QVariant());
    QVERIFY(node->getProps()->diameter().isNull());

    node->modify();

    QCOMPARE(node->radius(), 0.4F);
}

void tst_NodeValues::connectingAndDisconnectingDecideAnewWhetherToShow()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const hidden = realNode();
    Node* const shown = virtualNode(true);

    shown->connectSection(section);
    QVERIFY(!shown->isVisible());
    shown->setVisible(true);
    shown->disconnectSection(section);
    QVERIFY(!shown->isVisible());

    hidden->setVisible(false);
    hidden->connectSection(section);
    QVERIFY(hidden->isVisible());
}

void tst_NodeValues::showingANodeWithoutAPlaceLeavesItAsItIs()
{
    Node* const node = realNode({}, QString());
    node->setVisible(true);

    node->show();

    QVERIFY(node->isVisible());
}

void tst_NodeValues::pickingGoesWithVisibility()
{
    Node* const node = realNode();
    auto* const picking = new PickSwitch(node);
    node->setTouchControl(picking);

    node->setVisible(false);
    node->setVisible(false);
    QCOMPARE(picking->calls, QStringList {"off"});

    node->setVisible(true);
    QCOMPARE(picking->calls, (QStringList {"off", "on"}));

    node->initVisibility(true);
    QCOMPARE(picking->calls, (QStringList {"off", "on", "on"}));
}

void tst_NodeValues::anEmptyPointLeavesTheNodeAtTheOrigin()
{
    NetworkScene::tieToEarth("POINT ZM(100 200 50 0)");

    QCOMPARE(realNode({}, "POINT EMPTY")->position(), QVector3D());
}

void tst_NodeValues::anotherTieToTheEarthRewritesTheShape()
{
    const auto record = NetworkScene::recordOf(realNode());

    NetworkScene::tieToEarth("POINT ZM(100 0 0 0)");

    // The node stays where it stands in the scene.
    QTRY_COMPARE(m_scene->project().stored("NODE", "OBJ_PK", record->id(), "OBJ_Shape_WKT").toString(),
                 QStringLiteral("POINT ZM(90 20 5 16)"));
}

void tst_NodeValues::propertiesForQml()
{
    NetworkScene::tieToEarth("POINT ZM(0 0 400 0)");
    Node* const node = realNode({{"OBJ_Type", "MH"}}, QString());
    node->setPosition({1.0F, 2.0F, 3.0F}, 0);
    const auto property = [](const char* name) {
        return Node::staticMetaObject.property(Node::staticMetaObject.indexOfProperty(name));
    };

    QCOMPARE(node->property("isVirtual"), QVariant(false));
    QCOMPARE(virtualNode()->property("isVirtual"), QVariant(true));
    QCOMPARE(node->property("hasPosition"), QVariant(false));
    QCOMPARE(node->property("seaLevel"), QVariant(402.0F));
    QCOMPARE(node->property("nodeType"), QVariant("MH"));
    QVERIFY(property("isVirtual").isConstant());
    QVERIFY(property("hasPosition").isConstant());
    QCOMPARE(property("seaLevel").notifySignal().name(), QByteArray("transformChanged"));
    for (const char* name : {"isVirtual", "hasPosition", "seaLevel", "nodeType"})
        QVERIFY2(!property(name).isWritable(), name);
}

QTEST_MAIN(tst_NodeValues)
#include "tst_NodeValues.moc"
