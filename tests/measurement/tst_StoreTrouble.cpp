#include "MeasuredProject.h"
#include "RefusingDisk.h"

#include "domain/boundary/CDatabaseLibrary.h"
#include "host/domain/StoreTrouble.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>

#include <functional>
#include <memory>

#include <unistd.h>

using namespace Torvik::Database;
using Torvik::View3d::MeasurementPointsHandler;

namespace {

constexpr int longEnoughMs = 15000;
constexpr uid_t nobody = 65534;

MeasurementPointsHandler& handler()
{
    return *MeasurementPointsHandler::instance();
}

void measure(const QString& inspection, int first, int count)
{
    for (int i = first; i < first + count; ++i)
        handler().addRowToSECMP(inspection, measured(i), i, false);
}

/** Another program that writes, until it goes. */
class OtherProgram {
public:
    explicit OtherProgram(const QString& folder)
        : m_connection(SqlConnection::open(ProjectStore::databaseFile(folder), SqlConnection::ReadWrite, m_status))
        , m_transaction(*m_connection)
    {
    }
    bool writes() const { return bool(m_transaction.begun()); }

private:
    StoreStatus m_status;
    std::unique_ptr<SqlConnection> m_connection;
    SqlTransaction m_transaction;
};

/** Takes the right to write the database from everyone. Root has it anyway, so root becomes somebody else. */
class ReadOnlyFile {
public:
    explicit ReadOnlyFile(const QString& folder)
        : m_file(ProjectStore::databaseFile(folder))
        , m_wasRoot(::geteuid() == 0)
    {
        if (m_wasRoot) {
            for (const QString& name : {folder, QFileInfo(folder).path(), m_file, m_file + "-wal", m_file + "-shm"})
                m_ok = ::chown(qPrintable(name), nobody, nobody) == 0 && m_ok;
            m_ok = ::seteuid(nobody) == 0 && m_ok;
        }
        m_ok = QFile::setPermissions(m_file, QFile::ReadOwner) && m_ok;
    }
    ~ReadOnlyFile()
    {
        QFile::setPermissions(m_file, QFile::ReadOwner | QFile::WriteOwner);
        if (m_wasRoot && ::seteuid(0) != 0)
            qWarning("this is nobody from now on");
    }
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;
    bool ok() const { return m_ok; }

private:
    QString m_file;
    bool m_wasRoot;
    bool m_ok = true;
};

struct Spies {
    QSignalSpy begun {&StoreTrouble::instance(), &StoreTrouble::begun};
    QSignalSpy over {&StoreTrouble::instance(), &StoreTrouble::over};
    QSignalSpy lost {&StoreTrouble::instance(), &StoreTrouble::lost};
    QString told() const { return begun.value(0).value(0).toString(); }
};

} // namespace

/** What keeps a measurement from being stored is told once; when it is gone, everything is stored. */
class tst_StoreTrouble : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_project.reset(); }

    void aLockedDatabase();
    void aFullDisk();
    void aDiskThatBecameReadOnly();
    void aFileWithoutTheRightToWriteIsWrittenOn();
    void twoTroublesOneAfterTheOther();
    void whatCannotPassIsToldOnceAndNotRepeated();
    void aChangedObjectWaitsForALock();
    void aChangedObjectWaitsForRoom();
    void aShortLockIsNoTrouble();
    void ourOwnStatementsAreNoOtherProgram();
    void aChangedObjectNeedNotWaitForAllThatIsMeasured();
    void statementsRunAtOnceTakeTheirTurn();
    void aProjectThatIsClosedGivesUpAfterAWhile();
    void theNextProjectIsStoredAgain();

private:
    /** Five points are measured, cannot be stored while the trouble lasts, and are afterwards. */
    void throughTrouble(const QString& words, const std::function<void()>& end);

    std::unique_ptr<MeasuredProject> m_project;
    QString m_inspection;
};

void tst_StoreTrouble::init()
{
    m_project = std::make_unique<MeasuredProject>();
    m_inspection = m_project->openedWith(2);
}

