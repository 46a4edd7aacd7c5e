#include "ObservationScene.h"

#include "network/Connection.h"
#include "network/ConnectionPoint.h"
#include "scene/GlobalNav.h"

#include <Qt3DCore/QTransform>
#include <Qt3DRender/QEffect>
#include <Qt3DRender/QGeometryRenderer>
#include <Qt3DRender/QMaterial>
#include <QtTest>

using namespace Torvik::View3d;

namespace {

bool hasMesh(const JointMark* mark)
{
    return !mark->entity()->componentsOfType<Qt3DRender::QGeometryRenderer>().isEmpty();
}

int meshes(const JointMark* mark)
{
    return mark->entity()->componentsOfType<Qt3DRender::QGeometryRenderer>().size();
}

int materials(const JointMark* mark)
{
    return mark->entity()->componentsOfType<Qt3DRender::QMaterial>().size();
}

/** Where a point of the unit mesh is drawn, in the frame of the mark. */
QVector3D drawn(const JointMark* mark, const QVector3D& point)
{
    return mark->entity()->componentsOfType<Qt3DCore::QTransform>().first()->matrix() * point;
}

/** Materials are lent by stand-ins, which draw by the effect of the one they stand for. */
bool drawnWith(const JointMark* mark, const Qt3DRender::QMaterial* material)
{
    const auto shown = mark->entity()->componentsOfType<Qt3DRender::QMaterial>();
    return shown.size() == 1 && shown.first()->effect() == material->effect();
}

} // namespace

