#pragma once

#include "host/domain/SqlConnection.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QObject>
#include <QTimer>

#include <atomic>

namespace Torvik::Database {

/** What keeps writes from the database for a while: another program that has it locked, a full disk, a file that has
 *  become read-only. Such writes wait and are tried again; the user is told once that there is trouble, and once that
 *  it is over.
 *
 *  A write that waits says so between enter() and leave(). Nobody waits for ever where somebody else waits for the
 *  write: when a project is closed or the application ends, and when the main thread has long stood still, they are
 *  given up. Signals come on the main thread; functions are for any thread unless said otherwise. */
class StoreTrouble : public QObject {
    Q_OBJECT

public:
    static constexpr int retryIntervalMs = 250;
    /** How long a project that is being closed waits for its writes. */
    static constexpr int lastPatienceMs = 4000;

    static StoreTrouble& instance();

    /** Whether a write that failed so may succeed later as it stands. */
    static bool mayPass(const StoreStatus& status);
    /** What is wrong, where, and what to do. */
    static QString textFor(const StoreStatus& cause);

    /** A write begins to wait. The user hears of it when it still waits after so long, but not where it only waits for
     *  other writes of this program. */
    void enter(const StoreStatus& cause, int tellAfterMs = 0);
    /** It waits on after a further try, which may have met what the user has to hear of. */
    void goOn(const StoreStatus& cause, int tellAfterMs);
    /** It has been stored or given up. */
    void leave();
    /** Whether a write may go on waiting. */
    bool patient() const;
    /** A write was given up for good. */
    void noteLost();
    /** The database will not take a write, whenever it is tried; `error` says why. Told once for each reason. */
    void refuse(const QString& error);
    /** Whether writes are given up without a try, since those before them have been. */
    bool givenUp() const { return m_givenUp; }

    /** From now on writes wait for lastPatienceMs only. Main thread. */
    void hurry();
    /** They wait as long as it takes again; tells of what has been lost. Main thread. */
    void takeTime();

signals:
    /** Again only for another cause, or after over(). */
    void begun(const QString& message);
    /** Everything that waited is stored, or given up. */
    void over();
    /** Writes had to be given up: so many, or for this reason. */
    void lost(const QString& message);
    /** Writes that wait on the main thread may try now. */
    void retry();

private:
    StoreTrouble();
    qint64 now() const { return m_clock.elapsed(); }
    void noteCause(const StoreStatus& cause, int tellAfterMs);
    void look();
    void onTick();

    QElapsedTimer m_clock;
    QTimer m_timer;
    QMutex m_mutex;
    /** Guarded by the mutex: who waits, the latest cause to be told, and from when on it is. */
    int m_waiting = 0;
    StoreStatus m_cause;
    qint64 m_tellAt = 0;
    /** The main thread's own. */
    int m_toldCode = 0;
    QString m_toldRefusal;
    std::atomic<qint64> m_mainThreadSeen {0};
    std::atomic<qint64> m_deadline {-1};
    std::atomic<bool> m_givenUp {false};
    std::atomic<int> m_lost {0};
};

} // namespace Torvik::Database
