#include "ReaderDiary.h"
#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "geo/GdalGeoProjector.h"
#include "host/domain/NotificationManager.h"

#include <QSignalSpy>
#include <QtTest>

using namespace Torvik::View3d;
using Kx::Test::ReaderDiary;
using Kx::Test::TestProject;
using Torvik::AppState;
using Torvik::Database::ProjectStore;

class tst_DomainReader : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        AppState::instance().setActiveProject({});
        GdalGeoProjector::instance()->deinit();
    }

    void aProjectIsToldInTheOrderThatItsObjectsNeed()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"));
        const auto section = project.addSection(QStringLiteral("S"), a, {});
        const auto lateral = project.addLateral(QStringLiteral("L"), section);
        project.addInspection(lateral, {}, 0);
        project.addInspection(section);
        project.addInspection(section);
        project.addNode(QStringLiteral("B"));
        project.addSection(QStringLiteral("without inspection"), a, {});
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        QVERIFY(diary.take().isEmpty());

        project.activate();

        QCOMPARE(diary.take(),
                 (QStringList {QStringLiteral("node A"), QStringLiteral("node B"), QStringLiteral("section S"),
                               QStringLiteral("section S"), QStringLiteral("lateral L 1"), QStringLiteral("loaded")}));
    }

    void aProjectThatIsActiveAlreadyIsToldAtTheStartWithItsInspection()
    {
        TestProject project;
        const auto section = project.addSection(QStringLiteral("S"), project.addNode(QStringLiteral("A")), {});
        const auto inspection = project.addInspection(section);
        project.activate();
        AppState::instance().setActiveInspection(inspection);
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);

        reader.init();

        QCOMPARE(diary.take(), (QStringList {QStringLiteral("node A"), QStringLiteral("section S"),
                                             QStringLiteral("loaded"), QStringLiteral("active S")}));
    }

    void aProjectWithoutNodesIsFollowedAllTheSame()
    {
        TestProject project;
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        QCOMPARE(diary.take(), QStringList {QStringLiteral("loaded")});

        project.addNode(QStringLiteral("A"));

        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("node A")});
        diary.take();
    }

    void aProjectThatIsNotFor3dIsNeitherToldNorFollowed()
    {
        TestProject flat({}, false);
        TestProject project;
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        diary.take();

        flat.activate();
        flat.addNode(QStringLiteral("A"));
        QTest::qWait(50);

        QVERIFY(diary.take().isEmpty());
    }

    void whatWasMadeBeforeTheProjectBecameActiveIsToldOnce()
    {
        TestProject project;
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.addNode(QStringLiteral("A"));

        project.activate();
        QTest::qWait(50);

        QCOMPARE(diary.take(), (QStringList {QStringLiteral("node A"), QStringLiteral("loaded")}));
    }

    void aClosedProjectIsDroppedAndItsIndexEmptied()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"));
        project.addSection(QStringLiteral("S"), a, {});
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        QCOMPARE(reader.getConnectedSections(a->id()).size(), 1);
        diary.take();

        AppState::instance().setActiveProject({});

        QCOMPARE(diary.take(), QStringList {QStringLiteral("all removed")});
        QVERIFY(reader.nodeToPipeParentMapping().isEmpty());
    }

    void theSceneIsEmptiedBeforeTheProjectIsUnloaded()
    {
        TestProject project;
        project.addNode(QStringLiteral("A"));
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        diary.take();

        project.close();

        QVERIFY(diary.take().contains(QStringLiteral("all removed")));
    }

    void theProjectsSystemIsHandedToAProjectorWithoutOne()
    {
        const QString wkt = QStringLiteral("EPSG:25832");
        TestProject project(wkt);
        DomainReader reader(nullptr);
        reader.init();
        project.activate();
        // projectionString() is empty until the scene is tied; the tie shows what was handed over.
        GdalGeoProjector::instance()->initFromMap(52.5, 9.5, 0);
        QCOMPARE(GdalGeoProjector::instance()->projectionString(), wkt);
    }

    void whatIsMadeLaterTakesTheSamePath()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"));
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        diary.take();

        const auto section = project.addSection(QStringLiteral("S"), a, {});
        const auto inspection = project.addInspection(section);
        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("section S")});
        diary.take();
        QCOMPARE(reader.getConnectedSections(a->id()), QList<QString> {section->id()});

        project.addObservation(inspection, QStringLiteral("BAB"), 1.5);
        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("observation  0")});
        diary.take();
    }

    void aNewInspectionOfALateralTravelsTheSectionsPath()
    {
        TestProject project;
        const auto lateral = project.addLateral(QStringLiteral("L"), {});
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        diary.take();

        project.addInspection(lateral, {}, 0);

        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("section L")});
        diary.take();
    }

    void aLateralIsFoundAtItsNodeWithItsFirstNewInspection()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"));
        const auto lateral = project.addLateral(QStringLiteral("L"), {}, {{"OBJ_FromNode_REF", a->id()}});
        project.addInspection(lateral, {}, 0);
        DomainReader reader(nullptr);
        reader.init();
        project.activate();
        QCOMPARE(reader.getConnectedSections(a->id()), QList<QString>());

        project.addInspection(lateral, {}, 0);

        QTRY_COMPARE(reader.getConnectedSections(a->id()), QList<QString> {lateral->id()});
    }

    void everythingIsReadBeforeTheFirstObjectIsTold()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"));
        const auto b = project.addNode(QStringLiteral("B"));
        project.addSection(QStringLiteral("S"), a, b);
        project.addSection(QStringLiteral("T"), b, a);
        DomainReader reader(nullptr);
        QList<int> ends;
        connect(&reader, &DomainReader::nodeInserted, this,
                [&] { ends.append(reader.nodeToPipeParentMapping().size()); });
        reader.init();

        project.activate();

        QCOMPARE(ends, (QList<int> {4, 4}));
    }

    void theIndexIsUpToDateWhenASectionIsTold()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"));
        const auto b = project.addNode(QStringLiteral("B"));
        DomainReader reader(nullptr);
        reader.init();
        project.activate();
        QList<QString> atA;
        QList<QString> atB;
        connect(&reader, &DomainReader::sectionInspectionInserted, this,
                [&] { atA = reader.getConnectedSections(a->id()); });
        connect(&reader, &DomainReader::sectionModified, this, [&] { atB = reader.getConnectedSections(b->id()); });

        const auto section = project.addSection(QStringLiteral("S"), a, {});
        project.addInspection(section);
        QTRY_COMPARE(atA, QList<QString> {section->id()});
        section->updateValue(QStringLiteral("OBJ_ToNode_REF"), b->id());
        Torvik::Database::CDatabaseLibrary::dbAccessManager()->updateObject(section, 1);

        QTRY_COMPARE(atB, QList<QString> {section->id()});
    }

    void changesAreToldByTheKindOfTheirObject()
    {
        TestProject project;
        const auto node = project.addNode(QStringLiteral("A"));
        const auto section = project.addSection(QStringLiteral("S"), node, {});
        const auto lateral = project.addLateral(QStringLiteral("L"), section);
        const auto inspection = project.addInspection(section);
        const auto observation = project.addObservation(inspection, QStringLiteral("BAB"), 1.5);
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        QCoreApplication::processEvents();
        diary.take();

        const auto change = [&](const CDomainObjectPointer& object, const char* key, const QVariant& value) {
            object->updateValue(QLatin1String(key), value);
            Torvik::Database::CDatabaseLibrary::dbAccessManager()->updateObject(object, 1);
        };
        change(node, "OBJ_DepthToInvert", 2.0);
        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("node modified A")});
        diary.take();
        change(section, "OBJ_Size1", 400);
        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("section modified S")});
        diary.take();
        change(lateral, "OBJ_Size1", 150);
        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("section modified L")});
        diary.take();
        change(inspection, "INS_InspectionDir", 2);
        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("inspection modified S")});
        diary.take();
        change(observation, "OBS_Distance", 2.5);
        QTRY_COMPARE(diary.entries, QStringList {QStringLiteral("observation modified ")});
        diary.take();
        change(project.project(), "PRJ_Name", QStringLiteral("New name"));
        QTest::qWait(50);
        QCOMPARE(diary.take(), QStringList());
    }

    void aSectionWhoseEndsChangeIsFoundAtItsNewNodes()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"));
        const auto b = project.addNode(QStringLiteral("B"));
        const auto section = project.addSection(QStringLiteral("S"), a, {});
        DomainReader reader(nullptr);
        reader.init();
        project.activate();
        QVERIFY(reader.nodeToPipeParentMapping().contains(QString(), section->id()));

        section->updateValue(QStringLiteral("OBJ_FromNode_REF"), b->id());
        Torvik::Database::CDatabaseLibrary::dbAccessManager()->updateObject(section, 1);

        QTRY_COMPARE(reader.getConnectedSections(b->id()), QList<QString> {section->id()});
        QVERIFY(reader.getConnectedSections(a->id()).isEmpty());
    }

    void aDeletedObjectIsToldByItsId()
    {
        TestProject project;
        const auto node = project.addNode(QStringLiteral("A"));
        const QString id = node->id();
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        QCoreApplication::processEvents();
        diary.take();

        ProjectStore::instance().deleteObject(node);

        QTRY_VERIFY(diary.entries.contains(QStringLiteral("removed ") + id));
    }

    void aNewInspectionWhosePipeHasGoneIsLoggedOnly()
    {
        TestProject project;
        project.activate();
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        diary.take();
        CDomainObjectPointer orphan;
        {
            TestProject gone;
            orphan = gone.addInspection(gone.addSection(QStringLiteral("S"), {}, {}), {}, 0);
            QCoreApplication::processEvents();
        }
        QTest::qWait(50);
        diary.take();
        Kx::Test::LogCapture log;

        Torvik::Database::NotificationManager::instance().notify(Torvik::Database::CDomainNotification::ObjectCreated,
                                                                 orphan);

        QTRY_COMPARE(log.count(4, QStringLiteral("View3d::DomainReader"), QStringLiteral("Parent object needed")), 1);
        QCOMPARE(diary.take(), QStringList());
    }

    void fillingInspectionsInTellsNothing()
    {
        TestProject project;
        const auto section = project.addSection(QStringLiteral("S"), {}, {});
        project.addInspection(section, {}, 0);
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        diary.take();

        reader.fillinInspPoints(section);
        QTest::qWait(50);

        QCOMPARE(diary.take(), QStringList());
    }

    void anObjectThatComesBackUnderItsIdIsToldAsGoneAndAsNew()
    {
        TestProject project;
        const auto section = project.addSection(QStringLiteral("S"), {}, {});
        const auto other = project.addSection(QStringLiteral("T"), {}, {});
        const auto inspection = project.addInspection(section);
        const QString id = inspection->id();
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        QCoreApplication::processEvents();
        diary.take();

        // What happens to the records when another program moves an inspection to another pipe.
        QVERIFY(ProjectStore::instance().deleteObject(inspection));
        project.addInspection(other, {}, 0, {{"INS_PK", id}});

        QTRY_COMPARE(diary.entries, (QStringList {QStringLiteral("removed ") + id, QStringLiteral("section T")}));
        diary.take();
    }

    void anUnloadedObjectIsToldUnlessAnotherStandsUnderItsId()
    {
        TestProject project;
        TestProject other;
        project.addNode(QStringLiteral("A"));
        const QString id = project.project()->id();
        const QString otherId = other.project()->id();
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        reader.init();
        project.activate();
        const auto again = ProjectStore::instance().open(project.path()).project;
        QVERIFY(again);
        AppState::instance().setActiveProject(again);
        diary.take();

        project.close();
        other.close();

        QTRY_VERIFY(diary.entries.contains(QStringLiteral("removed ") + otherId));
        QVERIFY(!diary.take().contains(QStringLiteral("removed ") + id));
        ProjectStore::instance().close(again);
    }

    void aLargeProjectIsToldInSlicesAndNothingIsLostMeanwhile()
    {
        TestProject project;
        for (int i = 0; i < 30; ++i)
            project.addNode(QString::number(i));
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        int told = 0;
        QVector<int> progress;
        connect(&reader, &DomainReader::nodeInserted, this, [&] {
            ++told;
            QTest::qSleep(20); // an object that is slow to build
        });
        connect(&reader, &DomainReader::loadingProgress, this, [&](int done, int) { progress.append(done); });
        reader.init();

        project.activate();

        QVERIFY(reader.isLoading());
        QVERIFY(told < 30);
        project.addNode(QStringLiteral("later"));
        QTRY_VERIFY_WITH_TIMEOUT(!reader.isLoading(), 10000);
        QTRY_COMPARE(told, 31);
        QVERIFY(progress.size() > 2);
        QVERIFY(std::is_sorted(progress.begin(), progress.end()));
        QCOMPARE(progress.last(), 30);
        const int loaded = diary.entries.indexOf(QStringLiteral("loaded"));
        QCOMPARE(diary.entries.indexOf(QStringLiteral("node later")), loaded + 1);
    }

    void aProjectClosedDuringItsLoadIsToldNoFurther()
    {
        TestProject project;
        for (int i = 0; i < 30; ++i)
            project.addNode(QString::number(i));
        DomainReader reader(nullptr);
        int told = 0;
        connect(&reader, &DomainReader::nodeInserted, this, [&] {
            ++told;
            QTest::qSleep(20);
        });
        reader.init();
        project.activate();
        QVERIFY(reader.isLoading());

        AppState::instance().setActiveProject({});
        const int before = told;
        QTest::qWait(100);

        QCOMPARE(told, before);
        QVERIFY(!reader.isLoading());
    }

    void aPausedLoadGoesOnWhenItIsToldTo()
    {
        TestProject project;
        project.addNode(QStringLiteral("A"));
        DomainReader reader(nullptr);
        ReaderDiary diary(reader);
        connect(&reader, &DomainReader::loadingStarted, this, [&] { reader.pauseLoad(); });
        reader.init();
        project.activate();
        QTest::qWait(30);
        QVERIFY(diary.take().isEmpty());

        reader.resumeLoad();

        QCOMPARE(diary.take(), (QStringList {QStringLiteral("node A"), QStringLiteral("loaded")}));
    }
};

QTEST_GUILESS_MAIN(tst_DomainReader)
#include "tst_DomainReader.moc"
