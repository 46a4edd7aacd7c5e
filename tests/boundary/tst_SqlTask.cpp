#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "domain/boundary/SqlTask.h"
#include "host/domain/ThreadConnections.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QSqlDriver>
#include <QSqlField>
#include <QThread>

#include <atomic>

using namespace Torvik::Database;
using Kx::Test::TestProject;
using Torvik::Shared::Async;

namespace {

QString execute(const QString& statement)
{
    SqlUserTask task(statement, {});
    task.executeNow();
    return task.getStringResult(0, 0);
}

class Listener : public QObject {
public:
    void onResult(const SqlResult& result)
    {
        results.append(result);
        thread = QThread::currentThread();
    }
    void onOther(const SqlResult& result) { others.append(result); }

    QVector<SqlResult> results;
    QVector<SqlResult> others;
    QThread* thread = nullptr;
};

/** Runs until it is let go; gives up by itself so that a failing test ends. */
class BlockingTask : public Torvik::Shared::Task<SqlResult> {
public:
    BlockingTask(std::atomic<bool>& started, QSemaphore& go)
        : m_started(started)
        , m_go(go)
    {
    }

protected:
    void fill(SqlResult&) override
    {
        m_started = true;
        m_go.tryAcquire(1, 3000);
    }

private:
    std::atomic<bool>& m_started;
    QSemaphore& m_go;
};

/** Opens its thread's connection, whose closing takes until it is let go. */
class SlowlyClosedTask : public Torvik::Shared::Task<SqlResult> {
public:
    SlowlyClosedTask(const QString& file, std::atomic<bool>& closing, QSemaphore& go)
        : m_file(file)
        , m_closing(closing)
        , m_go(go)
    {
    }

protected:
    void fill(SqlResult&) override
    {
        StoreStatus status;
        if (const SqlConnection* const connection = ThreadConnections::get(m_file, status))
            QObject::connect(connection->database().driver(), &QObject::destroyed, [closing = &m_closing, go = &m_go] {
                *closing = true;
                go->tryAcquire(1, 3000);
            });
    }

private:
    QString m_file;
    std::atomic<bool>& m_closing;
    QSemaphore& m_go;
};

class CountingTask : public QRunnable {
public:
    CountingTask(Async& async, std::atomic<int>& running, QVector<int>& order, int number,
                 std::atomic<QThread*>& thread)
        : m_async(async)
        , m_running(running)
        , m_order(order)
        , m_number(number)
        , m_thread(thread)
    {
    }
    void run() override
    {
        m_thread = QThread::currentThread();
        const bool alone = ++m_running == 1;
        QThread::yieldCurrentThread();
        m_order.append(alone ? m_number : -1);
        --m_running;
        m_async.startNext();
    }

private:
    Async& m_async;
    std::atomic<int>& m_running;
    QVector<int>& m_order;
    int m_number;
    std::atomic<QThread*>& m_thread;
};

} // namespace

class tst_SqlTask : public QObject {
    Q_OBJECT

private slots:
    void theResultTypeHasItsName()
    {
        const Async async(Async::Sequential);

        QVERIFY(QMetaType::type("Torvik::Database::SqlResult") != QMetaType::UnknownType);
    }

