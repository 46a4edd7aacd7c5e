#include "common/DeferredDeletes.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "network/LowestManholeTracker.h"
#include "network/Node.h"
#include "plans/PaperPlan.h"
#include "plans/PlanSettingsIO.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::deleteWhatIsToBeDeleted;
using Kx::Test::TestProject;
using Torvik::AppState;
using Torvik::Base::CFileSystemNames;

namespace {

SceneEntities& entities()
{
    return SceneEntities::instance();
}

QString storedPlan(const QString& projectPath)
{
    QFile file(projectPath + CFileSystemNames::graphics3DPathPart() + QStringLiteral("plan.xml"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

/** The plan of the scene: where it lies, when it shows, and when it is stored. */
class tst_SceneEntitiesPlan : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = std::make_unique<SceneRoot>();
        m_root->qmlOnCompleted();
        m_project = std::make_unique<TestProject>(QStringLiteral("EPSG:25832"));
    }

    void cleanup()
    {
        entities().setBackgroundPlanToConfirm(nullptr);
        entities().setBackgroundPlan(nullptr);
        AppState::instance().setActiveProject({});
        deleteWhatIsToBeDeleted();
        m_project.reset();
        m_root.reset();
        LowestManholeTracker::instance()->updateLowestObject();
        GlobalNav::instance()->setViewType(CameraController::View2dTop);
    }

    void withoutAPlanThereIsNothingToTell()
    {
        QVERIFY(!entities().planLoaded());
        QVERIFY(!entities().planToConfirmLoaded());
        QVERIFY(!entities().property("planRenderable").isValid());
        QVERIFY(!m_root->planLayerLock());
        m_root->setPlanLayerLock(true);
        QVERIFY(!m_root->planLayerLock());
        entities().deleteBackgroundPlan();
        entities().saveBackgroundPlan();
    }

    void aPlanIsToldOnce()
    {
        QSignalSpy told(&entities(), &SceneEntities::planLoadedChanged);
        auto* const plan = new PaperPlan(m_root.get());

        entities().setBackgroundPlan(plan);
        entities().setBackgroundPlan(plan);

        QCOMPARE(told.count(), 1);
        QCOMPARE(entities().getBackgroundPlan(), plan);
        QVERIFY(entities().planLoaded());
        QCOMPARE(entities().property("planRenderable").value<IBackgroundPlan*>(), plan);
    }

    void thePlanLiesJustBelowTheLowestObject()
    {
        m_project->activate();
        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"),
                           {{"OBJ_DepthToInvert", 3.0}});
        QCoreApplication::processEvents();
        const float lowest = LowestManholeTracker::instance()->getCurrentLowestY();
        QVERIFY(lowest < -1.0F);
        auto* const plan = new PaperPlan(m_root.get());
        plan->setPosition({7.0F, 55.0F, 9.0F}, 0);

        entities().setBackgroundPlan(plan);

        QCOMPARE(plan->position(), QVector3D(7.0F, lowest - 0.0001F, 9.0F));
    }

    void thePlanFollowsTheLowestObjectAndIsStored()
    {
        m_project->activate();
        auto* const plan = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);
        const QString before = storedPlan(m_project->project()->projectPath());
        QVERIFY(!before.isEmpty());

        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"),
                           {{"OBJ_DepthToInvert", 3.0}});
        QCoreApplication::processEvents();

