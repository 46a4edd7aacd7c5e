#include "NetworkScene.h"

#include "network/BuildingGeometry.h"
#include "network/ConnectionGeometry.h"
#include "network/ManholeGeometry.h"
#include "network/NodeMaterials.h"
#include "scene/SharedComponents.h"

#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QPhongMaterial>
#include <Qt3DExtras/QSphereMesh>
#include <Qt3DRender/QEffect>

#include <QtTest>

using namespace Torvik::View3d;
using Geometry::BuildingGeometry;
using Geometry::ConnectionGeometry;
using Geometry::ManholeGeometry;
using Geometry::MeshGeometry;

namespace {

template <typename Component>
QVector<Component*> componentsOf(const Qt3DCore::QEntity* entity)
{
    return entity->componentsOfType<Component>();
}

} // namespace

class tst_NodeGeometry : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theTypeChoosesTheGeometry_data();
    void theTypeChoosesTheGeometry();
    void aVirtualNodeKeepsItsFirstMeshUntilItIsMadeAnew();
    void aManholeHangsFromTheGround();
    void aBuildingTouchesTheGroundFromBelow();
    void aBuildingTakesNoNoticeOfTheDepth();
    void aNodeWithoutARecordIsAManhole();
    void meshesOfTheirOwnHaveNoMaterial();
    void materialsComeWithTheSelection_data();
    void materialsComeWithTheSelection();
    void aNewMeshOfASelectedNodeIsNotSelected();
    void hidingTheMeshLeavesTheMaterial_data();
    void hidingTheMeshLeavesTheMaterial();
    void theMaterialIsThereBeforeAnyMeshIsShown();
    void aMeshIsShownOnceHoweverOften();
    void aConnectionShowsNothing();
    void theDebugMeshOfAConnectionCanBeHidden();
    void manyNodesShareMeshesAndMaterials();
    void aStandInDrawsLikeItsOriginal();
    void standInsLeaveWithTheirOriginal();
    void aMaterialThatDiedIsForgotten();

private:
    static void typesWithAMesh()
    {
        QTest::addColumn<QString>("type");
        QTest::newRow("manhole") << "MH";
        QTest::newRow("building") << "BLD";
    }
    Node* realNode(const QString& type, const QVariantMap& more = {})
    {
        QVariantMap values = more;
        values.insert("OBJ_Type", type);
        return m_scene->node("N", "POINT ZM(0 0 0 16)", values);
    }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_NodeGeometry::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_NodeGeometry::cleanup()
{
    m_scene.reset();
}

void tst_NodeGeometry::theTypeChoosesTheGeometry_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("geometry");
    const QByteArray manhole = ManholeGeometry::staticMetaObject.className();
    QTest::newRow("connection") << "CON" << QByteArray(ConnectionGeometry::staticMetaObject.className());
    QTest::newRow("building") << "BLD" << QByteArray(BuildingGeometry::staticMetaObject.className());
    QTest::newRow("NOD") << "NOD" << manhole;
    QTest::newRow("none") << "" << manhole;
    QTest::newRow("unknown") << "XYZ" << manhole;
    QTest::newRow("case matters") << "bld" << manhole;
}

void tst_NodeGeometry::theTypeChoosesTheGeometry()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, geometry);

    const Node* const node = realNode(type);

    QCOMPARE(QByteArray(node->geometry()->metaObject()->className()), geometry);
    QCOMPARE(node->geometry()->parentNode(), node);
}

void tst_NodeGeometry::aVirtualNodeKeepsItsFirstMeshUntilItIsMadeAnew()
{
    Node* const node = Node::createVirtual(m_scene->root.get(), true, "V", "CON");
    QVERIFY(qobject_cast<ManholeGeometry*>(node->geometry()));

    node->createMesh();

    QVERIFY(qobject_cast<ConnectionGeometry*>(node->geometry()));

    Node* const building = Node::createVirtual(m_scene->root.get(), true, "V", "BLD");
    building->createMesh();
    QVERIFY(qobject_cast<BuildingGeometry*>(building->geometry()));
}

