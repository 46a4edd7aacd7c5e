#include "domain/boundary/Async.h"

#include "domain/boundary/SqlTask.h"
#include "host/domain/ThreadConnections.h"

#include <QThreadPool>

namespace Torvik::Shared {

/** A pool of one thread keeps the order also between the end of a task and the result that it still delivers. */
class Async::Private {
public:
    explicit Private(Mode asyncMode)
        : mode(asyncMode)
    {
        pool.setMaxThreadCount(1);
    }

    const Mode mode;
    QThreadPool pool;
    QQueue<QRunnable*> waiting;
    bool running = false;
};

Async::Async(Mode mode)
    : d(std::make_unique<Private>(mode))
{
    qRegisterMetaType<Database::SqlResult>("Torvik::Database::SqlResult");
}

Async::~Async()
{
    d->pool.waitForDone();
}

void Async::startTask(QRunnable* task)
{
    QMutexLocker lock(&m_mutex);
    if (d->running) {
        d->waiting.enqueue(task);
        return;
    }
    d->running = true;
    d->pool.start(task);
}

void Async::startNext()
{
    QMutexLocker lock(&m_mutex);
    d->running = !d->waiting.isEmpty();
    if (d->running) {
        d->pool.start(d->waiting.dequeue());
    }
}

void Async::asyncDeleteLater()
{
    QMutexLocker lock(&m_mutex);
    if (d->running) {
        return;
    }
    // Closing a connection takes a while; who has a task to start meanwhile must not wait for it.
    lock.unlock();
    Database::ThreadConnections::release();
    lock.relock();
    if (!d->running && d->mode == DeleteWhenIdle) {
        deleteLater();
    }
}

} // namespace Torvik::Shared
