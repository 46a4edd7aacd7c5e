#include "ReaderDiary.h"
#include "common/TestProject.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "geo/GdalGeoProjector.h"

#include <QtTest>

using namespace Torvik::View3d;
using Kx::Test::ReaderDiary;
using Kx::Test::TestProject;
using Torvik::AppState;
using Torvik::Database::ProjectStore;

namespace {

/** So many nodes, and each so slow to build, that a load takes several turns of the event loop. */
constexpr int manyNodes = 30;

void fill(TestProject& project)
{
    for (int i = 0; i < manyNodes; ++i)
        project.addNode(QString::number(i));
}

void slowDown(DomainReader& reader)
{
    QObject::connect(&reader, &DomainReader::nodeInserted, &reader, [] { QTest::qSleep(10); });
}

} // namespace

/** How the reader goes from one project to the next. */
class tst_DomainReaderProjects : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        AppState::instance().setActiveProject({});
        GdalGeoProjector::instance()->deinit();
    }

    void aFlatProjectThatIsActiveAtTheStartIsNeitherToldNorFollowed()
    {
        TestProject flat({}, false);
        flat.addNode(QStringLiteral("A"));
        flat.activate();
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);

        reader.init();
        flat.addNode(QStringLiteral("B"));
        QTest::qWait(50);

        QCOMPARE(diary.take(), QStringList());
    }

    void theActiveInspectionIsToldAtTheStartOnly()
    {
        TestProject project;
        const auto inspection = project.addInspection(project.addSection(QStringLiteral("S"), {}, {}), {}, 0);
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        connect(&reader, &DomainReader::loadingStarted, this,
                [&] { AppState::instance().setActiveInspection(inspection); });

        project.activate();

        QCOMPARE(AppState::instance().getActiveInspection(), CDomainObjectPointer(inspection));
        QCOMPARE(diary.take(), (QStringList {QStringLiteral("section S"), QStringLiteral("loaded")}));
    }

    void aProjectorWithASystemKeepsIt()
    {
        auto& projector = *GdalGeoProjector::instance();
        projector.setProjectionSystem(QStringLiteral("EPSG:25832"));
        projector.initFromMap(52.5, 9.5, 0);
        TestProject project(QStringLiteral("EPSG:25833"));
        DomainReader reader(nullptr);

        reader.onProjectChanged(project.project());

        QCOMPARE(projector.projectionString(), QStringLiteral("EPSG:25832"));
    }

    void theStartDoesNotReadTheProjectsSystem()
    {
        TestProject project(QStringLiteral("EPSG:25832"));
        project.activate();
        auto& projector = *GdalGeoProjector::instance();
        projector.setProjectionSystem(QStringLiteral("EPSG:25833"));
        DomainReader reader(nullptr);

        reader.init();

        projector.initFromMap(52.5, 9.5, 0);
        QCOMPARE(projector.projectionString(), QStringLiteral("EPSG:25833"));
    }

    void afterASecondProjectAChangeIsToldOnce()
    {
        TestProject first;
        TestProject second;
        const auto a = second.addNode(QStringLiteral("A"));
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        first.activate();
        second.activate();
        QCoreApplication::processEvents();
        diary.take();

        a->updateValue(QStringLiteral("OBJ_DepthToInvert"), 2.0);
        Torvik::Database::CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);
        QTRY_VERIFY(!diary.entries.isEmpty());
        QTest::qWait(50);

        QCOMPARE(diary.take(), QStringList {QStringLiteral("node modified A")});
    }

    void anyProjectThatIsUnloadedEmptiesTheScene()
    {
        TestProject project;
        TestProject inTheBackground;
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        diary.take();

        inTheBackground.close();

        QCOMPARE(diary.take(), QStringList {QStringLiteral("all removed")});
    }

    void theSceneIsEmptiedWhileTheIndexStillStands()
    {
        TestProject project;
        project.addSection(QStringLiteral("S"), project.addNode(QStringLiteral("A")), {});
        DomainReader reader(nullptr);
        reader.init();
        project.activate();
        int entries = 0;
        connect(&reader, &DomainReader::allRowsRemoved, this,
                [&] { entries = reader.nodeToPipeParentMapping().size(); });

        AppState::instance().setActiveProject({});

        QCOMPARE(entries, 2);
        QCOMPARE(reader.nodeToPipeParentMapping().size(), 0);
    }

    void withoutAnActiveProjectNothingIsFollowed()
    {
        TestProject project;
        TestProject inTheBackground;
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        AppState::instance().setActiveProject({});
        diary.take();

        inTheBackground.addNode(QStringLiteral("A"));
        QTest::qWait(50);

        QCOMPARE(diary.take(), QStringList());
    }

    void whatWasKeptIsToldAfterTheActiveInspection()
    {
        TestProject project;
        fill(project);
        const auto inspection = project.addInspection(project.addSection(QStringLiteral("S"), {}, {}), {}, 0);
        project.activate();
        AppState::instance().setActiveInspection(inspection);
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        slowDown(reader);
        reader.init();
        QVERIFY(reader.isLoading());
        project.addNode(QStringLiteral("later"));

        QTRY_VERIFY_WITH_TIMEOUT(diary.entries.contains(QStringLiteral("node later")), 10000);

        QCOMPARE(diary.take().mid(manyNodes), (QStringList {QStringLiteral("section S"), QStringLiteral("loaded"),
                                                            QStringLiteral("active S"), QStringLiteral("node later")}));
    }

    void whatWasKeptIsForgottenWhenTheNextProjectComesFirst()
    {
        TestProject project;
        fill(project);
        TestProject next;
        next.addNode(QStringLiteral("N"));
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        slowDown(reader);
        reader.init();
        project.activate();
        QVERIFY(reader.isLoading());
        project.addNode(QStringLiteral("later"));
        connect(&reader, &DomainReader::loadingFinished, this, [&] { next.activate(); });

        QTRY_VERIFY_WITH_TIMEOUT(diary.entries.contains(QStringLiteral("node N")), 10000);
        QTest::qWait(50);

        QVERIFY(!diary.take().contains(QStringLiteral("node later")));
    }

    void aLoadGoesOnWhenTheProjectBeforeItIsUnloaded()
    {
        TestProject before;
        TestProject project;
        fill(project);
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        slowDown(reader);
        reader.init();
        before.activate();
        project.activate();
        QVERIFY(reader.isLoading());
        diary.take();

        before.close();

        QCOMPARE(diary.take(), QStringList {QStringLiteral("all removed")});
        QVERIFY(reader.isLoading());
        QTRY_VERIFY_WITH_TIMEOUT(diary.entries.contains(QStringLiteral("loaded")), 10000);
        QVERIFY(diary.take().contains(QStringLiteral("node ") + QString::number(manyNodes - 1)));
        project.addNode(QStringLiteral("later"));
        QTRY_VERIFY(diary.entries.contains(QStringLiteral("node later")));
    }

    void aLoadEndsWithTheUnloadingOfItsProject()
    {
        TestProject project;
        fill(project);
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        slowDown(reader);
        reader.init();
        project.activate();
        QVERIFY(reader.isLoading());
        diary.take();

        emit Torvik::Database::CDatabaseLibrary::dbAccessManager()->projectUnloading(project.project());

        QVERIFY(!reader.isLoading());
        QCOMPARE(diary.take(), (QStringList {QStringLiteral("loaded"), QStringLiteral("all removed")}));
    }
};

QTEST_GUILESS_MAIN(tst_DomainReaderProjects)
#include "tst_DomainReaderProjects.moc"
