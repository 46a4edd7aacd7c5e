#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QObject>
#include <QQueue>
#include <QRunnable>

#include <memory>

namespace Torvik::Database {
class SqlResult;
}

namespace Torvik::Shared {

template <typename Result>
class Task;

/** Runs tasks one after another, in the order started, on a thread of its own. Destruction waits until all tasks that
 *  were started have run. */
class Async : public QObject {
    Q_OBJECT

public:
    enum Mode : int {
        Sequential = 0,    ///< belongs to whoever made it
        DeleteWhenIdle = 1 ///< made with new; deletes itself when asyncDeleteLater() finds it idle
    };

    explicit Async(Mode mode);
    ~Async() override;

    /** Runs `task` and calls `member` of `receiver` on the receiver's thread, exactly once: with the first result that
     *  this instance delivers from now on. That is the task's own unless others were started before it and have not
     *  finished. Takes over the task. */
    template <typename Result, typename Receiver, typename Member>
    void run(Task<Result>* task, Receiver* receiver, Member member)
    {
        const auto delivery = std::make_shared<QMetaObject::Connection>();
        const auto guard = std::make_shared<QMetaObject::Connection>();
        *delivery = connect(this, &Async::taskDone, receiver, member, Qt::QueuedConnection);
        *guard = connect(
            this, &Async::taskDone, this,
            [delivery, guard] {
                disconnect(*delivery);
                disconnect(*guard);
            },
            Qt::DirectConnection);
        task->setAsync(this);
        QMutexLocker lock(&m_mutex);
        startTask(task);
    }

    /** Starts the task if none runs, queues it otherwise. run() holds the mutex; others need not. */
    void startTask(QRunnable* task);
    /** Starts the next queued task. Called by a task that has run. */
    void startNext();
    /** Ends the instance's work once it is idle: what its thread holds open is closed, and an instance of mode
     *  DeleteWhenIdle is deleted. Called by each task that has run. */
    void asyncDeleteLater();

signals:
    void taskDone(const Torvik::Database::SqlResult& result);

private:
    class Private;
    QMutex m_mutex {QMutex::Recursive};
    std::unique_ptr<Private> d;
};

/** A task that yields a result to its Async. */
template <typename Result>
class Task : public QRunnable {
public:
    void setAsync(Async* async) { m_async = async; }

    void run() override
    {
        Result result;
        fill(result);
        if (m_async) {
            m_async->startNext();
            emit m_async->taskDone(result);
            m_async->asyncDeleteLater();
        }
    }

protected:
    virtual void fill(Result& result) = 0;

private:
    Async* m_async = nullptr;
};

} // namespace Torvik::Shared