void tst_StoreTrouble::throughTrouble(const QString& words, const std::function<void()>& end)
{
    const Spies spies;
    QElapsedTimer held;
    held.start();

    measure(m_inspection, 2, 5);
    QVERIFY2(held.elapsed() < 500, "the caller waited for the database");
    QTRY_COMPARE_WITH_TIMEOUT(spies.begun.count(), 1, longEnoughMs);
    QVERIFY2(spies.told().contains(words), qPrintable(spies.told()));
    QVERIFY2(spies.told().contains(ProjectStore::databaseFile(m_project->path())), qPrintable(spies.told()));
    QTest::qWait(4 * StoreTrouble::retryIntervalMs);
    QCOMPARE(spies.over.count(), 0);
    QCOMPARE(m_project->pointCount(m_project->key(m_inspection)), 2);
    end();
    QTRY_COMPARE_WITH_TIMEOUT(spies.over.count(), 1, longEnoughMs);
    handler().waitUntilStored();

    QCOMPARE(spies.begun.count(), 1);
    QCOMPARE(spies.lost.count(), 0);
    QCOMPARE(m_project->points(m_project->key(m_inspection)),
             QStringLiteral("1:0 0 0, 2:1 0 0, 3:2 0 0, 4:3 0 0, 5:4 0 0, 6:5 0 0, 7:6 0 0"));
    QCOMPARE(m_project->line(m_inspection), lineOf({0, 1, 2, 3, 4, 5, 6}));
}

void tst_StoreTrouble::aLockedDatabase()
{
    auto other = std::make_unique<OtherProgram>(m_project->path());
    QVERIFY(other->writes());

    throughTrouble(QStringLiteral("it is locked by another program. Close the other program"), [&] { other.reset(); });
}

void tst_StoreTrouble::aFullDisk()
{
    auto full = std::make_unique<RefusingDisk>();

    throughTrouble(QStringLiteral("the disk is full. Make room on the disk."), [&] { full.reset(); });
}

void tst_StoreTrouble::aDiskThatBecameReadOnly()
{
    auto disk = std::make_unique<RefusingDisk>(EROFS);

    throughTrouble(QStringLiteral("Check that the disk is connected and that you may write to it."),
                   [&] { disk.reset(); });
}

void tst_StoreTrouble::aFileWithoutTheRightToWriteIsWrittenOn()
{
    const Spies spies;
    const ReadOnlyFile file(m_project->path());
    QVERIFY(file.ok());

    measure(m_inspection, 2, 5);
    handler().waitUntilStored();

    // The project was opened while it could be written, and that lasts.
    QCOMPARE(m_project->line(m_inspection), lineOf({0, 1, 2, 3, 4, 5, 6}));
    QCOMPARE(m_project->pointCount(m_project->key(m_inspection)), 7);
    QCoreApplication::processEvents();
    QCOMPARE(spies.begun.count(), 0);
}

void tst_StoreTrouble::twoTroublesOneAfterTheOther()
{
    const Spies spies;
    for (int round = 0; round < 2; ++round) {
        auto full = std::make_unique<RefusingDisk>();
        measure(m_inspection, 2 + round, 1);
        QTRY_COMPARE_WITH_TIMEOUT(spies.begun.count(), 1 + round, longEnoughMs);
        full.reset();
        QTRY_COMPARE_WITH_TIMEOUT(spies.over.count(), 1 + round, longEnoughMs);
    }
    handler().waitUntilStored();
    QCOMPARE(m_project->line(m_inspection), lineOf({0, 1, 2, 3}));
}

void tst_StoreTrouble::whatCannotPassIsToldOnceAndNotRepeated()
{
    const Spies spies;
    MeasuredProject::execute(QStringLiteral("CREATE TRIGGER refusing BEFORE INSERT ON SECMP WHEN NEW.MP_X_Value < 4 "
                                            "BEGIN SELECT RAISE(ABORT, 'not this one'); END"));

    measure(m_inspection, 2, 3);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(m_inspection)), QStringLiteral("1:0 0 0, 2:1 0 0, 5:4 0 0"));
    QTRY_COMPARE(spies.lost.count(), 1);
    QVERIFY(spies.lost.first().first().toString().contains("project.db: not this one"));
    QCoreApplication::processEvents();
    QCOMPARE(spies.lost.count(), 1);
    QCOMPARE(spies.begun.count(), 0);
}

