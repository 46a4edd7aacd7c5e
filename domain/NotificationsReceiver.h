#pragma once

#include "domain/boundary/Notifications.h"

#include <QObject>

#include <memory>
#include <vector>

namespace Torvik::View3d {

/** Takes the domain library's events off the event queue and tells each kind by a signal of its own.
 *
 *  While a project is being read, hold() keeps what arrives; release() then tells it in its order, so that a change is
 *  never handled in the middle of a load and never lost. */
class NotificationsReceiver : public QObject {
    Q_OBJECT

public:
    explicit NotificationsReceiver(QObject* parent = nullptr);
    ~NotificationsReceiver() override;

    void hold();
    void release();
    /** Forgets what is held, and holds no longer. */
    void discard();

signals:
    void objectListChanged(const Torvik::Database::CObjectListChangedNotification& notification);
    void objectValueChanged(const CDomainObjectPointer& object, const QString& key);
    void objectDeleted(const CDomainObjectPointer& object);
    void objectUnloaded(const CDomainObjectPointer& object);
    void objectCreated(const CDomainObjectPointer& object);
    void transactionCompleted();

protected:
    void customEvent(QEvent* event) override;

private:
    struct Held;

    void processNotification(const Database::CDomainNotification& notification);
    void keep(const Database::CDomainNotification& notification);

    bool m_holding = false;
    std::vector<Held> m_held;
};

} // namespace Torvik::View3d
