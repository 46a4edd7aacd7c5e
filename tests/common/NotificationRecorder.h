#pragma once

#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/Notifications.h"

#include <QObject>
#include <QStringList>

namespace Kx::Test {

/** A global receiver that writes down what it hears: "2 <id> <key> <origin>" for a value, "4 <id>" for others. */
class NotificationRecorder : public QObject {
public:
    NotificationRecorder()
        : m_mapper(Torvik::Database::CDatabaseLibrary::notificationManager())
    {
        m_mapper.addGlobalNotificationReceiver(*this);
    }

    QStringList heard;

protected:
    void customEvent(QEvent* event) override
    {
        if (event->type() != Torvik::Database::CDomainNotificationEvent::eventType) {
            return;
        }
        const auto& notification = static_cast<Torvik::Database::CDomainNotificationEvent*>(event)->notification();
        QString line = QString::number(notification.notificationType());
        if (notification.object()) {
            line += ' ' + notification.object()->id();
        }
        if (const auto* value = dynamic_cast<const Torvik::Database::CObjectValueChangedNotification*>(&notification)) {
            line += ' ' + value->key() + ' ' + QString::number(value->origin());
        }
        heard << line;
    }

private:
    Torvik::Database::CAsyncNotificationMapper m_mapper;
};

} // namespace Kx::Test
