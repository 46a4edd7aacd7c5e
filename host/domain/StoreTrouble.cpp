#include "host/domain/StoreTrouble.h"

#include "domain/boundary/CLogger.h"
#include "host/domain/WriteTurn.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>

namespace Torvik::Database {

namespace {

/** A main thread that has stood still for so long waits for the write itself, without having said so. */
constexpr qint64 standstillMs = 20000;

constexpr qint64 never = std::numeric_limits<qint64>::max();

enum Code { Busy = 5, Locked = 6, ReadOnly = 8, InputOutput = 10, Full = 13, CannotOpen = 14 };

QString adviceFor(int code)
{
    switch (code) {
    case Busy:
    case Locked:
        return StoreTrouble::tr("Close the other program, or wait until it is done.");
    case ReadOnly:
        return StoreTrouble::tr("Make the file and its folder writable again.");
    case Full:
        return StoreTrouble::tr("Make room on the disk.");
    default:
        return StoreTrouble::tr("Check that the disk is connected and that you may write to it.");
    }
}

} // namespace

StoreTrouble& StoreTrouble::instance()
{
    // Never destroyed: what is stored at the very end of the process waits too.
    static auto* const trouble = new StoreTrouble;
    return *trouble;
}

StoreTrouble::StoreTrouble()
{
    m_clock.start();
    m_timer.setInterval(retryIntervalMs);
    m_timer.moveToThread(thread());
    connect(&m_timer, &QTimer::timeout, this, &StoreTrouble::onTick);
    if (const QCoreApplication* application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &StoreTrouble::hurry);
}

bool StoreTrouble::mayPass(const StoreStatus& status)
{
    constexpr int passing[] = {WriteTurn::notCome, Busy, Locked, ReadOnly, InputOutput, Full, CannotOpen};
    return std::find(std::begin(passing), std::end(passing), status.code) != std::end(passing);
}

QString StoreTrouble::textFor(const StoreStatus& cause)
{
    return tr("%1. %2 What is measured and changed meanwhile is kept and stored as soon as that is possible; leave the "
              "program open.")
        .arg(cause.error, adviceFor(cause.code));
}

void StoreTrouble::enter(const StoreStatus& cause, int tellAfterMs)
{
    {
        const QMutexLocker lock(&m_mutex);
        if (m_waiting++ == 0) {
            m_mainThreadSeen = now();
            m_tellAt = never;
        }
        noteCause(cause, tellAfterMs);
    }
    QMetaObject::invokeMethod(this, &StoreTrouble::look, Qt::QueuedConnection);
}

void StoreTrouble::goOn(const StoreStatus& cause, int tellAfterMs)
{
    const QMutexLocker lock(&m_mutex);
    if (m_tellAt == never)
        noteCause(cause, tellAfterMs);
}

void StoreTrouble::noteCause(const StoreStatus& cause, int tellAfterMs)
{
    if (cause.code == WriteTurn::notCome)
        return;
    m_tellAt = std::min(m_tellAt, now() + tellAfterMs);
    m_cause = cause;
}

void StoreTrouble::leave()
{
    const QMutexLocker lock(&m_mutex);
    --m_waiting;
}

bool StoreTrouble::patient() const
{
    const qint64 deadline = m_deadline;
    return (deadline < 0 || now() < deadline) && now() - m_mainThreadSeen < standstillMs;
}

void StoreTrouble::noteLost()
{
    m_givenUp = true;
    ++m_lost;
}

void StoreTrouble::refuse(const QString& error)
{
    const auto tell = [this, error] {
        if (m_toldRefusal == error)
            return;
        m_toldRefusal = error;
        emit lost(tr("Something that was measured could not be stored and is lost. %1").arg(error));
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void StoreTrouble::hurry()
{
    m_deadline = now() + lastPatienceMs;
}

void StoreTrouble::takeTime()
{
    m_deadline = -1;
    m_givenUp = false;
    m_toldRefusal.clear();
    const int count = m_lost.exchange(0);
    if (count == 0)
        return;
    const QString message = tr("%n change(s) could not be stored and are lost.", nullptr, count);
    Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::Database"), message);
    emit lost(message);
}

void StoreTrouble::look()
{
    m_mainThreadSeen = now();
    StoreStatus cause;
    {
        const QMutexLocker lock(&m_mutex);
        if (m_waiting > 0 && now() >= m_tellAt)
            cause = m_cause;
    }
    m_timer.start();
    if (cause || cause.code == m_toldCode)
        return;
    m_toldCode = cause.code;
    emit begun(textFor(cause));
}

void StoreTrouble::onTick()
{
    m_mainThreadSeen = now();
    if (m_deadline < 0 && m_givenUp)
        takeTime();
    emit retry();
    bool waits = false;
    {
        const QMutexLocker lock(&m_mutex);
        waits = m_waiting > 0;
    }
    if (waits) {
        look();
        return;
    }
    m_timer.stop();
    if (m_toldCode == 0)
        return;
    m_toldCode = 0;
    emit over();
}

} // namespace Torvik::Database
