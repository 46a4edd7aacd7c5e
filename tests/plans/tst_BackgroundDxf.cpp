#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "host_drawing/DxfText.h"
#include "plans/BackgroundDxf.h"
#include "scene/SceneRoot.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

const QByteArray wideLine = Dxf::drawing(Dxf::line(1, 0, 0, 10, 0));

/** Where a place of the drawing, in its own axes, lies in the scene. */
QVector3D inScene(BackgroundDxf* plan, const QVector3D& drawn)
{
    auto* const drawing = plan->findChild<Qt3DCore::QEntity*>(QStringLiteral("Drawing"));
    const auto transforms = drawing->componentsOfType<Qt3DCore::QTransform>();
    return plan->transform()->matrix() * (transforms.first()->matrix() * drawn);
}

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

    void aCroppedDrawingLiesUnderTheViewsCentre()
    {
        BackgroundDxf* const plan = loaded(Dxf::drawing(Dxf::line(1, 500000, 5600000, 500010, 5600020)));

        // Single precision holds a place of a whole country to half a metre, the same one for the whole drawing.
        QVERIFY((inScene(plan, {0, 0, 0}) - QVector3D(30.0F, 2.0F, 40.0F)).length() < 1.0F);
        const QVector3D side = inScene(plan, {10, 0, 0}) - inScene(plan, {0, 0, 0});
        QVERIFY((side - QVector3D(10.0F, 0.0F, 0.0F)).length() < 0.01F);
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
        QVERIFY(log.lines().isEmpty());
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
