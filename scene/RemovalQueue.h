#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPointer>

#include <deque>

namespace Qt3DCore {
class QEntity;
}

namespace Torvik::View3d {

/** Deletes entities in the order in which they come, a batch at a time with a pause for a frame between.
 *
 *  Qt 3D searches all removals since the last frame with each removal, so that deleting thousands of entities at once
 *  takes time by the square of their number. The first batch leaves by deleteLater() at once, as a single object would;
 *  what waits behind it is disabled and so out of sight. Main thread only. */
class RemovalQueue : public QObject {
    Q_OBJECT

public:
    explicit RemovalQueue(QObject* parent = nullptr);

    /** Takes over the entity; null is ignored. */
    void remove(Qt3DCore::QEntity* entity);
    /** True while entities wait behind the first batch. */
    bool isBusy() const { return !m_waiting.empty(); }

signals:
    /** The last of those that waited has gone. */
    void finished();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    std::deque<QPointer<Qt3DCore::QEntity>> m_waiting;
    QBasicTimer m_timer;
    int m_atOnce = 0;
};

} // namespace Torvik::View3d