    void theViewsOwnStatementsRunAsTheyStand()
    {
        TestProject p;
        const auto node = p.addNode("A", "POINT ZM(1 2 3 4)");
        const auto i = p.addInspection(p.addSection("S", node, {}), "LINESTRING ZM(1 2 3 4,5 6 7 8)")->id();
        p.activate();
        Kx::Test::LogCapture log;

        execute(QString("INSERT INTO SECMES(MES_PK, MES_Inspection_FK, MES_Type, MES_Method, MES_Date) VALUES (\"m1\", "
                        "\"%1\", \"3DGS\", \"forward\", \"2024_01_02_03_04_05\")")
                    .arg(i));
        execute("INSERT INTO SECMP(MP_PK, MP_Measurement_FK, MP_X_Value, MP_Y_Value, MP_Z_Value, MP_SortOrder, "
                "MP_TimeStamp) VALUES (\"p1\", \"m1\", 1.5, 2, 3, 1, \"2024-01-02 03:04:05.678\")");
        execute("INSERT INTO SECMP(MP_PK, MP_Measurement_FK, MP_X_Value,MP_Y_Value, MP_Z_Value, MP_SortOrder, "
                "MP_TimeStamp) VALUES (\"p2\", \"m1\", 1.5,\"2.5\", 3, 2, \"2024-01-02 03:04:05.678\")");
        execute("UPDATE SECMP SET MP_SortOrder = MP_SortOrder +1 WHERE MP_SortOrder>=2 AND MP_Measurement_FK=\"m1\"");
        execute("UPDATE SECMES SET MES_TxtValues = \"LINESTRING ZM(1 2 3 160)\" WHERE MES_PK = \"m1\"");
        QCOMPARE(
            execute(
                QString("SELECT MES_PK from SECMES WHERE MES_Inspection_FK=\"%1\" AND MES_METHOD=\"forward\"").arg(i)),
            QString("m1"));
        QCOMPARE(execute(QString("SELECT MES_TxtValues FROM SECMES WHERE MES_Inspection_FK = \"%1\" ").arg(i)),
                 QString("LINESTRING ZM(1 2 3 160)"));
        QCOMPARE(execute("SELECT typeof(MP_Y_Value) FROM SECMP WHERE MP_PK=\"p2\""), QString("text"));
        QCOMPARE(execute("SELECT MP_SortOrder FROM SECMP WHERE MP_PK=\"p2\""), QString("3"));
        execute("UPDATE SECMP SET MP_SortOrder = MP_SortOrder - 1 WHERE MP_SortOrder>=3 AND MP_Measurement_FK=\"m1\"");
        execute("DELETE FROM SECMP WHERE MP_SortOrder>=0 AND MP_SortOrder<2 AND MP_Measurement_FK=\"m1\"");
        QCOMPARE(execute("SELECT count(*) FROM SECMP WHERE MP_Measurement_FK=\"m1\""), QString("1"));
        execute("DELETE FROM SECMP WHERE MP_Measurement_FK=\"m1\"");
        execute(QString("INSERT INTO SECMES(MES_PK, MES_JOB_FK, MES_Inspection_FK, MES_Type, MES_Method, MES_Date) "
                        "VALUES (\"m2\", \"\", \"%1\", \"forward\", \"3DGS\", \"2024_01_02_03_04_05\")")
                    .arg(i));
        QCOMPARE(execute(QString("SELECT INS_Shape_WKT FROM SECINSP WHERE INS_PK = \"%1\" ").arg(i)),
                 QString("LINESTRING ZM(1 2 3 4,5 6 7 8)"));
        QCOMPARE(execute("SELECT NODE.OBJ_Shape_WKT from SECINSP INNER JOIN SECTION ON SECINSP.INS_Section_FK = "
                         "SECTION.OBJ_PK INNER JOIN NODE ON NODE.OBJ_PK = SECTION.OBJ_FromNode_REF OR NODE.OBJ_PK = "
                         "SECTION.OBJ_ToNode_REF WHERE SECTION.OBJ_FromNode_REF IS NOT NULL OR SECTION.OBJ_ToNode_REF "
                         "IS NOT NULL AND NODE.OBJ_Shape_WKT IS NOT NULL ORDER BY SECINSP.INS_TimeStamp DESC"),
                 QString("POINT ZM(1 2 3 4)"));
        QVERIFY2(log.lines().isEmpty(), qPrintable(log.lines().value(0).message));
    }

    void aStatementOnAnObjectsTableReachesTheObject()
    {
        TestProject p;
        const auto i = p.addInspection(p.addSection("S", {}, {}));
        p.activate();

        execute(
            QString("UPDATE SECINSP SET INS_Shape_WKT = \"POINT ZM(9 9 9 9)\" WHERE INS_PK = \"%1\" ").arg(i->id()));

        QTRY_COMPARE(i->readValue("INS_Shape_WKT").toString(), QString("POINT ZM(9 9 9 9)"));
    }

    void bindingsFillTheirPlaces()
    {
        TestProject p;
        p.addNode("A \"quoted\"");
        p.activate();

        SqlUserTask task("SELECT OBJ_Key FROM NODE WHERE OBJ_Key = :key", {{"key", "A \"quoted\""}});
        task.executeNow();

        QCOMPARE(task.getStringResult(0, 0), QString("A \"quoted\""));
        QCOMPARE(task.getStringResult(1, 0), QString());
        QCOMPARE(task.getStringResult(0, 5), QString());
        QCOMPARE(task.result().data().first().fieldName(0), QString("OBJ_Key"));
    }

    void aFailureIsLoggedAndGivesNoRows()
    {
        TestProject p;
        p.activate();
        Kx::Test::LogCapture log;

        SqlUserTask task("SELECT * FROM NO_TABLE");
        task.executeNow();

        QVERIFY(task.result().data().isEmpty());
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(int(log.lines().first().level), 1);
    }

    void withoutAnActiveProjectNothingRuns()
    {
        Kx::Test::LogCapture log;

        QCOMPARE(execute("SELECT 1"), QString());

        QCOMPARE(log.lines().size(), 1);
    }

    void aTaskKeepsToTheProjectOfItsMaking()
    {
        TestProject first;
        first.addNode("first");
        first.activate();
        SqlUserTask task("SELECT OBJ_Key FROM NODE");
        TestProject second;
        second.addNode("second");
        second.activate();

        task.executeNow();

        QCOMPARE(task.getStringResult(0, 0), QString("first"));
    }

    void aResultIsDeliveredOnceOnTheReceiversThread()
    {
        TestProject p;
        p.addNode("A");
        p.activate();
        Async async(Async::Sequential);
        Listener listener;
        QString statement("SELECT OBJ_Key FROM NODE");

        async.run(SqlUserTask::createAsyncTask(statement), &listener, &Listener::onResult);
        QTRY_COMPARE(listener.results.size(), 1);
        async.run(SqlUserTask::createAsyncTask(statement), &listener, &Listener::onOther);
        QTRY_COMPARE(listener.others.size(), 1);

        QCOMPARE(listener.results.size(), 1);
        QCOMPARE(listener.results[0].data().first().value(0).toString(), QString("A"));
        QCOMPARE(listener.thread, QThread::currentThread());
    }