void tst_StoreTrouble::aChangedObjectWaitsForALock()
{
    const Spies spies;
    const QSignalSpy failed(&ProjectStore::instance(), &ProjectStore::writeFailed);
    const auto node = m_project->addNode("A");
    auto other = std::make_unique<OtherProgram>(m_project->path());
    QVERIFY(other->writes());
    QElapsedTimer held;
    held.start();

    node->updateValue("OBJ_Key", "New");
    CDatabaseLibrary::dbAccessManager()->updateObject(node, 5000);
    QVERIFY2(held.elapsed() < 1000, "the scene stood still");
    QTRY_COMPARE_WITH_TIMEOUT(spies.begun.count(), 1, longEnoughMs);
    QVERIFY2(spies.told().contains("locked"), qPrintable(spies.told()));
    other.reset();

    QTRY_COMPARE_WITH_TIMEOUT(spies.over.count(), 1, longEnoughMs);
    QCOMPARE(m_project->stored("NODE", "OBJ_PK", node->id(), "OBJ_Key").toString(), QStringLiteral("New"));
    QCOMPARE(failed.count(), 0);
}

void tst_StoreTrouble::aChangedObjectWaitsForRoom()
{
    const Spies spies;
    const auto node = m_project->addNode("A");
    auto full = std::make_unique<RefusingDisk>();

    node->updateValue("OBJ_Key", "New");
    CDatabaseLibrary::dbAccessManager()->updateObject(node, 5000);
    node->updateValue("OBJ_Key", "Newer");
    CDatabaseLibrary::dbAccessManager()->updateObject(node, 5000);
    QTRY_COMPARE_WITH_TIMEOUT(spies.begun.count(), 1, longEnoughMs);
    full.reset();

    QTRY_COMPARE_WITH_TIMEOUT(spies.over.count(), 1, longEnoughMs);
    QCOMPARE(spies.begun.count(), 1);
    QCOMPARE(m_project->stored("NODE", "OBJ_PK", node->id(), "OBJ_Key").toString(), QStringLiteral("Newer"));
}

void tst_StoreTrouble::aShortLockIsNoTrouble()
{
    const Spies spies;
    const auto node = m_project->addNode("A");
    auto other = std::make_unique<OtherProgram>(m_project->path());

    measure(m_inspection, 2, 1);
    node->updateValue("OBJ_Key", "New");
    CDatabaseLibrary::dbAccessManager()->updateObject(node, 5000);
    QTest::qWait(2 * StoreTrouble::retryIntervalMs);
    other.reset();

    QTRY_COMPARE(m_project->stored("NODE", "OBJ_PK", node->id(), "OBJ_Key").toString(), QStringLiteral("New"));
    handler().waitUntilStored();
    QCOMPARE(m_project->line(m_inspection), lineOf({0, 1, 2}));
    QTest::qWait(2 * StoreTrouble::retryIntervalMs);
    QCOMPARE(spies.begun.count(), 0);
    QCOMPARE(spies.over.count(), 0);
}

void tst_StoreTrouble::ourOwnStatementsAreNoOtherProgram()
{
    // Longer than a lock of another program takes to be told.
    constexpr int slowMs = 5000;
    const Spies spies;
    const auto node = m_project->addNode("A");
    const SlowDisk slow(slowMs);
    QElapsedTimer passed;
    passed.start();

    measure(m_inspection, 2, 1);
    QTest::qWait(50);
    node->updateValue("OBJ_Key", "New");
    CDatabaseLibrary::dbAccessManager()->updateObject(node, 5000);
    QVERIFY2(passed.elapsed() < 1000, "the scene stood still");
    QTRY_COMPARE_WITH_TIMEOUT(m_project->stored("NODE", "OBJ_PK", node->id(), "OBJ_Key").toString(),
                              QStringLiteral("New"), longEnoughMs);

    QVERIFY2(passed.elapsed() > slowMs, "it had nothing to wait for");
    handler().waitUntilStored();
    QTest::qWait(2 * StoreTrouble::retryIntervalMs);
    QCOMPARE(spies.begun.count(), 0);
    QCOMPARE(spies.over.count(), 0);
    QCOMPARE(m_project->line(m_inspection), lineOf({0, 1, 2}));
}

