#include "common/TestProject.h"
#include "domain/boundary/BaseServices.h"

#include <QCryptographicHash>
#include <QSqlQuery>

using namespace Torvik::Database;
using Kx::Test::TestProject;

namespace {

/** What lies in a folder, with content and time of change. */
QStringList snapshot(const QString& folder)
{
    QStringList result;
    for (const QFileInfo& info : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name)) {
        QFile file(info.filePath());
        result << info.fileName() + ' ' + info.lastModified().toString(Qt::ISODateWithMs) +
                      (file.open(QIODevice::ReadOnly)
                           ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5).toHex()
                           : QByteArray("unreadable"));
    }
    return result;
}

StoreStatus executeOn(const QString& file, const QStringList& statements)
{
    StoreStatus status;
    const auto connection = QFileInfo::exists(file) ? SqlConnection::open(file, SqlConnection::ReadWrite, status)
                                                    : SqlConnection::create(file, status);
    for (const QString& statement : statements) {
        if (status) {
            status = connection->execute(statement);
        }
    }
    return status;
}

using Spoil = std::function<void(const QString& file)>;

} // namespace

Q_DECLARE_METATYPE(Spoil)

class tst_ProjectStore : public QObject {
    Q_OBJECT

private slots:
    void aNewProjectHasItsFolders()
    {
        TestProject p;
        const QString path = p.project()->projectPath();

        QVERIFY(path.endsWith('/'));
        QVERIFY(QFileInfo::exists(path + "project.db"));
        QVERIFY(QDir(path + Torvik::Base::CFileSystemNames::documentationPathPart()).exists());
        QVERIFY(QDir(path + Torvik::Base::CFileSystemNames::graphics3DPathPart()).exists());
        QVERIFY(p.project()->projectionWKT().isEmpty());
    }

    void theDatabaseIsMarkedAndKeepsALog()
    {
        TestProject p;
        StoreStatus status;
        const auto connection = SqlConnection::open(p.path() + "/project.db", SqlConnection::ReadOnly, status);

        QCOMPARE(connection->value("PRAGMA user_version", status).toInt(), 1);
        QCOMPARE(connection->value("PRAGMA application_id", status).toInt(), 0x4B78506A);
        QCOMPARE(connection->value("PRAGMA journal_mode", status).toString(), QString("wal"));
        QCOMPARE(connection->value("PRAGMA foreign_keys", status).toInt(), 1);
        QVERIFY(status.ok());
    }

    void aWriteOfAnyConnectionIsOnTheDisk()
    {
        constexpr int full = 2;
        QTemporaryDir dir;
        StoreStatus status;
        const auto made = SqlConnection::create(dir.filePath("made.db"), status);
        const auto opened = SqlConnection::open(dir.filePath("made.db"), SqlConnection::ReadWrite, status);

        QVERIFY(made && opened);
        QCOMPARE(made->value("PRAGMA synchronous", status).toInt(), full);
        QCOMPARE(opened->value("PRAGMA synchronous", status).toInt(), full);
    }

    void aClosedProjectLeavesNoFilesOfItsConnections()
    {
        TestProject p;
        p.addNode("A");
        p.close();

        QCOMPARE(QDir(p.path()).entryList(QDir::Files), QStringList {"project.db"});
    }