    void eachRunIsHeardOnceWhateverElseIsUnderWay()
    {
        TestProject p;
        p.activate();
        Async async(Async::Sequential);
        Listener listener;
        std::atomic<int> done {0};
        connect(
            &async, &Async::taskDone, this, [&done] { ++done; }, Qt::DirectConnection);
        QString statement("SELECT 1");

        async.run(SqlUserTask::createAsyncTask(statement), &listener, &Listener::onResult);
        async.run(SqlUserTask::createAsyncTask(statement), &listener, &Listener::onResult);
        auto* const unheard = SqlUserTask::createAsyncTask(statement);
        unheard->setAsync(&async);
        async.startTask(unheard);

        QTRY_COMPARE(done.load(), 3);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(listener.results.size(), 2);
    }

    void aFailedTaskDeliversNoRows()
    {
        TestProject p;
        p.activate();
        Async async(Async::Sequential);
        Listener listener;
        QString statement("SELECT * FROM NO_TABLE");

        async.run(SqlUserTask::createAsyncTask(statement), &listener, &Listener::onResult);

        QTRY_COMPARE(listener.results.size(), 1);
        QVERIFY(listener.results.first().data().isEmpty());
    }

    void aResultMayStartTheNextTaskBeforeTheInstanceGoes()
    {
        TestProject p;
        p.activate();
        QSemaphore go;
        std::atomic<bool> started {false};
        const QPointer<Async> async = new Async(Async::DeleteWhenIdle);
        Listener listener;
        auto* const next = new BlockingTask(started, go);
        next->setAsync(async);
        std::atomic<bool> first {true};
        connect(
            async.data(), &Async::taskDone, this,
            [&, self = async.data()] {
                if (first.exchange(false))
                    self->startTask(next);
            },
            Qt::DirectConnection);
        QString statement("SELECT 1");

        async->run(SqlUserTask::createAsyncTask(statement), &listener, &Listener::onResult);

        QTRY_VERIFY(started);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY2(async, "it was idle before it told the result");
        go.release();
        QTRY_VERIFY(!async);
        QCOMPARE(listener.results.size(), 1);
    }

    void aReceiverMayGoBeforeTheResult()
    {
        TestProject p;
        p.activate();
        Async async(Async::Sequential);
        QSignalSpy done(&async, &Async::taskDone);
        auto listener = std::make_unique<Listener>();
        QString statement("SELECT 1");

        async.run(SqlUserTask::createAsyncTask(statement), listener.get(), &Listener::onResult);
        listener.reset();

        QTRY_COMPARE(done.count(), 1);
    }

    void tasksRunOneAtATimeInTheOrderStarted()
    {
        std::atomic<int> running {0};
        QVector<int> order;
        QVector<int> expected;
        std::atomic<QThread*> thread {nullptr};
        {
            Async async(Async::Sequential);
            for (int i = 0; i < 200; ++i) {
                expected.append(i);
                async.startTask(new CountingTask(async, running, order, i, thread));
            }
        }

        QCOMPARE(order, expected);
        QVERIFY(thread);
        QVERIFY(thread != QThread::currentThread());
    }

    void writesStartedBeforeTheEndAreDone()
    {
        TestProject p;
        const auto a = p.addNode("A");
        p.activate();
        {
            Async async(Async::Sequential);
            for (int i = 0; i < 20; ++i) {
                QString statement = QString("UPDATE NODE SET OBJ_Key = \"%1\"").arg(i);
                auto* const task = SqlUserTask::createAsyncTask(statement);
                task->setAsync(&async);
                async.startTask(task);
            }
        }

        QCOMPARE(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Key").toString(), QString("19"));
    }

    void aConnectionThatIsBeingClosedHoldsNobodyUp()
    {
        TestProject p;
        p.activate();
        QSemaphore go;
        std::atomic<bool> closing {false};
        std::atomic<bool> nextHasRun {false};
        Async async(Async::Sequential);
        auto* const slow = new SlowlyClosedTask(ProjectStore::databaseFile(p.path()), closing, go);
        slow->setAsync(&async);
        async.startTask(slow);
        QTRY_VERIFY(closing);
        auto* const next = new BlockingTask(nextHasRun, go);
        next->setAsync(&async);
        QElapsedTimer held;
        held.start();

        async.startTask(next);

        QVERIFY(held.elapsed() < 1000);
        go.release(2);
        QTRY_VERIFY(nextHasRun);
    }

    void anInstanceThatDeletesItselfDoesSoWhenIdle()
    {
        TestProject p;
        p.activate();
        const QPointer<Async> async = new Async(Async::DeleteWhenIdle);
        Listener listener;
        QString statement("SELECT 1");

        async->run(SqlUserTask::createAsyncTask(statement), &listener, &Listener::onResult);

        QTRY_VERIFY(!async);
        QCOMPARE(listener.results.size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_SqlTask)
#include "tst_SqlTask.moc"
