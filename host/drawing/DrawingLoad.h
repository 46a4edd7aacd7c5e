#pragma once

#include "host/drawing/DrawingTask.h"

#include <QString>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace Torvik::DXF {

class DXFWorker;

/** A load as its threads share it: the one that waits for it, the one that reads, and the one that builds. */
class DrawingLoad {
public:
    QString path;

    /** Any thread. */
    void cancel();
    const std::shared_ptr<std::atomic<bool>>& cancelled() const { return m_cancelled; }

    /** Reads on a thread of its own and waits for it, or for the cancellation, after which the thread is left to
     * itself: it works on copies, and finds its file unreadable. */
    DrawingResult readOrCancel();

    /** Null when the worker goes, which waits for withWorker() to end. */
    void setWorker(DXFWorker* worker);
    /** Calls `act` unless the worker has gone. Any thread. */
    void withWorker(const std::function<void(DXFWorker*)>& act);

private:
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        std::optional<DrawingResult> result;
    };

    std::mutex m_workerMutex;
    DXFWorker* m_worker = nullptr;
    std::shared_ptr<std::atomic<bool>> m_cancelled = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
};

} // namespace Torvik::DXF