void tst_StoreTrouble::aChangedObjectNeedNotWaitForAllThatIsMeasured()
{
    constexpr int many = 3000;
    const auto node = m_project->addNode("A");
    measure(m_inspection, 2, many);

    node->updateValue("OBJ_Key", "New");
    CDatabaseLibrary::dbAccessManager()->updateObject(node, 5000);
    const QString stored = m_project->stored("NODE", "OBJ_PK", node->id(), "OBJ_Key").toString();
    const int pointsThen = m_project->pointCount(m_project->key(m_inspection));

    QCOMPARE(stored, QStringLiteral("New"));
    QVERIFY2(pointsThen < 2 + many, "all was measured before");
    handler().waitUntilStored();
    QCOMPARE(m_project->pointCount(m_project->key(m_inspection)), 2 + many);
}

void tst_StoreTrouble::statementsRunAtOnceTakeTheirTurn()
{
    constexpr int slowMs = 1500;
    const SlowDisk slow(slowMs);
    QElapsedTimer passed;
    passed.start();
    measure(m_inspection, 2, 1);
    QTest::qWait(50);

    SqlUserTask reading(QStringLiteral("SELECT COUNT(*) FROM SECMES"), {});
    reading.executeNow();
    const qint64 read = passed.elapsed();
    SqlUserTask writing(QStringLiteral("UPDATE SECMES SET MES_Type = 'X'"), {});
    writing.executeNow();
    const qint64 written = passed.elapsed();

    QCOMPARE(reading.getStringResult(0, 0), QStringLiteral("1"));
    QVERIFY2(read < slowMs, "reading waited for a write");
    QVERIFY2(written >= slowMs, "there was nothing to wait for");
    QCOMPARE(m_project->stored("SECMES", "MES_Inspection_FK", m_inspection, "MES_Type").toString(),
             QStringLiteral("X"));
}

void tst_StoreTrouble::aProjectThatIsClosedGivesUpAfterAWhile()
{
    const Spies spies;
    const auto node = m_project->addNode("A");
    const RefusingDisk full;
    measure(m_inspection, 2, 3);
    node->updateValue("OBJ_Key", "New");
    CDatabaseLibrary::dbAccessManager()->updateObject(node, 5000);
    QTRY_COMPARE_WITH_TIMEOUT(spies.begun.count(), 1, longEnoughMs);
    QElapsedTimer closing;
    closing.start();

    m_project->close();

    QVERIFY2(closing.elapsed() < 3 * StoreTrouble::lastPatienceMs, "closing waits for ever");
    QCOMPARE(spies.lost.count(), 1);
    // Three points, their line, and the node.
    QCOMPARE(spies.lost.first().first().toString(), QStringLiteral("5 change(s) could not be stored and are lost."));
    QTRY_COMPARE(spies.over.count(), 1);
}

void tst_StoreTrouble::theNextProjectIsStoredAgain()
{
    const Spies spies;
    {
        const RefusingDisk full;
        measure(m_inspection, 2, 1);
        QTRY_COMPARE_WITH_TIMEOUT(spies.begun.count(), 1, longEnoughMs);
        m_project->close();
    }
    QTRY_COMPARE(spies.over.count(), 1);

    MeasuredProject next;
    const QString inspection = next.openedWith(3);

    QCOMPARE(next.line(inspection), lineOf({0, 1, 2}));
    QCOMPARE(spies.lost.count(), 1);
}

QTEST_GUILESS_MAIN(tst_StoreTrouble)
#include "tst_StoreTrouble.moc"
