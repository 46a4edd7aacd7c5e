#include "domain/NotificationsReceiver.h"

namespace Torvik::View3d {

using Database::CDomainNotification;

struct NotificationsReceiver::Held {
    int type;
    CDomainObjectPointer object;
    QString key;
};

NotificationsReceiver::NotificationsReceiver(QObject* parent)
    : QObject(parent)
{
}

NotificationsReceiver::~NotificationsReceiver() = default;

void NotificationsReceiver::hold()
{
    m_holding = true;
}

void NotificationsReceiver::release()
{
    m_holding = false;
    std::vector<Held> held;
    held.swap(m_held);
    for (const Held& one : held) {
        if (one.type == CDomainNotification::ObjectListChanged)
            processNotification(Database::CObjectListChangedNotification(one.object));
        else if (one.type == CDomainNotification::ObjectValueChanged)
            processNotification(Database::CObjectValueChangedNotification(one.object, one.key, QVariant(), 0));
        else
            processNotification(CDomainNotification(one.type, one.object));
    }
}

void NotificationsReceiver::discard()
{
    m_holding = false;
    m_held.clear();
}

void NotificationsReceiver::customEvent(QEvent* event)
{
    if (event->type() != Database::CDomainNotificationEvent::eventType)
        return;
    const auto& notification = static_cast<Database::CDomainNotificationEvent*>(event)->notification();
    if (m_holding)
        keep(notification);
    else
        processNotification(notification);
    event->accept();
}

void NotificationsReceiver::keep(const CDomainNotification& notification)
{
    QString key;
    if (const auto* change = dynamic_cast<const Database::CObjectValueChangedNotification*>(&notification))
        key = change->key();
    m_held.push_back({notification.notificationType(), notification.object(), key});
}

void NotificationsReceiver::processNotification(const CDomainNotification& notification)
{
    switch (notification.notificationType()) {
    case CDomainNotification::ObjectListChanged:
        if (const auto* list = dynamic_cast<const Database::CObjectListChangedNotification*>(&notification))
            emit objectListChanged(*list);
        break;
    case CDomainNotification::ObjectValueChanged:
        if (const auto* change = dynamic_cast<const Database::CObjectValueChangedNotification*>(&notification))
            emit objectValueChanged(change->object(), change->key());
        break;
    case CDomainNotification::ObjectCreated:
        emit objectCreated(notification.object());
        break;
    case CDomainNotification::ObjectDeleted:
        emit objectDeleted(notification.object());
        break;
    case CDomainNotification::ObjectUnloaded:
        emit objectUnloaded(notification.object());
        break;
    case CDomainNotification::TransactionCompleted:
        emit transactionCompleted();
        break;
    default:
        break;
    }
}

} // namespace Torvik::View3d
