#include "scene/RemovalQueue.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QTimerEvent>
#include <Qt3DCore/QEntity>

#include <algorithm>

namespace Torvik::View3d {

namespace {

/** Entities of a batch; with some ten nodes each, their removal takes about 10 ms. */
constexpr int batchSize = 250;
/** Shortest pause between two batches: room for a frame of an empty scene. */
constexpr int shortestPauseMs = 8;

} // namespace

RemovalQueue::RemovalQueue(QObject* parent)
    : QObject(parent)
{
}

void RemovalQueue::remove(Qt3DCore::QEntity* entity)
{
    if (!entity)
        return;
    if (m_waiting.empty() && m_atOnce < batchSize) {
        entity->deleteLater();
        // The count is of one turn of the event loop.
        if (m_atOnce++ == 0)
            QTimer::singleShot(0, this, [this] { m_atOnce = 0; });
        return;
    }
    entity->setEnabled(false);
    m_waiting.emplace_back(entity);
    if (!m_timer.isActive())
        m_timer.start(shortestPauseMs, Qt::PreciseTimer, this);
}

void RemovalQueue::timerEvent(QTimerEvent*)
{
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < batchSize && !m_waiting.empty(); ++i) {
        // Off the list first: what a destructor brings about may ask whether the queue is busy.
        const QPointer<Qt3DCore::QEntity> entity = m_waiting.front();
        m_waiting.pop_front();
        delete entity.data();
    }
    if (m_waiting.empty()) {
        m_timer.stop();
        emit finished();
        return;
    }
    const int pauseMs = std::max(shortestPauseMs, static_cast<int>(clock.elapsed()));
    m_timer.start(pauseMs, Qt::PreciseTimer, this);
}

} // namespace Torvik::View3d
