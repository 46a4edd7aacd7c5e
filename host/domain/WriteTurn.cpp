#include "host/domain/WriteTurn.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace Torvik::Database {

namespace {

struct Queue {
    std::mutex mutex;
    std::condition_variable changed;
    bool taken = false;
    int inAHurry = 0;
};

Queue& queue()
{
    // Never destroyed: statements run until the very end of the process.
    static auto* const all = new Queue;
    return *all;
}

} // namespace

WriteTurn::WriteTurn(int waitMs)
{
    Queue& all = queue();
    std::unique_lock<std::mutex> lock(all.mutex);
    if (waitMs == withoutLimit) {
        all.changed.wait(lock, [&all] { return !all.taken && all.inAHurry == 0; });
        all.taken = true;
        return;
    }
    ++all.inAHurry;
    m_hasCome = all.changed.wait_for(lock, std::chrono::milliseconds(waitMs), [&all] { return !all.taken; });
    --all.inAHurry;
    if (m_hasCome)
        all.taken = true;
    else
        all.changed.notify_all();
}

WriteTurn::~WriteTurn()
{
    if (!m_hasCome)
        return;
    Queue& all = queue();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.taken = false;
    all.changed.notify_all();
}

} // namespace Torvik::Database