    void aFolderInUseIsNotMadeAProject()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath("letter.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();

        const StoreStatus made = ProjectStore::create(dir.path());

        QVERIFY(!made.ok());
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList {"letter.txt"});
    }

    void anEmptyFolderBecomesAProject()
    {
        QTemporaryDir dir;

        QVERIFY(ProjectStore::create(dir.path()).ok());

        QVERIFY(QFileInfo::exists(dir.filePath("project.db")));
    }

    void aProjectThatFailsWhileItIsFilledLeavesNothing()
    {
        QTemporaryDir dir;

        const StoreStatus made = ProjectStore::create(dir.filePath("p"), {}, [](BulkWriter& writer) {
            const StoreStatus first = writer.insert(NodeObjectType, {}, {{"OBJ_Key", "A"}});
            return first ? StoreStatus {"the source ended early"} : first;
        });

        QCOMPARE(made.error, QString("the source ended early"));
        QVERIFY(QDir(dir.path()).isEmpty());
    }

    void aProjectWithAnUnknownColumnIsNotMade()
    {
        QTemporaryDir dir;

        const StoreStatus made = ProjectStore::create(dir.filePath("p"), {{"NO_COLUMN", 1}});

        QVERIFY(!made.ok());
        QVERIFY(made.error.startsWith(dir.filePath("p/project.db")));
        QVERIFY(QDir(dir.path()).isEmpty());
    }

    void whatIsNoProjectOfOursSaysWhyAndStaysAsItIs_data()
    {
        QTest::addColumn<Spoil>("spoil");
        QTest::addColumn<QString>("cause");
        const auto truncate = [](qint64 size) {
            return Spoil([size](const QString& file) { QVERIFY(QFile::resize(file, size)); });
        };
        const auto execute = [](const QStringList& statements) {
            return Spoil([statements](const QString& file) { QVERIFY(executeOn(file, statements).ok()); });
        };
        QTest::newRow("missing") << Spoil([](const QString& file) { QVERIFY(QFile::remove(file)); })
                                 << "there is no such file";
        QTest::newRow("empty") << truncate(0) << "damaged";
        QTest::newRow("cut short") << truncate(8192) << "damaged";
        QTest::newRow("only a header") << truncate(100) << "damaged";
        QTest::newRow("overwritten") << Spoil([](const QString& file) {
            QFile opened(file);
            QVERIFY(opened.open(QIODevice::ReadWrite));
            opened.seek(4096);
            opened.write(QByteArray(8192, 'x'));
        }) << "damaged";
        QTest::newRow("no database") << Spoil([](const QString& file) {
            QFile opened(file);
            QVERIFY(opened.open(QIODevice::WriteOnly));
            opened.write(QByteArray(5000, 'x'));
        }) << "no database";
        QTest::newRow("another program's") << Spoil([](const QString& file) {
            QVERIFY(QFile::remove(file));
            QVERIFY(executeOn(file, {"CREATE TABLE THINGS (A)"}).ok());
        }) << "another program";
        QTest::newRow("newer") << execute({"PRAGMA user_version = 99"}) << "newer version";
        QTest::newRow("a table gone") << execute({"DROP TABLE SECOBS"}) << "damaged";
        QTest::newRow("the project's row gone") << execute({"DELETE FROM PROJECT"}) << "damaged";
        QTest::newRow("write-protected") << Spoil([](const QString& file) {
            QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup));
        }) << "read-only";
        QTest::newRow("write-protected folder") << Spoil([](const QString& file) {
            QVERIFY(QFile::setPermissions(QFileInfo(file).path(), QFile::ReadOwner | QFile::ExeOwner));
        }) << "read-only";
    }

    void whatIsNoProjectOfOursSaysWhyAndStaysAsItIs()
    {
        QFETCH(Spoil, spoil);
        QFETCH(QString, cause);
        TestProject p;
        p.addNode("A");
        p.close();
        const QString file = ProjectStore::databaseFile(p.path());
        spoil(file);
        const QStringList before = snapshot(p.path());

        const OpenedProject opened = ProjectStore::instance().open(p.path());

        QVERIFY(!opened.project);
        QVERIFY2(opened.error.contains(file) && opened.error.contains(cause), qPrintable(opened.error));
        QCOMPARE(snapshot(p.path()), before);
        QFile::setPermissions(p.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void whatAProgramThatDiedHadWrittenIsThere()
    {
        TestProject p;
        const QString id = p.addNode("A")->id();
        const QTemporaryDir dir;
        QVERIFY(QDir(p.path()).exists("project.db-wal"));
        for (const char* name : {"project.db", "project.db-wal"}) {
            QVERIFY(QFile::copy(p.path() + '/' + name, dir.filePath(name)));
        }

        const OpenedProject opened = ProjectStore::instance().open(dir.path());

        QVERIFY2(opened.project, qPrintable(opened.error));
        QVERIFY(opened.project->lookupObject(id));
        ProjectStore::instance().close(opened.project);
    }

    void aWriteProtectedProjectOpensForReading()
    {
        TestProject p;
        p.addNode("A");
        p.close();
        QVERIFY(QFile::setPermissions(ProjectStore::databaseFile(p.path()), QFile::ReadOwner | QFile::ReadGroup));
        const QStringList before = snapshot(p.path());

        const OpenedProject opened = ProjectStore::instance().open(p.path(), ProjectStore::ReadOnly);

        QVERIFY2(opened.project, qPrintable(opened.error));
        const auto a = opened.project->node(0);
        a->updateValue("OBJ_Key", "New");
        QVERIFY(ProjectStore::instance().writeObject(a, 1).error.contains("reading only"));
        ProjectStore::instance().close(opened.project);
        QCOMPARE(snapshot(p.path()), before);
    }

    void openingInTheBackgroundDeliversLater()
    {
        TestProject p;
        p.addNode("A");
        p.close();
        OpenedProject opened;
        bool done = false;

        ProjectStore::instance().openInBackground(p.path(), ProjectStore::ReadWrite, this,
                                                  [&](const OpenedProject& result) {
                                                      opened = result;
                                                      done = true;
                                                  });
        QVERIFY(!done);

        QTRY_VERIFY(done);
        QVERIFY2(opened.project, qPrintable(opened.error));
        opened.project->node(0)->updateValue("OBJ_Key", "New");
        QVERIFY(ProjectStore::instance().writeObject(opened.project->node(0), 1).ok());
        ProjectStore::instance().close(opened.project);
    }

    void openingInTheBackgroundTellsItsErrorAndForgetsTheDead()
    {
        QTemporaryDir dir;
        OpenedProject opened;
        auto context = std::make_unique<QObject>();
        bool calledForTheDead = false;
        ProjectStore::instance().openInBackground(dir.path(), ProjectStore::ReadWrite, context.get(),
                                                  [&](const OpenedProject&) { calledForTheDead = true; });
        context.reset();

        ProjectStore::instance().openInBackground(dir.path(), ProjectStore::ReadWrite, this,
                                                  [&](const OpenedProject& result) { opened = result; });

        QTRY_VERIFY(opened.error.contains("there is no such file"));
        QVERIFY(!calledForTheDead);
    }

    void whatChangedWhileReadingInTheBackgroundIsFollowed()
    {
        TestProject p;
        const QString id = p.addNode("A")->id();
        const OpenedProject second = ProjectStore::instance().open(p.path());
        const auto a = p.project()->node(0);

        a->updateValue("OBJ_Key", "New");
        QVERIFY(ProjectStore::instance().writeObject(a, 1).ok());

        QTRY_COMPARE(second.project->lookupObject(id)->readValue("OBJ_Key").toString(), QString("New"));
        ProjectStore::instance().close(second.project);
    }

    void jobsStandInTheProject()
    {
        TestProject p;

        const InsertedObject job = ProjectStore::instance().insertJob(p.project(), {{"JOB_Name", "Tuesday"}});
        p.activate();
        Torvik::AppState::instance().setActiveJob(job.object);

        QVERIFY2(job.object, qPrintable(job.error));
        QCOMPARE(Torvik::AppState::instance().getActiveJob()->id(), job.object->id());
        QCOMPARE(ProjectStore::instance().jobs(p.project()).value(0)->readValue("JOB_Name").toString(),
                 QString("Tuesday"));
    }

    void aTransactionIsUndoneUnlessCommitted()
    {
        TestProject p;
        const auto a = p.addNode("A");
        StoreStatus status;
        const auto connection = SqlConnection::open(p.path() + "/project.db", SqlConnection::ReadWrite, status);
        {
            SqlTransaction transaction(*connection);
            QVERIFY(transaction.begun().ok());
            QVERIFY(connection->execute("UPDATE NODE SET OBJ_Key = 'X'").ok());
        }
        QCOMPARE(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Key").toString(), QString("A"));

        SqlTransaction transaction(*connection);
        QVERIFY(connection->execute("UPDATE NODE SET OBJ_Key = 'X'").ok());
        QVERIFY(transaction.commit().ok());

        QCOMPARE(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Key").toString(), QString("X"));
    }
};

QTEST_GUILESS_MAIN(tst_ProjectStore)
#include "tst_ProjectStore.moc"
