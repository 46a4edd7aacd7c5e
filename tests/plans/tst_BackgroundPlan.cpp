#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "plans/PaperPlan.h"
#include "plans/PlanSettingsIO.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::TestProject;

namespace {

/** Single precision over scenes of a few hundred metres. */
constexpr float tolerance = 1e-3F;

bool near(const QVector3D& a, const QVector3D& b)
{
    return (a - b).length() < tolerance;
}

} // namespace

/** What all kinds of plans share: the place in the scene and the lock to the camera. */
class tst_BackgroundPlan : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = std::make_unique<SceneRoot>();
        m_camera = std::make_unique<Qt3DRender::QCamera>();
        m_camera->setPosition({0.0F, 100.0F, -100.0F});
        m_camera->setViewCenter({0.0F, 0.0F, 0.0F});
        m_root->setCamera(m_camera.get());
        m_plan = new PaperPlan(m_root.get(), {50.0F, 0.0F, -25.0F});
        m_plan->setPosition({10.0F, -3.0F, 20.0F}, 0);
    }

    void cleanup()
    {
        m_root->setCamera(nullptr);
        m_root.reset();
        m_camera.reset();
    }

    void aNewPlanHasNoPathAndNoLock()
    {
        QCOMPARE(m_plan->fullPath(), QString());
        QCOMPARE(m_plan->property("planFullPath"), QVariant(QString()));
        QCOMPARE(m_plan->fileName(), QString());
        QVERIFY(!m_plan->isLocked());
        QVERIFY(m_plan->isReady());
        QCOMPARE(m_plan->parentNode(), static_cast<Qt3DCore::QNode*>(m_root.get()));
    }

    void theFileNameIsTheLastPartOfThePath()
    {
        m_plan->setFullPath(QStringLiteral("/media/stick/site plan.v2.png"));

        QCOMPARE(m_plan->fullPath(), QStringLiteral("/media/stick/site plan.v2.png"));
        QCOMPARE(m_plan->fileName(), QStringLiteral("site plan.v2.png"));
    }

    void theLockIsToldOnceForEachChange()
    {
        QSignalSpy told(m_plan, &IBackgroundPlan::layerLockChanged);

        m_plan->setLock(false);
        m_plan->setLock(true);
        m_plan->setLock(true);
        m_plan->setLock(false);

        QCOMPARE(told, (QList<QVariantList> {{true}, {false}}));
    }

    void aLockedPlanGoesWithTheCameraOverTheGround()
    {
        m_plan->setLock(true);

        m_camera->translateWorld({30.0F, 12.0F, -8.0F});

        QVERIFY(near(m_plan->position(), {40.0F, -3.0F, 12.0F}));
    }

    void aLockedPlanKeepsItsTurnAndScale()
    {
        m_plan->setPosRotScaleFromPlanSettings({5.0F, -3.0F, 5.0F}, {0.0F, 30.0F, 0.0F}, {2.0F, 1.0F, 2.0F});
        m_plan->setLock(true);

        m_camera->panAboutViewCenter(40.0F, {0.0F, 1.0F, 0.0F});

        QVERIFY(qAbs(m_plan->transform()->rotationY() - 30.0F) < tolerance);
        QVERIFY(near(m_plan->transform()->scale3D(), {2.0F, 1.0F, 2.0F}));
    }

    void aPlanThatIsLetGoStaysWhereTheCameraHasTakenIt()
    {
        m_plan->setLock(true);
        m_camera->translateWorld({30.0F, 0.0F, 0.0F});

        m_plan->setLock(false);
        m_camera->translateWorld({500.0F, 0.0F, 0.0F});

        QVERIFY(near(m_plan->position(), {40.0F, -3.0F, 20.0F}));
    }

    void lettingAPlanGoPutsItOnceMoreWhereTheCameraHasIt()
    {
        m_plan->setLock(true);
        m_plan->setPosition({-60.0F, -3.0F, 0.0F}, 0);

        m_plan->setLock(false);

        QVERIFY(near(m_plan->position(), {10.0F, -3.0F, 20.0F}));
    }

    void anElevationWhileLockedIsKept()
    {
        m_plan->setLock(true);

        m_plan->setElevation(-7.5F);
        m_camera->translateWorld({1.0F, 60.0F, 0.0F});

        QVERIFY(near(m_plan->position(), {11.0F, -7.5F, 20.0F}));
    }

    void aPlanFollowsAfterItsPlaceInTheCameraWasSavedAnew()
    {
        m_plan->setLock(true);
        m_plan->setPosition({-60.0F, -3.0F, 0.0F}, 0);
        m_plan->savePlanTransformationInCamera();

        m_camera->translateWorld({5.0F, 0.0F, 0.0F});

        QVERIFY(near(m_plan->position(), {-55.0F, -3.0F, 0.0F}));
    }

    void withoutACameraTheLockChangesNothingButItself()
    {
        m_root->setCamera(nullptr);
        const QMatrix4x4 before = m_plan->transformMatrix();

        m_plan->setLock(true);
        m_plan->planTransformUpdate();
        m_plan->setLock(false);

        QCOMPARE(m_plan->transformMatrix(), before);
    }

    void aCameraThatGoesLeavesALockedPlan()
    {
        m_plan->setLock(true);
        m_root->setCamera(nullptr);
        m_camera.reset();

        m_plan->setLock(false);

        QVERIFY(near(m_plan->position(), {10.0F, -3.0F, 20.0F}));
    }

    void storedValuesPutTheAnchorCornerAtItsPlace_data()
    {
        QTest::addColumn<float>("angle");
        QTest::addColumn<QVector3D>("scale");
        QTest::newRow("as drawn") << 0.0F << QVector3D(1.0F, 1.0F, 1.0F);
        QTest::newRow("scaled") << 0.0F << QVector3D(3.0F, 1.0F, 3.0F);
        QTest::newRow("turned") << 90.0F << QVector3D(1.0F, 1.0F, 1.0F);
        QTest::newRow("turned and scaled") << -33.5F << QVector3D(0.25F, 1.0F, 0.25F);
    }

    void storedValuesPutTheAnchorCornerAtItsPlace()
    {
        QFETCH(float, angle);
        QFETCH(QVector3D, scale);
        const QVector3D anchor = m_plan->getAdditionalTranslationCorrect();
        const QVector3D place(200.0F, -4.0F, 70.0F);

        m_plan->setPosRotScaleFromPlanSettings(place, {12.0F, angle, 60.0F}, scale);

        QVERIFY(near(m_plan->transformMatrix().map(anchor), place));
        const QQuaternion turn = QQuaternion::fromAxisAndAngle(0.0F, 1.0F, 0.0F, angle);
        QVERIFY(near(m_plan->position(), place - turn.rotatedVector(scale * anchor)));
        QVERIFY(
            near(m_plan->transformMatrix().mapVector({1.0F, 0.0F, 0.0F}), turn.rotatedVector({scale.x(), 0.0F, 0.0F})));
    }

    void theSourceOfThePlaceIsLeftAsItIs()
    {
        m_plan->setTransformFlags(TransformFlags::Manual);

        m_plan->setElevation(1.0F);
        m_plan->setPosRotScaleFromPlanSettings({}, {}, {1.0F, 1.0F, 1.0F});
        m_plan->setLock(true);
        m_camera->translateWorld({1.0F, 0.0F, 0.0F});

        QCOMPARE(m_plan->transformFlags(), int(TransformFlags::Manual));
    }

    void whatIsSavedIsReadBackToTheSamePlace()
    {
        const TestProject project;
        GdalGeoProjector::instance()->deinit();
        m_plan->setFullPath(project.project()->projectPath() + QStringLiteral("Documentation/plan.png"));
        m_plan->setPosRotScaleFromPlanSettings({120.5F, -2.0F, -33.25F}, {0.0F, 41.0F, 0.0F}, {1.5F, 1.0F, 2.5F});
        const QMatrix4x4 saved = m_plan->transformMatrix();

        QVERIFY(m_plan->savePlanFile(project.project()->projectPath()));
        PlanSettingsIO io;
        io.tryToLoadPlanSettings(project.project()->projectPath());
        const PlanSettings settings = io.getPlanSettings();
        m_plan->setPosRotScaleFromPlanSettings(settings.translation, settings.rotation, settings.scale);

        for (int i = 0; i < 16; ++i)
            QVERIFY(qAbs(m_plan->transformMatrix().constData()[i] - saved.constData()[i]) < tolerance);
        QVERIFY(settings.planPath.endsWith(QStringLiteral("/plan.png")));
    }

    void qmlCanDestroyAPlanAndReadASize()
    {
        SceneRoot::registerMetaTypes();
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.0\nQtObject {\n"
                          "function say(info) { return info.currentWidth + ' of ' + info.maxWidth }\n"
                          "function end(plan) { plan.destroyLater() } }",
                          {});
        const std::unique_ptr<QObject> qml(component.create());
        QVERIFY2(qml, qPrintable(component.errorString()));
        SizeInfo info;
        info.currentWidth = 5000;
        info.maxWidth = 4048;
        QVariant said;
        const QPointer<IBackgroundPlan> plan = m_plan;
        QQmlEngine::setObjectOwnership(m_plan, QQmlEngine::CppOwnership);

        QMetaObject::invokeMethod(qml.get(), "say", Q_RETURN_ARG(QVariant, said),
                                  Q_ARG(QVariant, QVariant::fromValue(info)));
        QMetaObject::invokeMethod(qml.get(), "end", Q_ARG(QVariant, QVariant::fromValue<IBackgroundPlan*>(m_plan)));
        QVERIFY(plan);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        QCOMPARE(said.toString(), QStringLiteral("5000 of 4048"));
        QVERIFY(!plan);
    }

    void theTypesBearTheNamesThatQmlAsksFor()
    {
        SceneRoot::registerMetaTypes();

        QVERIFY(QMetaType::type("SizeInfo") != QMetaType::UnknownType);
        QCOMPARE(QMetaType::type("Torvik::View3d::SizeInfo"), qMetaTypeId<SizeInfo>());
        QCOMPARE(qobject_interface_iid<IBackgroundPlan*>(), "at.torvik.view3d.IIBackgroundPlan/1.0");
    }

private:
    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<Qt3DRender::QCamera> m_camera;
    PaperPlan* m_plan = nullptr;
};

QTEST_MAIN(tst_BackgroundPlan)
#include "tst_BackgroundPlan.moc"
