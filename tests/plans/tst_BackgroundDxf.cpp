#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "host_drawing/DxfText.h"
#include "plans/BackgroundController.h"
#include "plans/BackgroundDxf.h"
#include "plans/BackgroundLoader.h"
#include "plans/FloorNav.h"
#include "plans/PlanSettingsIO.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <functional>
#include <memory>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

const QByteArray wideLine = Dxf::drawing(Dxf::line(1, 0, 0, 10, 0));

/** Of a country: 500 km east, 5600 km north. */
const QByteArray farLine = Dxf::drawing(Dxf::line(1, 500000, 5600000, 500010, 5600020));

/** Where a place of the drawing, in its own axes, is drawn: through the components of the entities, as the renderer
 *  multiplies them. */
QVector3D inScene(BackgroundDxf* plan, const QVector3D& drawn)
{
    QMatrix4x4 world;
    const Qt3DCore::QEntity* entity = plan->findChild<Qt3DCore::QEntity*>(QStringLiteral("Drawing"));
    for (; entity; entity = entity->parentEntity()) {
        const auto transforms = entity->componentsOfType<Qt3DCore::QTransform>();
        if (transforms.size() > 1)
            qFatal("two transforms at one entity");
        if (!transforms.isEmpty())
            world = transforms.first()->matrix() * world;
    }
    return world * drawn;
}

/** Sees a drawing's tree come into being, and the call by which a plan is told of it. */
class Doorkeeper : public QObject {
public:
    explicit Doorkeeper(BackgroundDxf* plan)
        : m_plan(plan)
    {
        qApp->installEventFilter(this);
    }

    QPointer<QObject> tree;
    bool told = false;
    std::function<bool()> atTheDoor = [] { return false; };

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::DynamicPropertyChange &&
            static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName() == "dxfCropOffset")
            tree = watched;
        if (watched != m_plan || event->type() != QEvent::MetaCall)
            return false;
        told = true;
        return atTheDoor();
    }

private:
    BackgroundDxf* m_plan;
};

} // namespace

