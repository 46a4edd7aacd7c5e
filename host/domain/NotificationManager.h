#pragma once

#include "domain/boundary/Notifications.h"

#include <QHash>
#include <QMutex>

namespace Torvik::Database {

/** Who wants to hear what. Any thread. */
class IDomainNotificationManagerPrivate {
public:
    void addReceiver(QObject& receiver);
    /** As often as it was added. */
    void removeReceiver(QObject& receiver);
    void addProxy(CDomainObjectProxy& proxy);
    void removeProxy(CDomainObjectProxy& proxy);
    void post(const std::shared_ptr<const CDomainNotification>& notification);

private:
    QMutex m_mutex;
    QHash<QObject*, int> m_receivers; // with the number of times it was added
    QHash<const CDomainObject*, CDomainObjectProxy*> m_firstProxies;
};

/** The process's source of notifications. */
class NotificationManager : public IDomainNotificationManager {
public:
    static NotificationManager& instance();

    void notify(int type, const CDomainObjectPointer& object);
    void notifyListChanged(const CDomainObjectPointer& parent);
    void notifyValueChanged(const CDomainObjectPointer& object, const QString& key, const QVariant& before, int origin);

private:
    IDomainNotificationManagerPrivate& data() override { return m_data; }

    IDomainNotificationManagerPrivate m_data;
};

} // namespace Torvik::Database
