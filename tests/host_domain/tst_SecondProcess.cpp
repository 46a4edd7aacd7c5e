#include "common/NotificationRecorder.h"
#include "common/TestProject.h"

#include <QProcess>

using namespace Torvik::Database;
using Kx::Test::NotificationRecorder;
using Kx::Test::TestProject;

namespace {

/** Lets another program do one thing to the project. */
void runWriter(const TestProject& project, const QStringList& arguments)
{
    QProcess writer;
    writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    writer.start(KX_PROJECT_WRITER, QStringList {project.path()} + arguments);
    QVERIFY(writer.waitForFinished(30000));
    QCOMPARE(writer.exitCode(), 0);
}

} // namespace

class tst_SecondProcess : public QObject {
    Q_OBJECT

private slots:
    void aChangedValueIsTakenOverAndTold()
    {
        TestProject p;
        const auto a = p.addNode("A");
        QCoreApplication::sendPostedEvents();
        NotificationRecorder recorder;

        runWriter(p, {"update", a->id(), "OBJ_Shape_WKT", "POINT ZM(1 2 3 4)"});

        QTRY_COMPARE(a->readValue("OBJ_Shape_WKT").toString(), QString("POINT ZM(1 2 3 4)"));
        QTRY_COMPARE(recorder.heard, (QStringList {"2 " + a->id() + " OBJ_Shape_WKT 0", "7"}));
    }

    void anAddedInspectionAppears()
    {
        TestProject p;
        const auto section = p.addSection("S", {}, {});
        QCoreApplication::sendPostedEvents();
        NotificationRecorder recorder;

        runWriter(p, {"inspect", section->id()});

        QTRY_COMPARE(section->inspectionCount(), 1);
        QTRY_COMPARE(recorder.heard, (QStringList {"4 " + section->inspection(0)->id(), "1 " + section->id(), "7"}));
    }

    void aDeletedPipeGoesWithAllBelow()
    {
        TestProject p;
        const auto section = p.addSection("S", {}, {});
        const auto inspection = p.addInspection(section);
        QCoreApplication::sendPostedEvents();
        NotificationRecorder recorder;

        runWriter(p, {"delete", section->id()});

        QTRY_COMPARE(p.project()->sectionCount(), 0);
        QVERIFY(!inspection->isValid());
        QTRY_VERIFY(recorder.heard.contains("5 " + section->id()));
        QVERIFY(recorder.heard.contains("5 " + inspection->id()));
    }

    void anImportAppearsAsAWhole()
    {
        TestProject p;
        const auto kept = p.addNode("kept");

        runWriter(p, {"import", "500"});

        QTRY_COMPARE(p.project()->nodeCount(), 501);
        QVERIFY(kept->isValid());
        // The log of changes works again after the import.
        runWriter(p, {"update", kept->id(), "OBJ_Key", "later"});
        QTRY_COMPARE(kept->readValue("OBJ_Key").toString(), QString("later"));
    }

    void ownChangesAreNotTakenForOnesOfOthers()
    {
        TestProject p;
        const auto a = p.addNode("A");
        const auto b = p.addNode("B");
        QCoreApplication::sendPostedEvents();
        NotificationRecorder recorder;

        // Both changes lie between two looks at the database.
        runWriter(p, {"update", b->id(), "OBJ_Key", "theirs"});
        a->updateValue("OBJ_Key", "ours");
        CDatabaseLibrary::dbAccessManager()->updateObject(a, 5000);

        QTRY_COMPARE(b->readValue("OBJ_Key").toString(), QString("theirs"));
        QTRY_COMPARE(recorder.heard.size(), 4);
        QCOMPARE(recorder.heard,
                 (QStringList {"2 " + a->id() + " OBJ_Key 5000", "7", "2 " + b->id() + " OBJ_Key 0", "7"}));
    }

    void aValueBeingChangedHereIsNotOverwritten()
    {
        TestProject p;
        const auto a = p.addNode("A");
        a->updateValue("OBJ_Key", "ours");

        runWriter(p, {"update", a->id(), "OBJ_Key", "theirs"});
        runWriter(p, {"update", a->id(), "OBJ_Street", "theirs"});
        QTRY_COMPARE(a->readValue("OBJ_Street").toString(), QString("theirs"));

        QCOMPARE(a->readValue("OBJ_Key").toString(), QString("ours"));
        CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);
        QCOMPARE(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Key").toString(), QString("ours"));
    }

    void aLogThatWasCutBackIsMadeUpForByComparingAll()
    {
        TestProject p;
        const auto a = p.addNode("A");
        const auto gone = p.addNode("gone");
        StoreStatus status;
        const auto other = SqlConnection::open(ProjectStore::databaseFile(p.path()), SqlConnection::ReadWrite, status);
        QVERIFY(other->execute("BEGIN IMMEDIATE").ok());
        QVERIFY(other->execute("UPDATE NODE SET OBJ_Key = 'theirs' WHERE OBJ_Key = 'A'").ok());
        QVERIFY(other->execute("DELETE FROM NODE WHERE OBJ_Key = 'gone'").ok());
        QVERIFY(other->execute("DELETE FROM CHANGELOG").ok());
        QVERIFY(other->execute("INSERT INTO NODE (OBJ_PK, OBJ_Key) VALUES ('new', 'new')").ok());
        QVERIFY(other->execute("COMMIT").ok());

        QTRY_COMPARE(a->readValue("OBJ_Key").toString(), QString("theirs"));
        QVERIFY(!gone->isValid());
        QVERIFY(p.project()->lookupObject("new"));
    }

    void aProjectThatAnotherProgramHoldsLockedSaysSo()
    {
        TestProject p;
        p.close();
        QProcess writer;
        writer.start(KX_PROJECT_WRITER, {p.path(), "lock"});
        QVERIFY(writer.waitForReadyRead(30000));

        const OpenedProject opened = ProjectStore::instance().open(p.path());
        writer.write("\n");
        writer.closeWriteChannel();
        QVERIFY(writer.waitForFinished(30000));

        QVERIFY(!opened.project);
        QVERIFY2(opened.error.contains("project.db") && opened.error.contains("locked"), qPrintable(opened.error));
        QVERIFY(ProjectStore::instance().open(p.path()).project);
    }
};

QTEST_GUILESS_MAIN(tst_SecondProcess)
#include "tst_SecondProcess.moc"