void tst_NodeGeometry::aNodeWithoutARecordIsAManhole()
{
    const Node node(m_scene->root.get(), nullptr, false, true, QString());

    QVERIFY(qobject_cast<ManholeGeometry*>(node.geometry()));
}

void tst_NodeGeometry::meshesOfTheirOwnHaveNoMaterial()
{
    const ManholeGeometry manhole(nullptr);
    QCOMPARE(componentsOf<Qt3DExtras::QCylinderMesh>(&manhole).size(), 1);
    QCOMPARE(componentsOf<Qt3DRender::QMaterial>(&manhole).size(), 0);

    const BuildingGeometry building(nullptr);
    QCOMPARE(componentsOf<Qt3DExtras::QSphereMesh>(&building).size(), 1);
    QCOMPARE(componentsOf<Qt3DRender::QMaterial>(&building).size(), 0);
}

void tst_NodeGeometry::aManholeHangsFromTheGround()
{
    const Node* const node = realNode("MH", {{"OBJ_DepthToInvert", 3.0}, {"OBJ_Size1", 800}});
    const auto* const mesh = node->geometry();

    const QMatrix4x4 place = mesh->transform()->matrix();

    // The unit cylinder stands around its centre, from -0.5 to 0.5.
    VERIFY_NEAR(place * QVector3D(0.0F, 0.5F, 0.0F), QVector3D());
    VERIFY_NEAR(place * QVector3D(0.0F, -0.5F, 0.0F), QVector3D(0.0F, -3.0F, 0.0F));
    VERIFY_NEAR(place * QVector3D(1.0F, 0.5F, 0.0F), QVector3D(0.4F, 0.0F, 0.0F));
    QCOMPARE(mesh->transform()->translation(), QVector3D(0.0F, -1.5F, 0.0F));
    QCOMPARE(componentsOf<Qt3DExtras::QCylinderMesh>(mesh).size(), 1);
}

void tst_NodeGeometry::aBuildingTouchesTheGroundFromBelow()
{
    const Node* const node = realNode("BLD", {{"OBJ_Size1", 4000}});
    const auto* const mesh = qobject_cast<BuildingGeometry*>(node->geometry());

    const QMatrix4x4 place = mesh->sphereTransform()->matrix();

    QCOMPARE(mesh->radius(), 2.0F);
    VERIFY_NEAR(place * QVector3D(0.0F, 1.0F, 0.0F), QVector3D());
    VERIFY_NEAR(place * QVector3D(1.0F, 0.0F, 0.0F), QVector3D(2.0F, -2.0F, 0.0F));
    QCOMPARE(componentsOf<Qt3DExtras::QSphereMesh>(mesh).size(), 1);
    // Two transforms, of which the last counts.
    QCOMPARE(componentsOf<Qt3DCore::QTransform>(mesh).constLast(), mesh->sphereTransform());
}

void tst_NodeGeometry::aBuildingTakesNoNoticeOfTheDepth()
{
    Node* const node = realNode("BLD");
    const auto* const mesh = qobject_cast<BuildingGeometry*>(node->geometry());
    const QMatrix4x4 place = mesh->sphereTransform()->matrix();

    node->setDepth(7.0);

    QCOMPARE(mesh->sphereTransform()->matrix(), place);
    QCOMPARE(mesh->transform()->matrix(), QMatrix4x4());
}

void tst_NodeGeometry::materialsComeWithTheSelection_data()
{
    typesWithAMesh();
}

