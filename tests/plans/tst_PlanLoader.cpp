#include "common/DeferredDeletes.h"
#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "plans/BackgroundController.h"
#include "plans/BackgroundImage.h"
#include "plans/BackgroundLoader.h"
#include "plans/HeardOfLoader.h"
#include "plans/PaperPlan.h"
#include "plans/PlanSettingsIO.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QImage>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QStorageInfo>
#include <QtTest>

#include <csignal>
#include <memory>

#include <sys/resource.h>

using namespace Torvik::View3d;
using Kx::Test::deleteWhatIsToBeDeleted;
using Kx::Test::Heard;
using Kx::Test::TestProject;
using Torvik::AppState;
using Torvik::Base::CErrorCode;
using Torvik::Base::CFileSystemNames;

namespace {

SceneEntities& entities()
{
    return SceneEntities::instance();
}

/** A loader whose plans do what the test has them do. */
class PaperLoader : public PlanLoader {
public:
    PaperLoader()
        : PlanLoader(nullptr)
    {
    }
    IBackgroundPlan* createNewPlan(const QString& path) override
    {
        if (!path.endsWith(QLatin1String(".paper")))
            return nullptr;
        class Waiting : public PaperPlan {
        public:
            using PaperPlan::PaperPlan;
            void load() override {}
        };
        plan = new Waiting(SceneRoot::instance());
        return plan;
    }
    void applyTranslationFromPlanFile(IBackgroundPlan*, const PlanSettings&) override {}
    void initGeoProjector(const PlanSettings&) override {}

    QPointer<PaperPlan> plan;
};

} // namespace

