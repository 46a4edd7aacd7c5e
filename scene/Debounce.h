#pragma once

#include <functional>
#include <list>

namespace Torvik::View3d {

class DebounceQueue;

/** Calls an action once, an interval after the last start(). Restarting is O(1) however many there are: all that share
 *  an interval wait in one queue with one timer, since thousands of running timers of their own make each restart walk
 *  them all. Main thread only. */
class Debounce {
public:
    Debounce(int intervalMs, std::function<void()> action);
    ~Debounce();
    Debounce(const Debounce&) = delete;
    Debounce& operator=(const Debounce&) = delete;

    /** Starts, or starts over. */
    void start();
    void stop();
    bool isActive() const { return m_active; }

    /** Lets every action wait, those that are due too, until as many resumeAll() have come: for a load, whose objects
     *  would otherwise compare what they hold with what is stored while others still come. */
    static void pauseAll();
    /** Runs now whatever waits, and what that starts in turn: the project is about to close. Nothing while paused. */
    static void flushAll();
    static void resumeAll();

private:
    friend class DebounceQueue;

    DebounceQueue& m_queue;
    std::function<void()> m_action;
    std::list<Debounce*>::iterator m_place;
    long long m_dueMs = 0;
    bool m_active = false;
};

} // namespace Torvik::View3d