void tst_NodeGeometry::materialsComeWithTheSelection()
{
    QFETCH(QString, type);
    Node* const node = realNode(type);
    const auto* const mesh = qobject_cast<MeshGeometry*>(node->geometry());
    const auto materials = [mesh] { return componentsOf<Qt3DRender::QMaterial>(mesh); };
    QVERIFY(mesh->unselectedMaterial());
    // One of several that draw as the root's own does.
    QCOMPARE(mesh->unselectedMaterial()->parentNode(), m_scene->root->materialNode());
    QCOMPARE(mesh->unselectedMaterial()->effect(), m_scene->root->materialNode()->effect());
    QCOMPARE(materials(), (QVector<Qt3DRender::QMaterial*> {mesh->unselectedMaterial()}));

    node->setSelectedMaterial();
    node->setSelectedMaterial();
    QCOMPARE(materials(), (QVector<Qt3DRender::QMaterial*> {mesh->selectedMaterial()}));
    QCOMPARE(mesh->selectedMaterial(), m_scene->root->materialNodeSelected());

    node->setDefaultMaterial();
    node->setDefaultMaterial();
    QCOMPARE(materials(), (QVector<Qt3DRender::QMaterial*> {mesh->unselectedMaterial()}));
}

void tst_NodeGeometry::aNewMeshOfASelectedNodeIsNotSelected()
{
    Node* const node = realNode("MH");
    node->setSelectedMaterial();

    node->createMesh();

    const auto* const mesh = qobject_cast<MeshGeometry*>(node->geometry());
    QCOMPARE(componentsOf<Qt3DRender::QMaterial>(mesh), (QVector<Qt3DRender::QMaterial*> {mesh->unselectedMaterial()}));
}

void tst_NodeGeometry::hidingTheMeshLeavesTheMaterial_data()
{
    typesWithAMesh();
}

void tst_NodeGeometry::hidingTheMeshLeavesTheMaterial()
{
    QFETCH(QString, type);
    Node* const node = realNode(type);
    auto* const mesh = qobject_cast<MeshGeometry*>(node->geometry());
    const auto materials = [mesh] { return componentsOf<Qt3DRender::QMaterial>(mesh); };

    mesh->setVisible(false);
    QCOMPARE(materials(), (QVector<Qt3DRender::QMaterial*> {mesh->unselectedMaterial()}));

    node->setSelectedMaterial();
    mesh->setVisible(true);
    QCOMPARE(materials(), (QVector<Qt3DRender::QMaterial*> {mesh->selectedMaterial()}));
}

void tst_NodeGeometry::theMaterialIsThereBeforeAnyMeshIsShown()
{
    const Node* const node = Node::createVirtual(m_scene->root.get(), false, "V", "NOD");

    QCOMPARE(componentsOf<Qt3DRender::QMaterial>(node->geometry()).size(), 1);
    QCOMPARE(componentsOf<Qt3DExtras::QCylinderMesh>(node->geometry()).size(), 0);

    ManholeGeometry bare(nullptr);
    bare.setSelectedMaterial(m_scene->root->materialNodeSelected());
    bare.setUnselectedMaterial(m_scene->root->materialNode());
    QCOMPARE(componentsOf<Qt3DRender::QMaterial>(&bare).size(), 0);
}

void tst_NodeGeometry::aMeshIsShownOnceHoweverOften()
{
    for (const QString type : {"MH", "BLD"}) {
        auto* const mesh = realNode(type)->geometry();
        const auto meshes = [mesh] { return componentsOf<Qt3DRender::QGeometryRenderer>(mesh).size(); };

        mesh->setVisible(false);
        mesh->setVisible(false);
        QCOMPARE(meshes(), 0);
        mesh->setVisible(true);
        mesh->setVisible(true);
        QCOMPARE(meshes(), 1);
    }
}

void tst_NodeGeometry::aConnectionShowsNothing()
{
    Node* const node = realNode("CON");
    auto* const geometry = node->geometry();

    node->setSelectedMaterial();
    geometry->setLength(2.0F);
    geometry->setRadius(2.0F);
    geometry->setVisible(false);
    geometry->setVisible(true);

    QCOMPARE(geometry->components(), (Qt3DCore::QComponentVector {geometry->transform()}));
}