/** Loading a plan from a file or from the project, cancelling it, and swapping it for another. */
class tst_PlanLoader : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SceneRoot::registerMetaTypes(); }

    void init()
    {
        GdalGeoProjector::instance()->deinit();
        m_root = std::make_unique<SceneRoot>();
        m_root->qmlOnCompleted();
        m_project = std::make_unique<TestProject>(QStringLiteral("EPSG:25832"));
        m_folder = std::make_unique<QTemporaryDir>();
    }

    void cleanup()
    {
        entities().setBackgroundPlan(nullptr);
        AppState::instance().setActiveProject({});
        deleteWhatIsToBeDeleted();
        m_project.reset();
        m_root.reset();
        GdalGeoProjector::instance()->deinit();
    }

    void theSceneHasALoaderThatIsIdle()
    {
        QCOMPARE(m_root->property("planLoader").value<PlanLoader*>(), m_root->planLoader());
        QVERIFY(!m_root->planLoader()->planLoading());
        QCOMPARE(m_root->planLoader()->getPlanFileSizeLimit(QStringLiteral("PDF")), 0LL);
        QCOMPARE(m_root->planLoader()->getPlanFileSizeLimit(QStringLiteral("DXF")), 52428800LL);
    }

    void aPictureIsLoadedAndHandedOn()
    {
        PlanLoader& loader = *m_root->planLoader();
        Heard heard(&loader);

        loader.loadPlan(picture("new.PNG"));
        QVERIFY(loader.planLoading());
        QTRY_COMPARE(heard.lines.size(), 3);

        QCOMPARE(heard.lines, (QStringList {"loading", "loaded imagebackground", "idle"}));
        QVERIFY(!entities().planLoaded());
    }

    void kindsAreToldByTheirEnding_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("type");
        for (const char* name : {"a.jpg", "A.JPEG", "a.gif", "a.exif", "a.tiff", "a.bmp", "a.Png", "a.dxf.png"})
            QTest::newRow(name) << name << "imagebackground";
        for (const char* name : {"a.pdf", "A.PDF"})
            QTest::newRow(name) << name << "pdfimagebackground";
        for (const char* name : {"a.dxf", "A.DWG", "a.png.dxf"})
            QTest::newRow(name) << name << "dxfbackground";
        for (const char* name : {"a.tif", "a.txt", "png", "a"})
            QTest::newRow(name) << name << QString();
    }

    void kindsAreToldByTheirEnding()
    {
        QFETCH(QString, name);

        const std::unique_ptr<IBackgroundPlan> plan(BackgroundLoader().createNewPlan(name));

        QTEST(plan ? plan->renderableType() : QString(), "type");
    }

    void aFileOfNoKindIsRefused()
    {
        const QString path = m_folder->filePath(QStringLiteral("plan.txt"));
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        Heard heard(m_root->planLoader());

        m_root->planLoader()->loadPlan(path);

        QCOMPARE(heard.lines, QStringList());
        QVERIFY(!m_root->planLoader()->planLoading());
        QVERIFY(m_root->planLoader()->problem().contains(path));
    }

    void aFileThatIsNotThereIsPassedOverInSilence()
    {
        Heard heard(m_root->planLoader());

        m_root->planLoader()->loadPlan(m_folder->filePath(QStringLiteral("missing.png")));

        QCOMPARE(heard.lines, QStringList());
        QCOMPARE(m_root->planLoader()->problem(), QString());
    }

    void anUnreadableFileIsToldAndItsPlanGoes()
    {
        Heard heard(m_root->planLoader());

        m_root->planLoader()->loadPlan(broken("broken.png"));
        QTRY_COMPARE(heard.lines.size(), 5);

        QCOMPARE(heard.lines, (QStringList {"loading", "corrupted 150201", "idle", "cancelled", "idle"}));
        QCOMPARE(m_root->planLoader()->planPath(), m_folder->filePath("broken.png"));
        deleteWhatIsToBeDeleted();
        QCOMPARE(m_root->findChildren<BackgroundImage*>().size(), 0);
    }

    void aPictureThatIsTooLargeIsTold()
    {
        Heard heard(m_root->planLoader());

        m_root->planLoader()->loadPlan(picture("large.png", {4049, 2}));
        QTRY_VERIFY(heard.lines.size() >= 6);

        QCOMPARE(heard.lines, (QStringList {"loading", "too large 4049", "cancelled", "idle", "cancelled", "idle"}));
        deleteWhatIsToBeDeleted();
        QCOMPARE(m_root->findChildren<BackgroundImage*>().size(), 0);
    }

    void cancellingIsToldTwiceAndDeletesThePlan()
    {
        PaperLoader loader;
        Heard heard(&loader);
        loader.cancel();
        QCOMPARE(heard.lines, QStringList());
        loader.loadPlan(broken("some.paper"));

        loader.cancel();

        QCOMPARE(heard.lines, (QStringList {"loading", "cancelled", "idle", "cancelled", "idle"}));
        deleteWhatIsToBeDeleted();
        QVERIFY(!loader.plan);
    }

    void aPictureThatIsCancelledNeverComes()
    {
        Heard heard(m_root->planLoader());
        m_root->planLoader()->loadPlan(picture("large.png", {4000, 4000}));

        m_root->planLoader()->cancel();
        QTest::qWait(100);

        QCOMPARE(heard.lines, (QStringList {"loading", "cancelled", "idle", "cancelled", "idle"}));
        QCOMPARE(m_root->findChildren<BackgroundImage*>().size(), 0);
    }

    void aPictureThatWasReadyWhenItIsCancelledNeverComes()
    {
        PlanLoader& loader = *m_root->planLoader();
        Heard heard(&loader);
        loader.loadPlan(picture("ready.png"));
        // Decoded by now, and not told yet.
        QThread::msleep(300);

        loader.cancel();
        QTest::qWait(50);

        QCOMPARE(heard.lines, (QStringList {"loading", "cancelled", "idle", "cancelled", "idle"}));
    }

    void aPlanThatWasFoundBrokenGoes()
    {
        PaperLoader loader;
        loader.loadPlan(broken("some.paper"));

        emit loader.plan->fileCorrupted(CErrorCode(0x150201U));
        QVERIFY(!loader.planLoading());
        deleteWhatIsToBeDeleted();

        QVERIFY(!loader.plan);
    }

    void aLoadThatEndsWithoutAPlanHandsNothingOn()
    {
        PaperLoader loader;
        Heard heard(&loader);
        loader.loadPlan(broken("some.paper"));

        emit loader.plan->backgroundLoadingFinished(nullptr);

        QCOMPARE(heard.lines, QStringList("loading"));
        QVERIFY(!loader.planLoading());
    }

    void whileAPlanLoadsTheProjectsIsNot()
    {
        const QString own = documentation() + "own.paper";
        QVERIFY(QFile(own).open(QIODevice::WriteOnly));
        QVERIFY(PlanSettingsIO::savePlanFile(m_project->project()->projectPath(), Qt3DCore::QTransform(), own, {}));
        PaperLoader loader;
        Heard heard(&loader);
        loader.loadPlan(broken("some.paper"));

        loader.loadPlanFromProject(m_project->project());
        QCOMPARE(heard.lines, QStringList("loading"));
        loader.cancel();
        loader.loadPlanFromProject(m_project->project());

        QVERIFY(loader.planLoading());
        QCOMPARE(loader.planPath(), own);
    }

    void whatAPlanTellsIsForwarded()
    {
        PaperLoader loader;
        Heard heard(&loader);
        loader.loadPlan(broken("some.paper"));

        emit loader.plan->progressChanged(40);
        emit loader.plan->pdfConverterProblem(CErrorCode(0x150202U));

        QCOMPARE(heard.lines, (QStringList {"loading", "progress 40", "cancelled", "idle", "converter 150202"}));
    }

    void aSecondLoadTakesThePlaceOfTheFirst()
    {
        PaperLoader loader;
        Heard heard(&loader);
        loader.loadPlan(broken("some.paper"));
        const QPointer<PaperPlan> first = loader.plan;

        loader.loadPlan(broken("other.paper"));
        emit first->backgroundLoadingFinished(first);
        deleteWhatIsToBeDeleted();

        QVERIFY(!first);
        QVERIFY(loader.planLoading());
        QCOMPARE(heard.lines, (QStringList {"loading", "cancelled", "idle", "loading"}));
    }

    void aPlanThatIsDestroyedWhileItLoadsEndsTheLoad()
    {
        PaperLoader loader;
        Heard heard(&loader);
        loader.loadPlan(broken("some.paper"));

        loader.plan->destroyLater();
        deleteWhatIsToBeDeleted();

        QVERIFY(!loader.planLoading());
        QCOMPARE(heard.lines, (QStringList {"loading", "cancelled", "idle"}));
    }

    void aPlanIsThereAgainWhenItsProjectIsOpened()
    {
        const QMatrix4x4 saved = layAndSave();

        m_project->reopen();
        Heard heard(m_root->planLoader());
        m_project->activate();
        QTRY_VERIFY(entities().planLoaded());

        QCOMPARE(heard.lines, (QStringList {"loading", "loaded imagebackground", "idle"}));
        QCOMPARE(entities().getBackgroundPlan()->fullPath(), documentation() + "new.png");
        for (int i = 0; i < 16; ++i)
            QVERIFY(qAbs(entities().getBackgroundPlan()->transformMatrix().constData()[i] - saved.constData()[i]) <
                    1e-3F);
    }

    void aPlanMovesWithTheOriginOfTheScene()
    {
        layAndSave();
        const QVector3D before = placeOnEarth();
        m_project->reopen();
        m_project->addNode(QStringLiteral("B"), QStringLiteral("POINT ZM(570200 5830300 40 16)"));
        AppState::instance().setActiveProject({});
        deleteWhatIsToBeDeleted();
        GdalGeoProjector::instance()->deinit();
        QString system = QStringLiteral("EPSG:25832");
        GdalGeoProjector::instance()->init(Torvik::Database::WktPoint(QStringLiteral("POINT ZM(570100 5830100 0 0)")),
                                           system);

        m_root->planLoader()->loadPlanFromProject(m_project->project());
        QTRY_VERIFY(entities().planLoaded());

        QVERIFY((placeOnEarth() - before).length() < 0.01F);
    }

    void aSceneWithoutNodesIsTiedByItsPlan()
    {
        TestProject empty(QStringLiteral("EPSG:25832"));
        QVERIFY(QFile::copy(picture("only.png"), documentation(empty) + "only.png"));
        QString system = QStringLiteral("EPSG:25832");
        GdalGeoProjector::instance()->init(Torvik::Database::WktPoint(QStringLiteral("POINT ZM(570000 5830000 0 0)")),
                                           system);
        QVERIFY(PlanSettingsIO::savePlanFile(empty.project()->projectPath(), Qt3DCore::QTransform(),
                                             documentation(empty) + "only.png", {}));

        empty.activate();
        QTRY_VERIFY(entities().planLoaded());

        QVERIFY(GdalGeoProjector::instance()->initialized());
        QVERIFY((placeOnEarth() - QVector3D(-570000.0F, 0.0F, 5830000.0F)).length() < 1.0F);
        AppState::instance().setActiveProject({});
        entities().setBackgroundPlan(nullptr);
    }

    void aSceneThatIsTiedKeepsItsTie()
    {
        TestProject empty(QStringLiteral("EPSG:25832"));
        QVERIFY(QFile::copy(picture("only.png"), documentation(empty) + "only.png"));
        auto& projector = *GdalGeoProjector::instance();
        const auto tie = [&projector](const char* place) {
            QString system = QStringLiteral("EPSG:25832");
            projector.deinit();
            projector.init(Torvik::Database::WktPoint(QString::fromLatin1(place)), system);
        };
        tie("POINT ZM(570000 5830000 0 0)");
        QVERIFY(PlanSettingsIO::savePlanFile(empty.project()->projectPath(), Qt3DCore::QTransform(),
                                             documentation(empty) + "only.png", {}));
        tie("POINT ZM(570033 5830044 0 0)");
        const Vector3D<double> origin = projector.origin();

        m_root->planLoader()->loadPlanFromProject(empty.project());
        QTRY_VERIFY(entities().planLoaded());

        QVERIFY(projector.origin() == origin);
        QVERIFY((placeOnEarth() - QVector3D(-570000.0F, 0.0F, 5830000.0F)).length() < 1.0F);
        entities().setBackgroundPlan(nullptr);
    }

    void aSceneWithPlacedNodesIsNotTiedByAPlan()
    {
        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"));
        m_project->activate();
        QVERIFY(m_root->sceneHasNodesWithPosition());
        GdalGeoProjector::instance()->deinit();
        PlanSettings settings;
        settings.referencePoint = Vector3D<double>(-570000.0, 0.0, 5830000.0);

        BackgroundLoader().initGeoProjector(settings);

        QVERIFY(!GdalGeoProjector::instance()->initialized());
    }

    void aPlanOfTheProjectThatIsTooLargeIsTold()
    {
        layAndSave();
        m_project->reopen();
        QVERIFY(QFile::remove(documentation() + "new.png"));
        QVERIFY(QFile::copy(picture("large.png", {4049, 2}), documentation() + "new.png"));
        Heard heard(m_root->planLoader());

        m_project->activate();
        QTRY_VERIFY(heard.lines.size() >= 6);

        QCOMPARE(heard.lines, (QStringList {"loading", "too large 4049", "cancelled", "idle", "cancelled", "idle"}));
        QVERIFY(QFile::exists(documentation() + "new.png"));
    }

    void qmlLaysWhatTheLoaderHandsOn()
    {
        m_project->activate();
        documentation();
        QQmlEngine engine;
        engine.rootContext()->setContextProperty(QStringLiteral("loader"), m_root->planLoader());
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.12\nimport com.torvik.view3d 1.0\n"
                          "QtObject {\n"
                          "  property var controller: BackgroundController {\n"
                          "    targetPlan: SceneEntities.planRenderable || null\n  }\n"
                          "  property var laying: Connections {\n"
                          "    target: loader\n"
                          "    function onPlanLoaded(loadedPlan) {\n"
                          "      loader.swapPlan(loadedPlan)\n"
                          "      SceneEntities.setBackgroundPlan(loadedPlan)\n"
                          "    }\n  }\n}",
                          {});
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        auto* const controller = object->property("controller").value<BackgroundController*>();
        QVERIFY(controller && !controller->getTargetPlan());

        m_root->planLoader()->loadPlan(picture("new.png"));
        QTRY_VERIFY(entities().planLoaded());

        IBackgroundPlan* const plan = entities().getBackgroundPlan();
        QCOMPARE(plan->fullPath(), documentation() + "new.png");
        QVERIFY(QFile::exists(documentation() + "new.png"));
        QCOMPARE(controller->getTargetPlan(), plan);
        entities().deleteBackgroundPlan();
        QVERIFY(!controller->getTargetPlan());
    }

    void withAPlanInPlaceTheProjectsIsNotLoaded()
    {
        layAndSave();
        Heard heard(m_root->planLoader());

        m_root->planLoader()->loadPlanFromProject(m_project->project());
        m_root->planLoader()->loadPlanFromProject({});

        QCOMPARE(heard.lines, QStringList());
    }

    void aProjectWithoutAPlanLoadsNone()
    {
        Heard heard(m_root->planLoader());

        m_project->activate();
        QTest::qWait(20);

        QCOMPARE(heard.lines, QStringList());
        QCOMPARE(m_root->planLoader()->problem(), QString());
    }

    void aPlanOfTheProjectThatIsMissingIsAProblem()
    {
        layAndSave();
        m_project->reopen();
        QVERIFY(QFile::remove(documentation() + "new.png"));
        Heard heard(m_root->planLoader());

        m_project->activate();
        QTest::qWait(20);

        QCOMPARE(heard.lines, QStringList());
        QVERIFY(m_root->planLoader()->problem().contains(documentation() + "new.png"));
    }

    void aPlaceThatCannotBeReadIsToldWithThePlanInTheScene()
    {
        layAndSave();
        m_project->reopen();
        QFile file(m_project->project()->projectPath() + CFileSystemNames::graphics3DPathPart() + "plan.xml");
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray text = file.readAll();
        QVERIFY(text.contains("<PlanScale id=\"ref-5\">"));
        file.resize(0);
        file.seek(0);
        file.write(QByteArray(text).replace("<PlanScale id=\"ref-5\">", "<PlanScale id=\"ref-5\">x"));
        file.close();
        QSignalSpy told(m_root->planLoader(), &PlanLoader::problemArisen);

        m_project->activate();
        QTRY_VERIFY(entities().planLoaded());

        QCOMPARE(told.count(), 1);
        const QString problem = m_root->planLoader()->problem();
        QVERIFY2(problem.contains("plan.xml") && problem.contains(documentation() + "new.png"), qPrintable(problem));
    }

    void aBrokenPlanOfTheProjectIsTold()
    {
        layAndSave();
        m_project->reopen();
        QVERIFY(QFile(documentation() + "new.png").resize(10));
        Heard heard(m_root->planLoader());

        m_project->activate();
        QTRY_VERIFY(heard.lines.contains("cancelled"));

        QCOMPARE(heard.lines, (QStringList {"loading", "corrupted 150201", "cancelled", "idle"}));
        QVERIFY(QFile::exists(documentation() + "new.png"));
    }

    void closingTheProjectWhileItsPlanLoadsLeavesNothing()
    {
        layAndSave();
        m_project->reopen();
        Heard heard(m_root->planLoader());
        m_project->activate();
        QTRY_VERIFY(m_root->planLoader()->planLoading() || entities().planLoaded());

        m_project->close();
        QTest::qWait(50);

        QVERIFY(!m_root->planLoader()->planLoading());
        QVERIFY(!entities().planLoaded());
        QCOMPARE(m_root->findChildren<BackgroundImage*>().size(), 0);
    }

    void aPlanThatIsSwappedInMovesItsFileIntoTheProject()
    {
        layAndSave();
        const QString source = picture("second.png");
        auto* const plan = new BackgroundImage(source, m_root.get());
        plan->setFullPath(source);

        m_root->planLoader()->swapPlan(plan);

        QCOMPARE(plan->fullPath(), documentation() + "second.png");
        QCOMPARE(m_root->planLoader()->problem(), QString());
        QVERIFY(QFile::exists(documentation() + "second.png"));
        QVERIFY(!QFile::exists(documentation() + "new.png"));
        QVERIFY(!QFile::exists(source));
    }

    void aPlanWhoseFileIsGoneLeavesTheOldOneInPlace()
    {
        layAndSave();
        const QString source = m_folder->filePath(QStringLiteral("gone.png"));
        auto* const plan = new BackgroundImage(source, m_root.get());
        plan->setFullPath(source);

        m_root->planLoader()->swapPlan(plan);

        QCOMPARE(plan->fullPath(), documentation() + "new.png");
        QVERIFY(m_root->planLoader()->problem().contains(source));
        QVERIFY(QFile::exists(documentation() + "new.png"));
    }

    void aFullDiskLeavesTheOldPlanInPlaceAndSaysSoOnce()
    {
        QTemporaryDir elsewhere(QStringLiteral("/dev/shm/plan-loader-XXXXXX"));
        if (!elsewhere.isValid() || QStorageInfo(elsewhere.path()).device() == QStorageInfo(m_folder->path()).device())
            QSKIP("there is no second disk here");
        layAndSave();
        const IBackgroundPlan* const old = entities().getBackgroundPlan();
        const QString source = elsewhere.filePath(QStringLiteral("large.bmp"));
        QImage image(600, 600, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(source));
        auto* const plan = new BackgroundImage(source, m_root.get());
        plan->setFullPath(source);
        const QSignalSpy told(m_root->planLoader(), &PlanLoader::problemArisen);

        std::signal(SIGXFSZ, SIG_IGN);
        rlimit before {};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit narrow {100000, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &narrow);
        m_root->planLoader()->swapPlan(plan);
        setrlimit(RLIMIT_FSIZE, &before);

        QCOMPARE(told.size(), 1);
        QVERIFY(m_root->planLoader()->problem().contains(QStringLiteral("disk may be full")));
        QCOMPARE(entities().getBackgroundPlan(), old);
        QCOMPARE(old->fullPath(), documentation() + "new.png");
        QVERIFY(!QImage(old->fullPath()).isNull());
        QVERIFY(!QImage(source).isNull());
        QCOMPARE(QDir(documentation()).entryList(QDir::Files), QStringList("new.png"));
    }

    void closingTheProjectWhileAChosenPlanLoadsLeavesNothing()
    {
        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"));
        m_project->activate();
        const QString source = picture("chosen.png", {3000, 3000});
        Heard heard(m_root->planLoader());
        m_root->planLoader()->loadPlan(source);
        QVERIFY(m_root->planLoader()->planLoading());

        m_project->close();
        QTest::qWait(300);

        QVERIFY(!heard.lines.contains("loaded imagebackground"));
        QCOMPARE(heard.lines.last(), QStringLiteral("idle"));
        QVERIFY(QFile::exists(source));
        QCOMPARE(m_root->findChildren<BackgroundImage*>().size(), 0);
    }

    void aPlanThatIsLaidIsToldByTheLoaderToo()
    {
        QSignalSpy told(m_root->planLoader(), SIGNAL(planLoadedChanged()));

        layAndSave();

        QCOMPARE(told.count(), 1);
    }

    void withoutAProjectNothingIsSwapped()
    {
        const QString source = picture("second.png");
        auto* const plan = new BackgroundImage(source, m_root.get());
        plan->setFullPath(source);

        m_root->planLoader()->swapPlan(plan);
        m_root->planLoader()->swapPlan(nullptr);

        QCOMPARE(plan->fullPath(), source);
        QVERIFY(QFile::exists(source));
    }

