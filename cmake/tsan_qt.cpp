// Linked into test programs that are built with ThreadSanitizer. Debian's Qt isn't, so its mutexes, semaphores, thread
// pools and queued signals would be invisible, and whatever they order would be reported as a race. The functions here
// take the place of Qt's where our code calls them: they call Qt's and tell the sanitizer what has been ordered by it.
// Nothing is ordered that Qt does not order, except that all queued calls share one order; data that a thread touches
// after it has sent them is still found.
#include <QDeadlineTimer>
#include <QRunnable>

#include <dlfcn.h>

class QEvent;

extern "C" {
void __tsan_acquire(void* place);
void __tsan_release(void* place);
}

namespace {

template <typename Function>
Function original(const char* symbol)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

/** Stands for everything that is handed to another thread's event loop. */
char events;

bool onEvent(void**)
{
    __tsan_acquire(&events);
    return false;
}

/** A task as a pool runs it: after what was done before it was started, and before what waits for the pool. */
class Ordered : public QRunnable {
public:
    Ordered(QRunnable* task, void* pool)
        : m_task(task)
        , m_pool(pool)
    {
        __tsan_release(this);
    }

    void run() override
    {
        __tsan_acquire(this);
        const bool own = m_task->autoDelete();
        m_task->run();
        if (own)
            delete m_task;
        __tsan_release(m_pool);
    }

private:
    QRunnable* m_task;
    void* m_pool;
};

} // namespace

[[maybe_unused]] const bool listensToEvents = QInternal::registerCallback(QInternal::EventNotifyCallback, onEvent);

// Below: Qt's functions by their names in the library.
#define KX_ORIGINAL(function, symbol) static const auto function = original<decltype(&symbol)>(#symbol)

extern "C" {

void _ZN6QMutex4lockEv(void* mutex)
{
    KX_ORIGINAL(lock, _ZN6QMutex4lockEv);
    lock(mutex);
    __tsan_acquire(mutex);
}

bool _ZN6QMutex7tryLockEi(void* mutex, int timeout)
{
    KX_ORIGINAL(tryLock, _ZN6QMutex7tryLockEi);
    const bool locked = tryLock(mutex, timeout);
    if (locked)
        __tsan_acquire(mutex);
    return locked;
}

void _ZN6QMutex6unlockEv(void* mutex)
{
    KX_ORIGINAL(unlock, _ZN6QMutex6unlockEv);
    __tsan_release(mutex);
    unlock(mutex);
}

bool _ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer(void* condition, void* mutex, QDeadlineTimer deadline)
{
    KX_ORIGINAL(wait, _ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer);
    __tsan_release(mutex);
    const bool woken = wait(condition, mutex, deadline);
    __tsan_acquire(mutex);
    return woken;
}

bool _ZN14QWaitCondition4waitEP6QMutexm(void* condition, void* mutex, unsigned long timeout)
{
    KX_ORIGINAL(wait, _ZN14QWaitCondition4waitEP6QMutexm);
    __tsan_release(mutex);
    const bool woken = wait(condition, mutex, timeout);
    __tsan_acquire(mutex);
    return woken;
}

void _ZN10QSemaphore7acquireEi(void* semaphore, int count)
{
    KX_ORIGINAL(acquire, _ZN10QSemaphore7acquireEi);
    acquire(semaphore, count);
    __tsan_acquire(semaphore);
}

bool _ZN10QSemaphore10tryAcquireEi(void* semaphore, int count)
{
    KX_ORIGINAL(tryAcquire, _ZN10QSemaphore10tryAcquireEi);
    const bool acquired = tryAcquire(semaphore, count);
    if (acquired)
        __tsan_acquire(semaphore);
    return acquired;
}

bool _ZN10QSemaphore10tryAcquireEii(void* semaphore, int count, int timeout)
{
    KX_ORIGINAL(tryAcquire, _ZN10QSemaphore10tryAcquireEii);
    const bool acquired = tryAcquire(semaphore, count, timeout);
    if (acquired)
        __tsan_acquire(semaphore);
    return acquired;
}

void _ZN10QSemaphore7releaseEi(void* semaphore, int count)
{
    KX_ORIGINAL(release, _ZN10QSemaphore7releaseEi);
    __tsan_release(semaphore);
    release(semaphore, count);
}

void _ZN11QThreadPool5startEP9QRunnablei(void* pool, QRunnable* task, int priority)
{
    KX_ORIGINAL(start, _ZN11QThreadPool5startEP9QRunnablei);
    start(pool, new Ordered(task, pool), priority);
}

bool _ZN11QThreadPool11waitForDoneEi(void* pool, int timeout)
{
    KX_ORIGINAL(waitForDone, _ZN11QThreadPool11waitForDoneEi);
    const bool done = waitForDone(pool, timeout);
    __tsan_acquire(pool);
    return done;
}

void _ZN11QMetaObject8activateEP7QObjectPKS_iPPv(void* sender, const void* type, int signal, void** arguments)
{
    KX_ORIGINAL(activate, _ZN11QMetaObject8activateEP7QObjectPKS_iPPv);
    __tsan_release(&events);
    activate(sender, type, signal, arguments);
}

bool _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv(void* object,
                                                                                                       void* slot,
                                                                                                       int connection,
                                                                                                       void* result)
{
    KX_ORIGINAL(invoke,
                _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv);
    __tsan_release(&events);
    return invoke(object, slot, connection, result);
}

void _ZN16QCoreApplication9postEventEP7QObjectP6QEventi(void* receiver, QEvent* event, int priority)
{
    KX_ORIGINAL(post, _ZN16QCoreApplication9postEventEP7QObjectP6QEventi);
    __tsan_release(&events);
    post(receiver, event, priority);
}

// Connections take its address as that of a member function, of which an odd one would mean a virtual function.
__attribute__((aligned(16))) void _ZN7QObject11deleteLaterEv(void* object)
{
    KX_ORIGINAL(deleteLater, _ZN7QObject11deleteLaterEv);
    __tsan_release(&events);
    deleteLater(object);
}
}