/** The stub and the sphere at a joint. */
class tst_Connection : public QObject {
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<ObservationScene>(); }
    void cleanup()
    {
        GlobalNav::instance()->setConnectionMode(false);
        m_scene.reset();
    }

    void theRecordsDiameterSizesStubAndSphere()
    {
        auto* const found = joint({{"OBS_Q1_Value", 150.0}});
        QCOMPARE(found->getConnection()->radius(), 0.065F);
        QCOMPARE(found->getConnectionPoint()->radius(), 0.0754F);
        QCOMPARE(found->getConnection()->visualLength(), 0.3F);
        auto* const thin = joint({{"OBS_Q1_Value", 50.0}});
        QCOMPARE(thin->getConnection()->radius(), 0.04F);
        QCOMPARE(thin->getConnectionPoint()->radius(), 0.0464F);
    }

    void theyPointAsTheRecordSays()
    {
        auto* const found = joint({{"OBS_ClockPos1", 3}, {"OBS_JointAngle", -90.0}});
        const auto way = [](const JointMark& mark) { return mark.orientation().rotatedVector({0, 0, 1}); };
        QVERIFY(ObservationScene::near(way(*found->getConnection()), {-1, 0, 0}));
        QVERIFY(ObservationScene::near(way(*found->getConnectionPoint()), {-1, 0, 0}));
        QVERIFY(ObservationScene::near(found->transformMatrix().mapVector({0, 0, 1}), {-1, 0, 0}));
        QVERIFY(ObservationScene::near(found->transformMatrix().column(3).toVector3D(), {0, 0, 5}));
        // In the direction of the pipe there.
        Section* const east = m_scene->pipe({{0, 0, 0}, {10, 0, 0}});
        auto* const other =
            qobject_cast<ObservationConnection*>(m_scene->observation(east, "BCA", 5.0, {{"OBS_ClockPos1", 3}}));
        QVERIFY(ObservationScene::near(way(*other->getConnection()), {0, 0, 1}));
    }

    void theyAreCalledConnections()
    {
        auto* const found = joint();
        QCOMPARE(found->getConnection()->renderableType(), QString("connection"));
        QCOMPARE(found->getConnectionPoint()->renderableType(), QString("connection"));
        const QString guid = found->getConnectionPoint()->guid();
        QVERIFY(guid.startsWith("connection_rnd_"));
        QCOMPARE(found->getConnectionPoint()->guid(), guid);
        QVERIFY(!found->getConnection()->guid().startsWith("connection_"));
        QCOMPARE(found->getConnectionPoint()->connectionPoint(nullptr), found->position());
        QCOMPARE(found->getConnection()->parentEntity(), found);
    }

    void theSphereIsSelectedByItsGuid()
    {
        Section* const lateral = m_scene->registered(m_scene->lateral(nullptr, nullptr, 2));
        auto* const found = joint({{"OBS_LateralSection_REF", lateral->getProps()->sectionId()}});
        SceneEntities::instance().getLateralConnections().insert(lateral->getProps()->sectionId(), found);
        const auto sphere = found->getConnectionPoint();
        QCOMPARE(m_scene->root->renderableByDomainGuid(sphere->guid()), sphere.data());
        QCOMPARE(m_scene->root->renderableByDomainGuid("connection_other"), nullptr);
    }

    void aHiddenStubLosesItsMeshAlone()
    {
        auto* const found = joint();
        found->hideConnection();
        found->hideConnection();
        QVERIFY(!found->getConnection()->isVisible() && !hasMesh(found->getConnection().data()));
        QVERIFY(hasMesh(found->getConnectionPoint().data()));
        found->showConnection();
        QVERIFY(found->getConnection()->isVisible() && hasMesh(found->getConnection().data()));
    }

    void showingAStubTwiceDrawsItOnce()
    {
        auto* const found = joint();
        found->showConnection();
        found->showConnection();
        QCOMPARE(meshes(found->getConnection().data()), 1);
        found->hideConnection();
        found->showConnection();
        found->showConnection();
        QCOMPARE(meshes(found->getConnection().data()), 1);
        const auto sphere = found->getConnectionPoint();
        sphere->setVisible(false);
        QVERIFY(!sphere->isVisible() && meshes(sphere.data()) == 0);
        sphere->setVisible(true);
        QVERIFY(sphere->isVisible() && meshes(sphere.data()) == 1);
    }

    void theStubBeginsOnThePipesAxis()
    {
        auto* const found = joint({{"OBS_Q1_Value", 150.0}});
        const auto* const stub = found->getConnection().data();
        VERIFY_NEAR(drawn(stub, {0, -0.5F, 0}), QVector3D(0, 0, 0));
        VERIFY_NEAR(drawn(stub, {0, 0.5F, 0}), QVector3D(0, 0, 0.3F));
        VERIFY_NEAR(drawn(stub, {1, 0, 0}), QVector3D(0.065F, 0, 0.15F));
        // A longer one grows to both sides.
        found->getConnection()->setVisualLength(0.6F);
        VERIFY_NEAR(drawn(stub, {0, -0.5F, 0}), QVector3D(0, 0, -0.15F));
        VERIFY_NEAR(drawn(stub, {0, 0.5F, 0}), QVector3D(0, 0, 0.45F));
    }

    void theSphereIsInTheMiddleOfTheStub()
    {
        const auto sphere = joint({{"OBS_Q1_Value", 150.0}})->getConnectionPoint();
        VERIFY_NEAR(drawn(sphere.data(), {0, 0, 0}), QVector3D(0, 0, 0.15F));
        VERIFY_NEAR(drawn(sphere.data(), {1, 0, 0}), QVector3D(0.0754F, 0, 0.15F));
        VERIFY_NEAR(drawn(sphere.data(), {0, 1, 0}), QVector3D(0, 0, 0.15F + 0.0754F));
    }

    void lengthsAndDiametersOfTheWholePipe()
    {
        auto* const found = joint();
        found->getConnection()->onPipeDiameterChanged(0.5F);
        QCOMPARE(found->getConnection()->visualLength(), 0.6F);
        found->getConnectionPoint()->onPipeDiameterChanged(150.0F);
        QCOMPARE(found->getConnectionPoint()->radius(), 0.0754F);
        found->getConnectionPoint()->setVisualLength(0.5F);
        QCOMPARE(found->getConnectionPoint()->radius(), 0.58F);
        QCOMPARE(found->getConnectionPoint()->savedRadius(), 0.58F);
        QCOMPARE(found->getConnection()->scaleRadius(150.0F), 0.065F);
        QCOMPARE(found->getConnectionPoint()->scaleRadius(1.0F), 1.16F);
    }

    void connectionModeSwellsTheSphereInASecond()
    {
        const auto sphere = joint({{"OBS_Q1_Value", 150.0}})->getConnectionPoint();
        QElapsedTimer timer;
        timer.start();
        GlobalNav::instance()->setConnectionMode(true);
        QTRY_COMPARE_WITH_TIMEOUT(sphere->radius(), 0.0754F * 1.5F, 3000);
        QVERIFY(timer.elapsed() > 800);
        GlobalNav::instance()->setConnectionMode(false);
        QTRY_COMPARE_WITH_TIMEOUT(sphere->radius(), 0.0754F, 500);
        QCOMPARE(materials(sphere.data()), 1);
    }

    void aSecondSwellStartsFromTheEnlargedRadius()
    {
        const auto sphere = joint({{"OBS_Q1_Value", 150.0}})->getConnectionPoint();
        sphere->handleConnectionMode(true);
        QTRY_COMPARE_WITH_TIMEOUT(sphere->radius(), 0.0754F * 1.5F, 3000);
        QCOMPARE(sphere->savedRadius(), 0.0754F);
        sphere->handleConnectionMode(true);
        QCOMPARE(sphere->savedRadius(), 0.0754F * 1.5F);
    }

    void theModesEndDuringTheSwellLeavesTheSphereAsItWas()
    {
        const auto sphere = joint({{"OBS_Q1_Value", 150.0}})->getConnectionPoint();
        GlobalNav::instance()->setConnectionMode(true);
        // It starts from what it was.
        QVERIFY(sphere->radius() < 0.0754F * 1.1F);
        QTRY_VERIFY_WITH_TIMEOUT(sphere->radius() > 0.0754F * 1.1F, 3000);
        GlobalNav::instance()->setConnectionMode(false);
        QTest::qWait(1500);
        QCOMPARE(sphere->radius(), 0.0754F);
        QCOMPARE(sphere->savedRadius(), 0.0754F);
    }

    void theirMaterialsTellWhatIsGoingOn()
    {
        auto* const found = joint();
        const auto* const root = m_scene->root.get();
        QVERIFY(drawnWith(found->getConnection().data(), root->materialConnection()));
        const auto sphere = found->getConnectionPoint();
        QVERIFY(drawnWith(sphere.data(), root->materialConnection()));
        sphere->setSelectedMaterial();
        QVERIFY(drawnWith(sphere.data(), root->materialSelected()));
        GlobalNav::instance()->setConnectionMode(true);
        QVERIFY(drawnWith(sphere.data(), root->materialNode()));
        sphere->setSelectedMaterial();
        QVERIFY(drawnWith(sphere.data(), root->materialSelected()));
        GlobalNav::instance()->setConnectionMode(false);
        QVERIFY(drawnWith(sphere.data(), root->materialPipe()));
        QVERIFY(drawnWith(found->getConnection().data(), root->materialConnection()));
    }

    void aSelectedSphereShowsIt()
    {
        const auto sphere = joint()->getConnectionPoint();
        sphere->setAsSelected();
        QVERIFY(drawnWith(sphere.data(), m_scene->root->materialSelected()));
        sphere->setAsDeselected();
        QVERIFY(drawnWith(sphere.data(), m_scene->root->materialPipe()));
    }

    void withoutARootItHasNoMaterial()
    {
        Section* const pipe = m_scene->pipe();
        pipe->setParent(static_cast<Qt3DCore::QNode*>(nullptr));
        auto* const found = m_scene->observation(pipe, "BCA", 5.0);
        const auto* const joint = qobject_cast<ObservationConnection*>(found);
        QVERIFY(hasMesh(joint->getConnection().data()));
        QCOMPARE(materials(joint->getConnection().data()), 0);
        delete found;
        delete pipe;
    }

private:
    ObservationConnection* joint(const QVariantMap& values = {})
    {
        return qobject_cast<ObservationConnection*>(m_scene->observation(m_scene->pipe(), "BCA", 5.0, values));
    }

    std::unique_ptr<ObservationScene> m_scene;
};

QTEST_MAIN(tst_Connection)
#include "tst_Connection.moc"