private:
    QString documentation(const TestProject& project) const
    {
        const QString path = project.project()->projectPath() + CFileSystemNames::documentationPathPart();
        QDir().mkpath(path);
        return path;
    }
    QString documentation() const { return documentation(*m_project); }

    QString picture(const QString& name, const QSize& size = {40, 30}) const
    {
        const QString path = m_folder->filePath(name);
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::yellow);
        return image.save(path, "PNG", 90) ? path : QString();
    }

    QString broken(const QString& name) const
    {
        const QString path = m_folder->filePath(name);
        return QFile(path).open(QIODevice::WriteOnly) ? path : QString();
    }

    QVector3D placeOnEarth() const
    {
        const IBackgroundPlan* const plan = entities().getBackgroundPlan();
        const QVector3D corner = plan->transformMatrix().map(plan->getAdditionalTranslationCorrect());
        QVector3D place = (Vector3D<double>(corner) + GdalGeoProjector::instance()->origin()).toQVector3D();
        place.setY(0.0F);
        return place;
    }

    /** A picture under the project's network, turned and scaled, and in its files. */
    QMatrix4x4 layAndSave()
    {
        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"));
        m_project->activate();
        m_root->planLoader()->loadPlan(picture("new.png"));
        IBackgroundPlan* plan = nullptr;
        const QObject here;
        connect(m_root->planLoader(), &PlanLoader::planLoaded, &here,
                [&plan](Renderable* loaded) { plan = qobject_cast<IBackgroundPlan*>(loaded); });
        for (int i = 0; i < 500 && !plan; ++i)
            QTest::qWait(10);
        if (!plan)
            return {};
        documentation();
        m_root->planLoader()->swapPlan(plan);
        plan->setPosRotScaleFromPlanSettings({30.0F, 0.0F, -20.0F}, {0.0F, 25.0F, 0.0F}, {2.0F, 1.0F, 2.0F});
        entities().setBackgroundPlan(plan);
        return plan->transformMatrix();
    }

    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(tst_PlanLoader)
#include "tst_PlanLoader.moc"
