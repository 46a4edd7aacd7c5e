#include "host/drawing/DrawingLoad.h"

#include <QCoreApplication>

#include <chrono>
#include <system_error>
#include <thread>

namespace Torvik::DXF {

namespace {

/** Readers that nobody waits for any more may still be inside GDAL, which the end of the process takes down. */
class Readers {
public:
    void begin()
    {
        const std::lock_guard lock(m_mutex);
        ++m_running;
    }

    void end()
    {
        const std::lock_guard lock(m_mutex);
        --m_running;
        m_ended.notify_all();
    }

    void waitForAll()
    {
        std::unique_lock lock(m_mutex);
        m_ended.wait_for(lock, std::chrono::seconds(10), [this] { return m_running == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_running = 0;
};

Readers& readers()
{
    // Never destroyed: a reader may end after everything else.
    static auto* const all = new Readers;
    return *all;
}

void waitForReaders()
{
    readers().waitForAll();
}

void waitAtTheEnd()
{
    static const bool once = [] {
        qAddPostRoutine(waitForReaders);
        return true;
    }();
    Q_UNUSED(once)
}

} // namespace

void DrawingLoad::cancel()
{
    *m_cancelled = true;
    const std::lock_guard lock(m_shared->mutex);
    m_shared->changed.notify_all();
}

void DrawingLoad::setWorker(DXFWorker* worker)
{
    const std::lock_guard lock(m_workerMutex);
    m_worker = worker;
}

void DrawingLoad::withWorker(const std::function<void(DXFWorker*)>& act)
{
    const std::lock_guard lock(m_workerMutex);
    if (m_worker)
        act(m_worker);
}

DrawingResult DrawingLoad::readOrCancel()
{
    DrawingResult stopped;
    stopped.report.path = path;
    stopped.report.problem = DrawingProblem::Cancelled;
    if (*m_cancelled)
        return stopped;
    waitAtTheEnd();
    readers().begin();
    try {
        std::thread([path = path, cancelled = m_cancelled, shared = m_shared] {
            DrawingResult result = readToMeshes(path, cancelled);
            {
                const std::lock_guard lock(shared->mutex);
                shared->result = std::move(result);
                shared->changed.notify_all();
            }
            readers().end();
        }).detach();
    } catch (const std::system_error&) {
        readers().end();
        return readToMeshes(path, m_cancelled);
    }
    std::unique_lock lock(m_shared->mutex);
    m_shared->changed.wait(lock, [this] { return m_shared->result || *m_cancelled; });
    if (*m_cancelled)
        return stopped;
    DrawingResult result = std::move(*m_shared->result);
    m_shared->result.reset();
    return result;
}

} // namespace Torvik::DXF
