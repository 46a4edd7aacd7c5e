#include "scene/Debounce.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QTimerEvent>

#include <algorithm>
#include <map>

namespace Torvik::View3d {

namespace {

/** Longest stretch of actions in one turn of the event loop: a frame must find room between two stretches. */
constexpr long long stretchMs = 8;
constexpr int flushRounds = 3;

} // namespace

/** Those that wait, the next due first: with one interval and a clock that only advances, the last started goes last.
 */
class DebounceQueue : public QObject {
public:
    explicit DebounceQueue(int intervalMs)
        : m_intervalMs(intervalMs)
    {
        m_clock.start();
    }

    static DebounceQueue& forInterval(int intervalMs)
    {
        auto& queue = all()[intervalMs];
        if (!queue)
            queue = new DebounceQueue(intervalMs);
        return *queue;
    }

    static void pauseAll() { ++pauses(); }

    /** Whether anything has run. */
    static bool flushOnce()
    {
        bool any = false;
        for (const auto& [interval, queue] : all()) {
            const int waiting = static_cast<int>(queue->m_waiting.size());
            for (int i = 0; i < waiting && !queue->m_waiting.empty(); ++i) {
                queue->runFirst();
                any = true;
            }
        }
        return any;
    }

    static bool isPaused() { return pauses() > 0; }

    static void resumeAll()
    {
        if (pauses() == 0 || --pauses() > 0)
            return;
        for (const auto& [interval, queue] : all())
            queue->arm();
    }

    void start(Debounce& debounce)
    {
        if (debounce.m_active) {
            m_waiting.splice(m_waiting.end(), m_waiting, debounce.m_place);
        } else {
            debounce.m_place = m_waiting.insert(m_waiting.end(), &debounce);
            debounce.m_active = true;
        }
        debounce.m_dueMs = m_clock.elapsed() + m_intervalMs;
        if (!m_timer.isActive())
            arm();
    }

    void stop(Debounce& debounce)
    {
        if (!debounce.m_active)
            return;
        m_waiting.erase(debounce.m_place);
        debounce.m_active = false;
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        m_timer.stop();
        if (pauses() > 0)
            return;
        const auto begin = m_clock.elapsed();
        while (!m_waiting.empty() && m_waiting.front()->m_dueMs <= begin) {
            runFirst();
            if (m_clock.elapsed() - begin > stretchMs)
                break;
        }
        arm();
    }

private:
    void runFirst()
    {
        Debounce& due = *m_waiting.front();
        stop(due);
        // A copy, as the action may delete its owner.
        const auto action = due.m_action;
        action();
    }

    static std::map<int, DebounceQueue*>& all()
    {
        // Never destroyed: objects of static storage may stop their wait after any static of ours is gone.
        static auto* const queues = new std::map<int, DebounceQueue*>;
        return *queues;
    }

    static int& pauses()
    {
        static int pauses = 0;
        return pauses;
    }

    void arm()
    {
        if (m_waiting.empty() || pauses() > 0)
            return;
        const auto wait = std::max(0LL, m_waiting.front()->m_dueMs - m_clock.elapsed());
        m_timer.start(static_cast<int>(wait), Qt::PreciseTimer, this);
    }

    int m_intervalMs;
    QElapsedTimer m_clock;
    QBasicTimer m_timer;
    std::list<Debounce*> m_waiting;
};

Debounce::Debounce(int intervalMs, std::function<void()> action)
    : m_queue(DebounceQueue::forInterval(intervalMs))
    , m_action(std::move(action))
{
}

Debounce::~Debounce()
{
    stop();
}

void Debounce::pauseAll()
{
    DebounceQueue::pauseAll();
}

void Debounce::flushAll()
{
    // A change that has settled is scheduled for storing, which waits in turn.
    for (int round = 0; round < flushRounds && !DebounceQueue::isPaused(); ++round) {
        if (!DebounceQueue::flushOnce())
            return;
    }
}

void Debounce::resumeAll()
{
    DebounceQueue::resumeAll();
}

void Debounce::start()
{
    m_queue.start(*this);
}

void Debounce::stop()
{
    m_queue.stop(*this);
}

} // namespace Torvik::View3d