        QCOMPARE(plan->position().y(), LowestManholeTracker::instance()->getCurrentLowestY() - 0.0001F);
        QVERIFY(storedPlan(m_project->project()->projectPath()) != before);
    }

    void aPlanIsStoredAtItsHeight()
    {
        m_project->activate();
        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"),
                           {{"OBJ_DepthToInvert", 3.0}});
        QCoreApplication::processEvents();
        const float lowest = LowestManholeTracker::instance()->getCurrentLowestY();
        QVERIFY(lowest < -1.0F);

        entities().setBackgroundPlan(new PaperPlan(m_root.get()));

        PlanSettingsIO io;
        io.tryToLoadPlanSettings(m_project->project()->projectPath());
        QCOMPARE(io.getPlanTranslation().y(), lowest - 0.0001F);
    }

    void whileTheLowestObjectIsDraggedThePlanIsStoredNowAndThen()
    {
        m_project->activate();
        auto* const plan = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);
        const auto storedHeight = [this] {
            PlanSettingsIO io;
            io.tryToLoadPlanSettings(m_project->project()->projectPath());
            return io.getPlanTranslation().y();
        };

        QElapsedTimer drag;
        drag.start();
        QSet<float> heights;
        int steps = 0;
        for (; drag.elapsed() < 300; ++steps) {
            emit LowestManholeTracker::instance()->lowestObjectChanged(-1.0F - 0.001F * float(steps));
            QCOMPARE(plan->position().y(), -1.0F - 0.001F * float(steps) - 0.0001F);
            heights << storedHeight();
        }

        QVERIFY(steps > 5);
        QCOMPARE(heights.size(), 1);
        QVERIFY(*heights.begin() < -1.0F);
        // It has come to rest: what is stored is where it lies, at the height of the scene's own lowest object again.
        const float rest = LowestManholeTracker::instance()->getCurrentLowestY() - 0.0001F;
        QTRY_COMPARE(storedHeight(), rest);
    }

    void anEarlierPlanNoLongerFollows()
    {
        auto* const first = new PaperPlan(m_root.get());
        auto* const second = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(first);
        entities().setBackgroundPlan(second);
        const float before = first->position().y();

        emit LowestManholeTracker::instance()->lowestObjectChanged(-44.0F);

        QCOMPARE(first->position().y(), before);
        QCOMPARE(second->position().y(), -44.0F - 0.0001F);
    }

    void withoutAProjectNothingIsStored()
    {
        auto* const plan = new PaperPlan(m_root.get());

        entities().setBackgroundPlan(plan);
        entities().saveBackgroundPlan();

        QCOMPARE(storedPlan(m_project->project()->projectPath()), QString());
    }

    void aSecondPlanReplacesTheFirst()
    {
        const QPointer<PaperPlan> first = new PaperPlan(m_root.get());
        auto* const second = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(first);
        QSignalSpy locks(m_root.get(), &SceneRoot::planLayerLockChanged);
        QSignalSpy shows(m_root.get(), &SceneRoot::planLayerEnabledChanged);

        entities().setBackgroundPlan(second);
        first->setLock(true);
        QCOMPARE(locks.count(), 0);
        deleteWhatIsToBeDeleted();
        m_root->setPlanLayerLock(true);
        second->setEnabled(false);

        QVERIFY(!first);
        QVERIFY(m_root->planLayerLock());
        QCOMPARE(locks, (QList<QVariantList> {{true}}));
        QCOMPARE(shows.last(), QVariantList {false});
    }

    void whatIsMovedLaterIsStored()
    {
        m_project->activate();
        auto* const plan = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);
        const QString before = storedPlan(m_project->project()->projectPath());

        plan->setPosition({123.0F, 5.0F, 4.0F}, 0);
        emit plan->editingFinished();

        QVERIFY(storedPlan(m_project->project()->projectPath()) != before);
        QCOMPARE(plan->position(),
                 QVector3D(123.0F, LowestManholeTracker::instance()->getCurrentLowestY() - 0.0001F, 4.0F));
    }

    void aPlanIsNotStoredOverThatOfTheNextProject()
    {
        TestProject next(QStringLiteral("EPSG:25832"));
        m_project->activate();
        auto* const plan = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);

        next.activate();
        entities().setBackgroundPlan(plan);
        plan->setPosition({123.0F, 0.0F, 4.0F}, 0);
        entities().saveBackgroundPlan();

        QCOMPARE(storedPlan(next.project()->projectPath()), QString());
        AppState::instance().setActiveProject({});
    }

    void aPlanLaidWithoutAProjectIsNotStoredOverThatOfTheNext()
    {
        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"),
                           {{"OBJ_DepthToInvert", 3.0}});
        const QString path = m_project->project()->projectPath();
        QVERIFY(PlanSettingsIO::savePlanFile(path, Qt3DCore::QTransform(), path + "own.png", {}));
        const QString own = storedPlan(path);
        QVERIFY(own.contains("own.png"));
        auto* const plan = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);

        m_project->activate();
        QCoreApplication::processEvents();
        entities().saveBackgroundPlan();

        QCOMPARE(storedPlan(path), own);
    }

    void theLockButtonIsReleasedWithTheLockedPlan()
    {
        auto* const locked = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(locked);
        m_root->setPlanLayerLock(true);
        QVERIFY(m_root->planLayerLock());
        QSignalSpy told(m_root.get(), &SceneRoot::planLayerLockChanged);

        entities().setBackgroundPlan(new PaperPlan(m_root.get()));
        QCOMPARE(told, (QList<QVariantList> {{false}}));
        m_root->setPlanLayerLock(true);
        entities().deleteBackgroundPlan();

        QCOMPARE(told, (QList<QVariantList> {{false}, {true}, {false}}));
    }

    void aPlanShowsAsTheLayerDoes()
    {
        auto* const plan = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);
        QVERIFY(plan->isEnabled());

        m_root->setPlanLayerEnabled(false);
        QVERIFY(!plan->isEnabled());
        GlobalNav::instance()->setViewType(CameraController::View3d);
        QVERIFY(!plan->isEnabled());
        m_root->setPlanLayerEnabled(true);

        QVERIFY(plan->isEnabled());
        m_root->setPlanLayerEnabled(false);
        auto* const hidden = new PaperPlan(m_root.get());
        hidden->setEnabled(true);
        entities().setBackgroundPlan(hidden);
        QVERIFY(!hidden->isEnabled());
        m_root->setPlanLayerEnabled(true);
    }

    void aChangeOfTheViewShowsThePlanAgain()
    {
        auto* const plan = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);
        plan->setEnabled(false);

        GlobalNav::instance()->setViewType(CameraController::View3d);

        QVERIFY(plan->isEnabled());
    }

    void aPlanThatWaitsForConfirmationIsShownFirst()
    {
        auto* const plan = new PaperPlan(m_root.get());
        auto* const waiting = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);
        QSignalSpy told(&entities(), &SceneEntities::planToConfirmLoadedChanged);

        entities().setBackgroundPlanToConfirm(waiting);
        entities().setBackgroundPlanToConfirm(waiting);
        waiting->setEnabled(true);
        m_root->setPlanLayerEnabled(false);

        QCOMPARE(told.count(), 1);
        QVERIFY(!waiting->isEnabled());
        QVERIFY(plan->isEnabled());
        m_root->setPlanLayerEnabled(true);
    }

    void aPlanThatIsDestroyedElsewhereIsNoLongerTheScenes()
    {
        auto* const plan = new PaperPlan(m_root.get());
        auto* const waiting = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);
        entities().setBackgroundPlanToConfirm(waiting);
        QSignalSpy told(&entities(), &SceneEntities::planLoadedChanged);

        plan->destroyLater();
        waiting->destroyLater();
        deleteWhatIsToBeDeleted();

        QCOMPARE(told.count(), 1);
        QVERIFY(!entities().planLoaded());
        QVERIFY(!entities().planToConfirmLoaded());
    }

    void closingTheProjectTakesItsPlanAway()
    {
        m_project->activate();
        const QPointer<PaperPlan> plan = new PaperPlan(m_root.get());
        const QPointer<PaperPlan> waiting = new PaperPlan(m_root.get());
        entities().setBackgroundPlan(plan);
        entities().setBackgroundPlanToConfirm(waiting);

        m_project->close();
        QVERIFY(!entities().planLoaded());
        deleteWhatIsToBeDeleted();

        QVERIFY(!plan);
        QVERIFY(!waiting);
        QVERIFY(!entities().planToConfirmLoaded());
    }

private:
    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<TestProject> m_project;
};

QTEST_MAIN(tst_SceneEntitiesPlan)
#include "tst_SceneEntitiesPlan.moc"