void tst_NodeGeometry::theDebugMeshOfAConnectionCanBeHidden()
{
    auto* const geometry = qobject_cast<ConnectionGeometry*>(realNode("CON")->geometry());
    const auto meshes = [geometry] { return componentsOf<Qt3DExtras::QCylinderMesh>(geometry); };

    geometry->createDebugMesh();
    geometry->createDebugMaterial();

    QCOMPARE(meshes().size(), 1);
    QCOMPARE(meshes().first()->length(), 3.5F);
    QCOMPARE(meshes().first()->radius(), 0.1F);
    QCOMPARE(componentsOf<Qt3DExtras::QPhongMaterial>(geometry).first()->diffuse(), QColor(235, 232, 52));
    geometry->setLength(2.0F);
    geometry->setRadius(0.5F);
    QCOMPARE(meshes().first()->length(), 2.0F);
    QCOMPARE(meshes().first()->radius(), 0.5F);
    geometry->setVisible(false);
    geometry->setVisible(false);
    QCOMPARE(meshes().size(), 0);
    geometry->setVisible(true);
    geometry->setVisible(true);
    QCOMPARE(meshes().size(), 1);
}

void tst_NodeGeometry::manyNodesShareMeshesAndMaterials()
{
    constexpr int nodes = 3 * SharedComponents::usersPerComponent;
    QSet<Qt3DCore::QNode*> meshes;
    QSet<Qt3DCore::QNode*> materials;

    for (int i = 0; i < nodes; ++i) {
        const Node* const node = Node::createVirtual(m_scene->root.get(), true, QString(), "NOD");
        meshes.insert(componentsOf<Qt3DExtras::QCylinderMesh>(node->geometry()).first());
        materials.insert(componentsOf<Qt3DRender::QMaterial>(node->geometry()).first());
    }

    for (const auto& shared : {meshes, materials}) {
        QCOMPARE(shared.size(), 3);
        for (Qt3DCore::QNode* component : shared)
            QVERIFY(qobject_cast<Qt3DCore::QComponent*>(component)->entities().size() <=
                    SharedComponents::usersPerComponent);
    }
}

void tst_NodeGeometry::aStandInDrawsLikeItsOriginal()
{
    Qt3DExtras::QPhongMaterial original;

    const auto* const standIn = NodeMaterials::standInFor(&original);

    QVERIFY(standIn != &original);
    QCOMPARE(standIn->effect(), original.effect());
    QCOMPARE(standIn->parameters(), original.parameters());
    auto* const other = new Qt3DRender::QEffect(&original);
    original.setEffect(other);
    QCOMPARE(standIn->effect(), other);
    QCOMPARE(NodeMaterials::standInFor(nullptr), nullptr);
}

void tst_NodeGeometry::standInsLeaveWithTheirOriginal()
{
    auto original = std::make_unique<Qt3DExtras::QPhongMaterial>();
    const QPointer<Qt3DRender::QMaterial> standIn = NodeMaterials::standInFor(original.get());

    original.reset();
    QVERIFY(standIn.isNull());

    Qt3DExtras::QPhongMaterial next;
    QCOMPARE(NodeMaterials::standInFor(&next)->effect(), next.effect());
}

void tst_NodeGeometry::aMaterialThatDiedIsForgotten()
{
    auto selected = std::make_unique<Qt3DExtras::QPhongMaterial>();
    ManholeGeometry mesh(nullptr);
    mesh.setSelectedMaterial(selected.get());
    mesh.selected();

    selected.reset();
    mesh.unselected();
    mesh.selected();

    QCOMPARE(componentsOf<Qt3DRender::QMaterial>(&mesh).size(), 0);
}

QTEST_MAIN(tst_NodeGeometry)
#include "tst_NodeGeometry.moc"
