#include "host/domain/WaitingObjects.h"

#include "domain/boundary/CLogger.h"
#include "host/domain/ProjectStore.h"
#include "host/domain/StoreTrouble.h"

#include <utility>

namespace Torvik::Database {

namespace {

/** The scene stands still for so long at most. Statements of the view on another thread take less. */
constexpr int briefWaitMs = 100;
/** Two programs that write at the same time are no trouble. */
constexpr int tellOfALockAfterMs = 3000;

constexpr int busy = 5;

int tellAfterMs(const StoreStatus& cause)
{
    return cause.code == busy ? tellOfALockAfterMs : 0;
}

} // namespace

WaitingObjects& WaitingObjects::instance()
{
    static WaitingObjects objects;
    return objects;
}

WaitingObjects::WaitingObjects()
{
    connect(&StoreTrouble::instance(), &StoreTrouble::retry, this, &WaitingObjects::tryAll);
}

StoreStatus WaitingObjects::write(const CDomainObjectPointer& object, int origin)
{
    const StoreStatus written = ProjectStore::instance().writeObject(object, origin, briefWaitMs);
    if (!written && StoreTrouble::mayPass(written)) {
        hold(object, origin, written);
        return {};
    }
    drop(object);
    return written;
}

void WaitingObjects::hold(const CDomainObjectPointer& object, int origin, const StoreStatus& cause)
{
    for (Waiting& waiting : m_waiting) {
        if (waiting.object == object) {
            waiting.origin = origin;
            return;
        }
    }
    Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::Database"),
                                 QStringLiteral("%1 waits to be stored: %2").arg(object->id(), cause.error));
    m_waiting.append({object, origin});
    StoreTrouble::instance().enter(cause, tellAfterMs(cause));
}

void WaitingObjects::drop(const CDomainObjectPointer& object)
{
    for (int i = m_waiting.size() - 1; i >= 0; --i) {
        const CDomainObjectPointer waiting = m_waiting[i].object.toStrongRef();
        if (waiting && waiting->isValid() && waiting != object)
            continue;
        m_waiting.removeAt(i);
        StoreTrouble::instance().leave();
    }
}

void WaitingObjects::tryAll()
{
    const QVector<Waiting> waiting = m_waiting;
    for (const Waiting& one : waiting) {
        const CDomainObjectPointer object = one.object.toStrongRef();
        if (!object || !object->isValid()) {
            drop(object);
            continue;
        }
        const StoreStatus written = ProjectStore::instance().writeObject(object, one.origin, briefWaitMs);
        // The others would hold up the scene for as long as this one, and for nothing.
        if (!written && StoreTrouble::mayPass(written)) {
            StoreTrouble::instance().goOn(written, tellAfterMs(written));
            return;
        }
        drop(object);
        if (!written)
            emit ProjectStore::instance().writeFailed(
                QStringLiteral("%1 could not be stored: %2").arg(object->id(), written.error));
    }
}

void WaitingObjects::storeNow()
{
    tryAll();
    const int count = m_waiting.size();
    for (const Waiting& one : std::exchange(m_waiting, {})) {
        Logging::CLogger::logMessage(
            Logging::LogError, QStringLiteral("Torvik::Database"),
            QStringLiteral("%1 could not be stored").arg(one.object ? one.object.toStrongRef()->id() : QString()));
        StoreTrouble::instance().leave();
    }
    for (int i = 0; i < count; ++i)
        StoreTrouble::instance().noteLost();
}

} // namespace Torvik::Database