/** A drawing as a plan: its thread, its place, and how loading ends. */
class tst_BackgroundDxf : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = std::make_unique<SceneRoot>();
        m_camera = std::make_unique<Qt3DRender::QCamera>();
        m_camera->setPosition({30.0F, 100.0F, -60.0F});
        m_camera->setViewCenter({30.0F, 2.0F, 40.0F});
        m_root->setCamera(m_camera.get());
    }

    void cleanup()
    {
        m_root->setCamera(nullptr);
        m_root.reset();
        m_camera.reset();
        GdalGeoProjector::instance()->deinit();
    }

    void aNewPlanIsNotReady()
    {
        auto* const plan = new BackgroundDxf(QStringLiteral("/a.dxf"), m_root.get());

        QCOMPARE(plan->renderableType(), QStringLiteral("dxfbackground"));
        QCOMPARE(plan->objectName(), QStringLiteral("Background Plan - Dxf"));
        QCOMPARE(plan->fullPath(), QString());
        QCOMPARE(plan->getAdditionalTranslationCorrect(), QVector3D());
        QVERIFY(!plan->isEnabled());
        QVERIFY(!plan->isReady());
    }

    void aDrawingWithoutACropLiesWithItsOriginUnderTheViewsCentre()
    {
        BackgroundDxf* const plan = loaded(wideLine);

        QVERIFY(plan->isReady());
        QVERIFY(plan->isEnabled());
        QCOMPARE(plan->fileName(), QStringLiteral("plan.dxf"));
        QCOMPARE(inScene(plan, {0, 0, 0}), QVector3D(30.0F, 2.0F, 40.0F));
        QCOMPARE(inScene(plan, {-10, 0, 0}), QVector3D(20.0F, 2.0F, 40.0F));
    }

    void aFarDrawingLiesUnderTheViewsCentre()
    {
        BackgroundDxf* const plan = loaded(farLine);

        QVERIFY((inScene(plan, {0, 0, 0}) - QVector3D(30.0F, 2.0F, 40.0F)).length() < 1e-3F);
        const QVector3D side = inScene(plan, {10, 0, 0}) - inScene(plan, {0, 0, 0});
        QVERIFY((side - QVector3D(10.0F, 0.0F, 0.0F)).length() < 1e-3F);
    }

    void theTransformOfAFarDrawingTellsWhereItsOriginLies()
    {
        GdalGeoProjector::instance()->initFromMap(60.0, 10.0, 0.0);
        const float scale = float(GdalGeoProjector::instance()->scale());

        BackgroundDxf* const plan = loaded(farLine);

        const auto* const drawing = plan->findChild<Qt3DCore::QEntity*>(QStringLiteral("Drawing"));
        const auto crop = drawing->property("dxfCropOffset").value<QVector3D>();
        QVERIFY((crop - QVector3D(-500005.0F, 0.0F, 5600010.0F)).length() < 20.0F);
        const QVector3D expected(30.0F - crop.x() * scale, 2.0F, 40.0F - crop.z() * scale);
        // A float steps by a metre there.
        QVERIFY((plan->position() - expected).length() < 1.5F);
        QCOMPARE(plan->transformMatrix(), plan->transform()->matrix());
        const QVector3D side = inScene(plan, {10, 4, 0}) - inScene(plan, {0, 0, 0});
        QVERIFY((side - QVector3D(10.0F * scale, 4.0F, 0.0F)).length() < 1e-3F);
    }

    void aLockedFarDrawingStaysPutOnTheScreen_data()
    {
        QTest::addColumn<QVector3D>("step");
        QTest::addColumn<float>("turnDeg");
        QTest::newRow("panned") << QVector3D(0.1F, 0, 0.07F) << 0.0F;
        QTest::newRow("panned in a turned view") << QVector3D(-0.1F, 0, 0.03F) << 30.0F;
        QTest::newRow("panned in another turned view") << QVector3D(0.05F, 0, 0.1F) << 173.0F;
    }

    void aLockedFarDrawingStaysPutOnTheScreen()
    {
        QFETCH(QVector3D, step);
        QFETCH(float, turnDeg);
        BackgroundDxf* const plan = loaded(farLine);
        m_camera->rotateAboutViewCenter(QQuaternion::fromAxisAndAngle(0, 1, 0, turnDeg));
        plan->setLock(true);
        const QVector3D before = inScene(plan, {0, 0, 0});

        float worst = 0.0F;
        for (int i = 1; i <= 200; ++i) {
            m_camera->translateWorld(i <= 100 ? step : -step);
            const QVector3D way = step * float(i <= 100 ? i : 200 - i);
            worst = std::max(worst, (inScene(plan, {0, 0, 0}) - before - way).length());
        }

        QVERIFY2(worst < 0.01F, qPrintable(QString::number(double(worst))));
    }

    void aLockedFarDrawingComesBackWithTheTurnedView()
    {
        BackgroundDxf* const plan = loaded(farLine);
        plan->setLock(true);
        const QVector3D before = inScene(plan, {3, 0, 5});

        float worst = 0.0F;
        for (int i = 1; i <= 200; ++i) {
            m_camera->rotateAboutViewCenter(QQuaternion::fromAxisAndAngle(0, 1, 0, i <= 100 ? 0.9F : -0.9F));
            // It lies under the centre that the view turns about.
            worst = std::max(worst, (inScene(plan, {0, 0, 0}) - m_camera->viewCenter()).length());
        }

        QVERIFY2(worst < 0.01F, qPrintable(QString::number(double(worst))));
        QVERIFY((inScene(plan, {3, 0, 5}) - before).length() < 0.01F);
    }

    void aFarDrawingIsAlignedToTheCentimetre_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("two lines") << 0;
        QTest::newRow("turned onto a line") << 1;
        QTest::newRow("a line and its length") << 2;
        QTest::newRow("north") << 3;
    }

    void aFarDrawingIsAlignedToTheCentimetre()
    {
        QFETCH(int, way);
        BackgroundDxf* const plan = loaded(farLine);
        BackgroundController controller;
        controller.setTargetPlan(plan);
        const QVector3D p1(2, 0, 3);
        const QVector3D p2(6, 0, 6);
        const QVector3D a1 = inScene(plan, p1);
        const QVector3D a2 = inScene(plan, p2);
        QVector3D b1(-70.0F, 2.0F, 12.0F);
        QVector3D b2(-78.0F, 2.0F, 18.0F);
        if (way == 0) {
            controller.scalePlanFile(a1, a2, b1, b2);
        } else if (way == 1) {
            controller.rotatePlanFile(a1, a2, b1, b2);
            b2 = b1 + (b2 - b1) / 2.0F;
        } else if (way == 2) {
            controller.setPlanScaleWithSectionAndValue(a1, a2, {30, 0, 0}, {});
            b1 = a1;
            b2 = a1 + (a2 - a1) * 6.0F;
        } else {
            controller.setPlanNorthDirection(a1, a2, {}, {});
            b1 = a1;
            b2 = a1 + QVector3D(0, 0, 5);
        }

        const auto over = [](QVector3D a, QVector3D b) { return std::hypot(a.x() - b.x(), a.z() - b.z()) < 0.01F; };
        QVERIFY(over(inScene(plan, p1), b1));
        QVERIFY(over(inScene(plan, p2), b2));
    }

    void aFarDrawingThatIsTurnedLiesThereAgainWhenItIsOpened()
    {
        QTemporaryDir folder;
        const QString project = folder.path() + '/';
        QVERIFY(QDir().mkpath(project + Torvik::Base::CFileSystemNames::graphics3DPathPart()));
        BackgroundDxf* const plan = loaded(farLine);
        BackgroundController controller;
        controller.setTargetPlan(plan);
        controller.scalePlanFile({30, 2, 40}, {40, 2, 40}, {17.3F, 2, 11.9F}, {-11, 2, 33.7F});
        const QVector3D here = inScene(plan, {4, 0, 7});
        QVERIFY(plan->savePlanFile(project));
        BackgroundDxf* const again = loaded(farLine);

        PlanSettingsIO io;
        io.tryToLoadPlanSettings(project);
        BackgroundLoader().applyTranslationFromPlanFile(again, io.getPlanSettings());
        const QVector3D there = inScene(again, {4, 0, 7});
        SceneEntities::instance().deleteBackgroundPlan();

        QVERIFY2(std::hypot(there.x() - here.x(), there.z() - here.z()) < 0.01F,
                 qPrintable(QString::number(double((there - here).length()))));
    }

    void aFarDrawingIsToldByTheSmallestMove()
    {
        BackgroundDxf* const plan = loaded(farLine);
        const QSignalSpy moved(plan, &Renderable::transformChanged);
        QSignalSpy rested(plan, &Renderable::editingFinished);
        const QVector3D before = inScene(plan, {0, 0, 0});

        plan->move({0.05F, 0.0F, 0.0F}, TransformFlags::GPS);

        QVERIFY(!moved.isEmpty());
        QCOMPARE(plan->transformFlags(), int(TransformFlags::GPS));
        QVERIFY((inScene(plan, {0, 0, 0}) - before - QVector3D(0.05F, 0, 0)).length() < 1e-3F);
        QVERIFY(rested.wait(3000));
    }

    void aFarDrawingFollowsItsTransform()
    {
        BackgroundDxf* const plan = loaded(farLine);
        const QVector3D before = inScene(plan, {0, 0, 0});

        plan->setPosition(plan->position() + QVector3D(64.0F, 0.0F, -32.0F), TransformFlags::CAD);

        // As far as a float tells it.
        QVERIFY((inScene(plan, {0, 0, 0}) - before - QVector3D(64.0F, 0, -32.0F)).length() < 0.5F);
        QCOMPARE(plan->transformFlags(), int(TransformFlags::CAD));
    }

    void aFarDrawingOnAFloorIsLiftedAndShiftedExactly()
    {
        BackgroundDxf* const plan = loaded(farLine);
        auto& floors = FloorNav::instance();
        floors.setFloorPlan(1, plan);
        const QVector3D before = inScene(plan, {0, 0, 0});

        floors.setFloorValues({0.5, 3.25});
        floors.resetPosition({0.05F, 0.0F, -0.1F});
        const QVector3D after = inScene(plan, {0, 0, 0});
        floors.setFloorPlan(1, nullptr);

        QVERIFY((after - QVector3D(before.x() - 0.05F, 3.75F, before.z() + 0.1F)).length() < 1e-3F);
    }

    void theProjectorsScaleStretchesWidthAndNotHeight()
    {
        GdalGeoProjector::instance()->initFromMap(60.0, 10.0, 0.0);
        const float scale = float(GdalGeoProjector::instance()->scale());
        QVERIFY(std::abs(scale - 1.0F) > 0.1F);

        BackgroundDxf* const plan = loaded(wideLine);

        const QVector3D size = inScene(plan, {-10, 5, 0}) - inScene(plan, {0, 0, 0});
        QVERIFY((size - QVector3D(-10.0F * scale, 5.0F, 0.0F)).length() < 1e-3F);
    }

    void aDrawingThatCannotBeReadIsCorrupted()
    {
        const LogCapture log;
        const QString path = written(m_folder, "bad.dwg", "AC1032 and no more");
        auto* const plan = new BackgroundDxf(path, m_root.get());
        const QSignalSpy finished(plan, &IBackgroundPlan::backgroundLoadingFinished);
        const QSignalSpy cancelled(plan, &IBackgroundPlan::backgroundLoadingWasCancelled);
        QSignalSpy corrupted(plan, &IBackgroundPlan::fileCorrupted);

        plan->load();
        QVERIFY(corrupted.wait(10000));

        QCOMPARE(corrupted[0][0].value<Torvik::Base::CErrorCode>().code(), 0x150101U);
        QCOMPARE(log.count(1, "Torvik::DXF_3d", "Failed to load image from path: " + path), 1);
        QCOMPARE(finished.size() + cancelled.size(), 0);
        QVERIFY(!plan->isReady());
        QCOMPARE(plan->fullPath(), QString());
    }

    void aCancellationIsNoCorruption()
    {
        const LogCapture log;
        auto* const plan = new BackgroundDxf(written(m_folder, "plan.dxf", wideLine), m_root.get());
        const QSignalSpy corrupted(plan, &IBackgroundPlan::fileCorrupted);
        const QSignalSpy finished(plan, &IBackgroundPlan::backgroundLoadingFinished);
        QSignalSpy cancelled(plan, &IBackgroundPlan::backgroundLoadingWasCancelled);

        plan->load();
        plan->cancelFileLoading();
        QVERIFY(cancelled.wait(1000));
        QTest::qWait(50);

        QCOMPARE(cancelled.size(), 1);
        QCOMPARE(corrupted.size() + finished.size(), 0);
        // The reader may have counted a drawing so small before it hears of the cancellation.
        for (const auto& line : log.lines())
            QVERIFY2(line.level > int(Torvik::Logging::LogWarning), qPrintable(line.message));
    }

    void aDrawingThatArrivesTooLateForItsPlanGoesWithIt()
    {
        auto* const plan = new BackgroundDxf(written(m_folder, "plan.dxf", farLine), m_root.get());
        Doorkeeper door(plan);
        door.atTheDoor = [] { return true; };
        plan->load();
        QTRY_VERIFY(door.told);
        QVERIFY(door.tree);

        delete plan;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        QVERIFY(!door.tree);
    }

    void aCancellationCountsWhenTheReaderHasAlreadyEnded_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("well") << farLine;
        QTest::newRow("badly") << QByteArray("no drawing");
    }

    void aCancellationCountsWhenTheReaderHasAlreadyEnded()
    {
        QFETCH(QByteArray, text);
        auto* const plan = new BackgroundDxf(written(m_folder, "plan.dxf", text), m_root.get());
        const QSignalSpy corrupted(plan, &IBackgroundPlan::fileCorrupted);
        const QSignalSpy finished(plan, &IBackgroundPlan::backgroundLoadingFinished);
        const QSignalSpy cancelled(plan, &IBackgroundPlan::backgroundLoadingWasCancelled);
        Doorkeeper door(plan);
        door.atTheDoor = [plan] {
            plan->cancelFileLoading();
            return false;
        };

        plan->load();
        QTRY_COMPARE(cancelled.size(), 1);
        QTest::qWait(50);

        QCOMPARE(cancelled.size(), 1);
        QCOMPARE(corrupted.size() + finished.size(), 0);
        QVERIFY(!plan->isReady());
        QVERIFY(!door.tree);
    }

    void loadingAgainTakesTheDrawingsPlace()
    {
        BackgroundDxf* const plan = loaded(wideLine);
        const QPointer<Qt3DCore::QEntity> first = plan->findChild<Qt3DCore::QEntity*>(QStringLiteral("Drawing"));
        QSignalSpy finished(plan, &IBackgroundPlan::backgroundLoadingFinished);

        plan->loadFile(written(m_folder, "far.dxf", farLine));
        QVERIFY(finished.wait(10000));
        QVERIFY(!first);
        QVERIFY((inScene(plan, {0, 0, 0}) - QVector3D(30.0F, 2.0F, 40.0F)).length() < 1e-3F);
        plan->loadFile(written(m_folder, "wide.dxf", wideLine));
        QVERIFY(finished.wait(10000));

        QCOMPARE(plan->findChildren<Qt3DCore::QEntity*>(QStringLiteral("Drawing")).size(), 1);
        QCOMPARE(plan->fileName(), QStringLiteral("wide.dxf"));
        QVERIFY((inScene(plan, {0, 0, 0}) - QVector3D(30.0F, 2.0F, 40.0F)).length() < 1e-3F);
    }

    void aPlanIsPlacedAndRememberedWhenItIsTold()
    {
        auto* const plan = new BackgroundDxf(written(m_folder, "plan.dxf", wideLine), m_root.get());
        plan->setTransformFlags(TransformFlags::GIS);
        QVector3D place;
        QVector3D afterUpdate;
        bool whole = false;
        connect(plan, &IBackgroundPlan::backgroundLoadingFinished, this, [&] {
            whole = plan->isEnabled() && plan->fileName() == QLatin1String("plan.dxf");
            place = plan->position();
            plan->planTransformUpdate();
            afterUpdate = plan->position();
        });
        QSignalSpy finished(plan, &IBackgroundPlan::backgroundLoadingFinished);

        plan->load();
        QVERIFY(finished.wait(10000));

        QVERIFY(whole);
        QCOMPARE(place, QVector3D(30.0F, 2.0F, 40.0F));
        QVERIFY((afterUpdate - place).length() < 1e-3F);
        QCOMPARE(plan->transformFlags(), int(TransformFlags::GIS));
    }

    void theHeightOfADrawingIsSetAlone()
    {
        BackgroundDxf* const plan = loaded(wideLine);

        plan->setElevation(7.0F);

        QCOMPARE(plan->position(), QVector3D(30.0F, 7.0F, 40.0F));
    }

    void aDrawingsOwnSignalsStaySilent()
    {
        BackgroundDxf* const plan = new BackgroundDxf(written(m_folder, "plan.dxf", wideLine), m_root.get());
        const QSignalSpy progress(plan, &BackgroundDxf::progressChanged);
        const QSignalSpy lock(plan, &BackgroundDxf::layerLockChanged);
        const QSignalSpy operation(plan, &BackgroundDxf::operationFinished);
        const QSignalSpy baseLock(plan, &IBackgroundPlan::layerLockChanged);
        QSignalSpy finished(plan, &IBackgroundPlan::backgroundLoadingFinished);

        plan->load();
        QVERIFY(finished.wait(10000));
        plan->setLock(true);
        plan->setLock(false);

        QCOMPARE(progress.size() + lock.size() + operation.size(), 0);
        QCOMPARE(baseLock.size(), 2);
    }

    void aLockedDrawingForgetsAnAlignmentWhenTheCameraMoves()
    {
        BackgroundDxf* const plan = loaded(wideLine);
        BackgroundController controller;
        controller.setTargetPlan(plan);
        plan->setLock(true);
        const QVector3D before = plan->position();

        controller.rotatePlanFile({}, {1, 0, 0}, {50, 0, 0}, {51, 0, 0});
        QVERIFY((plan->position() - before - QVector3D(50, 0, 0)).length() < 1e-3F);
        m_camera->translateWorld({1, 0, 0});

        QVERIFY((plan->position() - before - QVector3D(1, 0, 0)).length() < 1e-3F);
    }

    void aPlanThatGoesWhileItLoadsEndsAtOnce()
    {
        QByteArray lines;
        for (int i = 1; i <= 60000; ++i)
            lines += Dxf::line(i, i, 0, i, 1);
        const QString path = written(m_folder, "large.dxf", Dxf::drawing(lines));
        for (const int afterMs : {0, 10, 50, 150}) {
            auto* const plan = new BackgroundDxf(path, m_root.get());
            plan->load();
            QTest::qWait(afterMs);
            QElapsedTimer time;
            time.start();
            delete plan;
            QVERIFY(time.elapsed() < 200);
        }
        QTest::qWait(50);
    }

    void theLockWorksThoughItIsNeverTold()
    {
        BackgroundDxf* const plan = loaded(wideLine);
        const QVector3D before = plan->transform()->translation();
        const QSignalSpy told(plan, &IBackgroundPlan::layerLockChanged);

        plan->setLock(true);
        m_camera->setPosition(m_camera->position() + QVector3D(7.0F, 0.0F, 3.0F));
        m_camera->setViewCenter(m_camera->viewCenter() + QVector3D(7.0F, 0.0F, 3.0F));

        QCOMPARE(told.size(), 1);
        QVERIFY(!plan->isLocked());
        QVERIFY((plan->transform()->translation() - before - QVector3D(7.0F, 0.0F, 3.0F)).length() < 1e-3F);
    }

    void theWholeDrawingCanFollowTheCamera()
    {
        BackgroundDxf* const plan = loaded(wideLine);
        const QMatrix4x4 seen = m_camera->transform()->matrix().inverted() * plan->transform()->matrix();

        plan->rayToDxfInCameraUpdate();
        m_camera->setPosition({-50.0F, 80.0F, 10.0F});
        plan->dxfTransformUpdate();

        const QMatrix4x4 now = m_camera->transform()->matrix().inverted() * plan->transform()->matrix();
        for (int i = 0; i < 16; ++i)
            QVERIFY(std::abs(now.constData()[i] - seen.constData()[i]) < 1e-3F);
    }

private:
    BackgroundDxf* loaded(const QByteArray& text)
    {
        auto* const plan = new BackgroundDxf(written(m_folder, "plan.dxf", text), m_root.get());
        QSignalSpy finished(plan, &IBackgroundPlan::backgroundLoadingFinished);
        plan->load();
        if (!finished.wait(10000))
            qFatal("the drawing did not arrive");
        return plan;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<Qt3DRender::QCamera> m_camera;
};

QTEST_MAIN(tst_BackgroundDxf)
#include "tst_BackgroundDxf.moc"
