#include "common/TestProject.h"

#include <QElapsedTimer>

using namespace Torvik::Database;

class tst_BulkWriter : public QObject {
    Q_OBJECT

private slots:
    void manyPipesComeBackAsTheyWereWritten()
    {
        constexpr int count = 5000;
        QTemporaryDir dir;

        const StoreStatus made = ProjectStore::create(dir.filePath("p"), {{"PRJ_Name", "Big"}}, [](BulkWriter& writer) {
            StoreStatus status;
            for (int i = 0; status && i < count; ++i) {
                QString pipe;
                QString inspection;
                status = writer.insert(NodeObjectType, {}, {{"OBJ_PK", "n" + QString::number(i)}, {"OBJ_Key", i}});
                if (status) {
                    status = writer.insert(i % 2 ? LateralObjectType : SectionObjectType, {},
                                           {{"OBJ_FromNode_REF", "n" + QString::number(i)}}, &pipe);
                }
                if (status) {
                    status = writer.insert(PipeInspectionObjectType, pipe,
                                           {{"INS_StartNode_REF", "n" + QString::number(i)}}, &inspection);
                }
                if (status) {
                    status = writer.insert(PipeObservationObjectType, inspection, {{"OBS_Code", "BAB"}});
                }
            }
            return status;
        });
        QVERIFY2(made.ok(), qPrintable(made.error));
        int lastDone = 0;
        int total = 0;
        const OpenedProject opened =
            ProjectStore::instance().open(dir.filePath("p"), ProjectStore::ReadWrite, [&](int done, int all) {
                QVERIFY(done >= lastDone);
                lastDone = done;
                total = all;
            });

        QVERIFY2(opened.project, qPrintable(opened.error));
        QCOMPARE(lastDone, 4 * count);
        QCOMPARE(total, 4 * count);
        QCOMPARE(opened.project->nodeCount(), count);
        QCOMPARE(opened.project->sectionCount(), count / 2);
        QCOMPARE(opened.project->lateralCount(), count / 2);
        const auto last = opened.project->section(count / 2 - 1);
        QCOMPARE(last->inspection(0)->startNode()->id(), QString("n4998"));
        QCOMPARE(last->inspection(0)->observationCount(), 1);
        ProjectStore::instance().close(opened.project);
    }

    void objectsThatAreThereChange()
    {
        QTemporaryDir dir;
        QVERIFY(ProjectStore::create(dir.filePath("p"), {}, [](BulkWriter& writer) {
            return writer.insert(NodeObjectType, {}, {{"OBJ_PK", "n"}, {"OBJ_Key", "old"}, {"OBJ_Street", "Weg"}});
        }));
        BulkWriter writer;
        QVERIFY(writer.begin(dir.filePath("p")));

        QVERIFY(writer.update(NodeObjectType, "n", {{"OBJ_Key", "new"}}));
        QVERIFY(writer.commit());

        const OpenedProject opened = ProjectStore::instance().open(dir.filePath("p"));
        QCOMPARE(opened.project->node(0)->readValue("OBJ_Key").toString(), QString("new"));
        QCOMPARE(opened.project->node(0)->readValue("OBJ_Street").toString(), QString("Weg"));
        ProjectStore::instance().close(opened.project);
    }

    void aChangeOfNothingIsRefusedAndWithItTheWhole()
    {
        QTemporaryDir dir;
        QVERIFY(ProjectStore::create(dir.filePath("p")));
        BulkWriter writer;
        QVERIFY(!writer.update(NodeObjectType, "n", {{"OBJ_Key", "new"}}));
        QVERIFY(writer.begin(dir.filePath("p")));
        QVERIFY(writer.insert(NodeObjectType, {}, {{"OBJ_PK", "a"}}));

        const StoreStatus missing = writer.update(NodeObjectType, "n", {{"OBJ_Key", "new"}});

        QVERIFY2(missing.error.contains("there is no n in table NODE"), qPrintable(missing.error));
        QVERIFY(!writer.commit());
    }

    void anOrphanIsRefusedAndWithItTheWhole()
    {
        QTemporaryDir dir;
        QVERIFY(ProjectStore::create(dir.filePath("p")).ok());
        {
            BulkWriter writer;
            QVERIFY(writer.begin(dir.filePath("p")).ok());
            QVERIFY(writer.insert(NodeObjectType, {}, {{"OBJ_Key", "A"}}).ok());
            QVERIFY(!writer.insert(PipeInspectionObjectType, "no such pipe", {}).ok());
            QVERIFY(!writer.insert(ProjectObjectType, {}, {}).ok());
            QVERIFY(!writer.commit().ok());
        }

        const OpenedProject opened = ProjectStore::instance().open(dir.filePath("p"));

        QCOMPARE(opened.project->nodeCount(), 0);
        ProjectStore::instance().close(opened.project);
    }

    void whatIsNotCommittedIsUndone()
    {
        QTemporaryDir dir;
        QVERIFY(ProjectStore::create(dir.filePath("p")).ok());
        {
            BulkWriter writer;
            QVERIFY(writer.begin(dir.filePath("p")).ok());
            QVERIFY(writer.insert(NodeObjectType, {}, {{"OBJ_Key", "A"}}).ok());
        }

        const OpenedProject opened = ProjectStore::instance().open(dir.filePath("p"));

        QCOMPARE(opened.project->nodeCount(), 0);
        ProjectStore::instance().close(opened.project);
    }

    void aWriterThatNeverBeganRefuses()
    {
        BulkWriter writer;

        QVERIFY(!writer.insert(NodeObjectType, {}, {}).ok());
        QVERIFY(!writer.setProjectValues({{"PRJ_Name", "x"}}).ok());
        QVERIFY(!writer.commit().ok());
    }
};

QTEST_GUILESS_MAIN(tst_BulkWriter)
#include "tst_BulkWriter.moc"
