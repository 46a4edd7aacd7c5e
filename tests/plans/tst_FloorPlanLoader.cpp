#include "common/DeferredDeletes.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "plans/BackgroundImage.h"
#include "plans/BackgroundLoader.h"
#include "plans/FakeConverter.h"
#include "plans/FloorNav.h"
#include "plans/FloorPlanLoader.h"
#include "plans/HeardOfLoader.h"
#include "plans/PlanSettingsIO.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QImage>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::deleteWhatIsToBeDeleted;
using Kx::Test::FakeConverter;
using Kx::Test::Heard;
using Kx::Test::TestProject;
using Torvik::AppState;
using Torvik::Base::CFileSystemNames;

namespace {

FloorNav& nav()
{
    return FloorNav::instance();
}

QStringList signalsOf(const QMetaObject& object)
{
    QStringList names;
    for (int i = object.methodOffset(); i < object.methodCount(); ++i) {
        if (object.method(i).methodType() == QMetaMethod::Signal)
            names << object.method(i).methodSignature();
    }
    return names;
}

} // namespace

/** Loading the plan of a floor, and where it differs from loading the one under the network. */
class tst_FloorPlanLoader : public QObject {
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
        nav().setFloorValues({0.0, 3.0, 3.0, 3.0});
    }

    void cleanup()
    {
        nav().setCurrentFloorIndex(-1);
        for (int floor = 0; floor < 4; ++floor)
            nav().setFloorPlan(floor, nullptr);
        nav().setFloorValues({});
        SceneEntities::instance().setBackgroundPlan(nullptr);
        AppState::instance().setActiveProject({});
        deleteWhatIsToBeDeleted();
        m_project.reset();
        m_root.reset();
        GdalGeoProjector::instance()->deinit();
    }

    void itHasTheFaceOfTheOtherLoader()
    {
        QCOMPARE(m_root->property("floorPlanLoader").value<FloorPlanLoader*>(), &loader());
        QCOMPARE(signalsOf(FloorPlanLoader::staticMetaObject), signalsOf(PlanLoader::staticMetaObject));
        QVERIFY(!qobject_cast<PlanLoader*>(static_cast<QObject*>(&loader())));
        for (const char* method : {"loadPlan(QString,int)", "cancel()", "getPlanFileSizeLimit(QString)",
                                   "swapPlan(Torvik::View3d::IBackgroundPlan*)"})
            QVERIFY2(loader().metaObject()->indexOfMethod(method) >= 0, method);
        QVERIFY(!loader().planLoading());
        QCOMPARE(loader().getPlanFileSizeLimit(QStringLiteral("DWG")), 10485760LL);
        QCOMPARE(loader().getPlanFileSizeLimit(QStringLiteral("png")), 0LL);
    }

    void aPlanComesToItsFloorWhichIsShown()
    {
        Heard heard(&loader());
        QStringList order;
        const QObject here;
        connect(&nav(), &FloorNav::floorSet, &here, [&] { order << (loader().planLoading() ? "set" : "late"); });
        connect(&nav(), &FloorNav::currentFloorChanged, &here, [&] { order << "shown"; });
        connect(&loader(), &FloorPlanLoader::planLoaded, &here, [&] { order << "told"; });

        loader().loadPlan(picture("floor.png"), 2);
        QVERIFY(loader().planLoading());
        QTRY_COMPARE(heard.lines.size(), 3);

        QCOMPARE(heard.lines, (QStringList {"loading", "loaded imagebackground", "idle"}));
        QCOMPARE(order, (QStringList {"set", "shown", "told"}));
        QVERIFY(nav().hasFloorPlan(2));
        QCOMPARE(nav().getCurrentFloorIndex(), 2);
        QVERIFY(nav().getFloorPlan(2)->isEnabled());
        QVERIFY(!SceneEntities::instance().planLoaded());
    }

    void heightsTakeEachPlanUp()
    {
        for (int floor = 0; floor < 4; ++floor)
            load("floor.png", floor);

        nav().setFloorValues({0.0, 3.0, 3.0, 3.0});

        for (int floor = 0; floor < 4; ++floor)
            QCOMPARE(nav().getFloorPlan(floor)->transform()->translation().y(), 3.0F * floor);
        QVERIFY(!nav().getFloorPlan(0)->isEnabled());
        QVERIFY(nav().getFloorPlan(3)->isEnabled());
    }

    void aFloorsOldPlanGoes()
    {
        load("one.png", 1);
        const QPointer<IBackgroundPlan> old = nav().getFloorPlan(1);

        load("two.png", 1);
        deleteWhatIsToBeDeleted();

        QVERIFY(!old);
        QVERIFY(nav().getFloorPlan(1)->fullPath().endsWith("two.png"));
        QVERIFY(nav().getFloorPlan(1)->isEnabled());
    }

    void aPictureThatIsTooLargeEndsByItself()
    {
        Heard heard(&loader());

        loader().loadPlan(picture("large.png", {4049, 2}), 0);
        QTRY_VERIFY(heard.lines.size() >= 4);
        QTest::qWait(20);

        QCOMPARE(heard.lines, (QStringList {"loading", "too large 4049", "cancelled", "idle"}));
        deleteWhatIsToBeDeleted();
        QCOMPARE(m_root->findChildren<BackgroundImage*>().size(), 0);
        QVERIFY(!nav().hasFloorPlan(0));
    }

    void aPdfThatIsTooLargeEndsToo()
    {
        m_project->activate();
        const QString page = picture("page.png", {4049, 2});
        const QString pdf = m_folder->filePath(QStringLiteral("large.pdf"));
        QVERIFY(QFile(pdf).open(QIODevice::WriteOnly));
        const FakeConverter converter("cp '" + QFile::encodeName(page) + "' \"$6.png\"");
        Heard heard(&loader());

        loader().loadPlan(pdf, 0);
        QTRY_VERIFY(!loader().planLoading());

        QCOMPARE(heard.lines, (QStringList {"loading", "too large 4049", "cancelled", "idle"}));
        deleteWhatIsToBeDeleted();
        QCOMPARE(m_root->findChildren<BackgroundImage*>().size(), 0);
        QVERIFY(!nav().hasFloorPlan(0));
    }

    void aFailedConverterEndsTheLoadFirst()
    {
        m_project->activate();
        const QString pdf = m_folder->filePath(QStringLiteral("any.pdf"));
        QVERIFY(QFile(pdf).open(QIODevice::WriteOnly));
        const FakeConverter converter("kill -SEGV $$");
        Heard heard(&loader());

        loader().loadPlan(pdf, 0);
        QTRY_VERIFY(!loader().planLoading());

        QCOMPARE(heard.lines, (QStringList {"loading", "cancelled", "idle", "converter 150202"}));
        QVERIFY(QFile::exists(pdf));
    }

    void aBrokenPictureLeavesTheFloorAsItWas()
    {
        load("good.png", 0);
        IBackgroundPlan* const good = nav().getFloorPlan(0);
        const QString path = m_folder->filePath(QStringLiteral("broken.png"));
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        Heard heard(&loader());

        loader().loadPlan(path, 0);
        QTRY_COMPARE(heard.lines.size(), 5);

        QCOMPARE(heard.lines, (QStringList {"loading", "corrupted 150201", "idle", "cancelled", "idle"}));
        QCOMPARE(nav().getFloorPlan(0), good);
    }

    void whatCannotBeAPlanIsNotLoaded()
    {
        const QString text = m_folder->filePath(QStringLiteral("plan.txt"));
        QVERIFY(QFile(text).open(QIODevice::WriteOnly));
        QSignalSpy problem(&loader(), &FloorPlanLoader::problemArisen);
        Heard heard(&loader());

        loader().loadPlan(m_folder->filePath(QStringLiteral("missing.png")), 0);
        QCOMPARE(problem.count(), 0);
        loader().loadPlan(text, 0);

        QCOMPARE(heard.lines, QStringList());
        QCOMPARE(problem.count(), 1);
        QVERIFY(loader().problem().contains(text));
    }

    void aCancelledLoadLeavesTheFloorEmpty()
    {
        Heard heard(&loader());
        loader().cancel();
        loader().loadPlan(picture("large.png", {4000, 4000}), 1);

        loader().cancel();
        QTest::qWait(100);

        QCOMPARE(heard.lines, (QStringList {"loading", "cancelled", "idle", "cancelled", "idle"}));
        QVERIFY(!nav().hasFloorPlan(1));
        QCOMPARE(nav().getCurrentFloorIndex(), -1);
    }

    void closingTheProjectEndsTheLoad()
    {
        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"));
        m_project->activate();
        loader().loadPlan(picture("large.png", {4000, 4000}), 1);
        QVERIFY(loader().planLoading());

        m_project->close();
        QTest::qWait(50);

        QVERIFY(!loader().planLoading());
        QVERIFY(!nav().hasFloorPlan(1));
    }

    void theProjectsPlanIsOnlyTold()
    {
        storePlan(picture("stored.png"));
        AppState::instance().setActiveProject({});
        GdalGeoProjector::instance()->deinit();
        IBackgroundPlan* told = nullptr;
        const QObject here;
        connect(&loader(), &FloorPlanLoader::planLoaded, &here,
                [&told](Renderable* plan) { told = qobject_cast<IBackgroundPlan*>(plan); });

        loader().loadPlanFromProject(m_project->project());
        QTRY_VERIFY(told);

        // Neither tied to the earth, nor moved to its stored place, nor laid anywhere.
        QVERIFY(!GdalGeoProjector::instance()->initialized());
        QVERIFY(told->transform()->rotation().isIdentity());
        QVERIFY(!SceneEntities::instance().planLoaded());
        for (int floor = 0; floor < 4; ++floor)
            QVERIFY(!nav().hasFloorPlan(floor));
        told->destroyLater();
    }

    void aPlanOfTheProjectThatCannotBeReadEndsItsLoad_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("too large") << QSize(4049, 2) << QStringList {"loading", "too large 4049", "cancelled", "idle"};
        QTest::newRow("broken") << QSize() << QStringList {"loading", "corrupted 150201", "cancelled", "idle"};
    }

    void aPlanOfTheProjectThatCannotBeReadEndsItsLoad()
    {
        QFETCH(QSize, size);
        QFETCH(QStringList, lines);
        storePlan(picture("stored.png", size.isEmpty() ? QSize(40, 30) : size));
        if (size.isEmpty())
            QVERIFY(QFile(documentation() + "stored.png").resize(10));
        Heard heard(&loader());

        loader().loadPlanFromProject(m_project->project());
        QTRY_VERIFY(!loader().planLoading());
        QTest::qWait(20);

        QCOMPARE(heard.lines, lines);
    }

    void underAPlanTheProjectsIsNotLoaded()
    {
        storePlan(picture("stored.png"));
        SceneEntities::instance().setBackgroundPlan(new BackgroundImage(picture("under.png"), m_root.get()));
        Heard heard(&loader());

        loader().loadPlanFromProject(m_project->project());
        loader().loadPlanFromProject({});

        QCOMPARE(heard.lines, QStringList());
    }

    void swappingIsMeasuredAgainstThePlanUnderTheNetwork()
    {
        m_project->activate();
        load("floor.png", 0);
        const QString old = documentation() + "under.png";
        QVERIFY(QFile::copy(picture("under.png"), old));
        auto* const under = new BackgroundImage(old, m_root.get());
        under->setFullPath(old);
        SceneEntities::instance().setBackgroundPlan(under);
        const QString source = picture("new.png");
        BackgroundImage plan(source, m_root.get());
        plan.setFullPath(source);

        loader().swapPlan(&plan);

        QCOMPARE(plan.fullPath(), documentation() + "new.png");
        QVERIFY(!QFile::exists(old));
        QVERIFY(QFile::exists(nav().getFloorPlan(0)->fullPath()));
        QCOMPARE(loader().problem(), QString());
    }

private:
    FloorPlanLoader& loader() const { return *m_root->floorPlanLoader(); }

    QString documentation() const
    {
        const QString path = m_project->project()->projectPath() + CFileSystemNames::documentationPathPart();
        QDir().mkpath(path);
        return path;
    }

    QString picture(const QString& name, const QSize& size = {40, 30}) const
    {
        const QString path = m_folder->filePath(name);
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::yellow);
        return image.save(path, "PNG", 90) ? path : QString();
    }

    void load(const QString& name, int floor)
    {
        loader().loadPlan(picture(name), floor);
        QTRY_VERIFY(!loader().planLoading());
        QVERIFY(nav().hasFloorPlan(floor));
    }

    /** As the project's plan, turned. */
    void storePlan(const QString& source)
    {
        const QString path = documentation() + QFileInfo(source).fileName();
        QVERIFY(QFile::copy(source, path));
        Qt3DCore::QTransform turned;
        turned.setRotationY(30.0F);
        QDir().mkpath(m_project->project()->projectPath() + CFileSystemNames::graphics3DPathPart());
        QVERIFY(PlanSettingsIO::savePlanFile(m_project->project()->projectPath(), turned, path, {}));
    }

    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(tst_FloorPlanLoader)
#include "tst_FloorPlanLoader.moc"
