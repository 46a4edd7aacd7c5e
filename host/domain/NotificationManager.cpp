#include "host/domain/NotificationManager.h"

#include <QCoreApplication>

namespace Torvik::Database {

namespace {

constexpr auto proxyEventType = static_cast<QEvent::Type>(3021);

class ProxyEvent : public QEvent {
public:
    explicit ProxyEvent(std::shared_ptr<const CDomainNotification> valueChange)
        : QEvent(proxyEventType)
        , change(std::move(valueChange))
    {
    }

    const std::shared_ptr<const CDomainNotification> change;
};

} // namespace

CDomainNotification::CDomainNotification(int notificationType, const CDomainObjectPointer& object)
    : m_type(notificationType)
    , m_object(object)
{
}

CDomainNotification::~CDomainNotification() = default;

int CDomainNotification::notificationType() const
{
    return m_type;
}

CDomainObjectPointer CDomainNotification::object() const
{
    return m_object;
}

CObjectListChangedNotification::CObjectListChangedNotification()
    : CObjectListChangedNotification(CDomainObjectPointer())
{
}

CObjectListChangedNotification::CObjectListChangedNotification(const CDomainObjectPointer& object)
    : CDomainNotification(ObjectListChanged, object)
{
}

CObjectValueChangedNotification::CObjectValueChangedNotification(const CDomainObjectPointer& object, const QString& key,
                                                                 const QVariant& value, int origin)
    : CDomainNotification(ObjectValueChanged, object)
    , m_key(key)
    , m_value(value)
    , m_origin(origin)
{
}

QString CObjectValueChangedNotification::key() const
{
    return m_key;
}

QVariant CObjectValueChangedNotification::value() const
{
    return m_value;
}

int CObjectValueChangedNotification::origin() const
{
    return m_origin;
}

CDomainNotificationEvent::CDomainNotificationEvent(std::shared_ptr<const CDomainNotification> notification)
    : QEvent(eventType)
    , m_notification(std::move(notification))
{
}

CDomainNotificationEvent::~CDomainNotificationEvent() = default;

const CDomainNotification& CDomainNotificationEvent::notification() const
{
    return *m_notification;
}

IDomainNotificationManager::IDomainNotificationManager() = default;
IDomainNotificationManager::~IDomainNotificationManager() = default;

void IDomainNotificationManagerPrivate::addReceiver(QObject& receiver)
{
    QMutexLocker lock(&m_mutex);
    if (++m_receivers[&receiver] > 1) {
        return;
    }
    QObject* const key = &receiver;
    QObject::connect(
        key, &QObject::destroyed, key,
        [this, key] {
            QMutexLocker inner(&m_mutex);
            m_receivers.remove(key);
        },
        Qt::DirectConnection);
}

void IDomainNotificationManagerPrivate::removeReceiver(QObject& receiver)
{
    QMutexLocker lock(&m_mutex);
    const auto found = m_receivers.find(&receiver);
    if (found != m_receivers.end() && --*found == 0) {
        m_receivers.erase(found);
    }
}

void IDomainNotificationManagerPrivate::addProxy(CDomainObjectProxy& proxy)
{
    QMutexLocker lock(&m_mutex);
    CDomainObjectProxy*& first = m_firstProxies[proxy.m_watched];
    proxy.m_next = first;
    if (first) {
        first->m_previous = &proxy;
    }
    first = &proxy;
}

void IDomainNotificationManagerPrivate::removeProxy(CDomainObjectProxy& proxy)
{
    QMutexLocker lock(&m_mutex);
    if (proxy.m_next) {
        proxy.m_next->m_previous = proxy.m_previous;
    }
    if (proxy.m_previous) {
        proxy.m_previous->m_next = proxy.m_next;
    } else if (proxy.m_next) {
        m_firstProxies[proxy.m_watched] = proxy.m_next;
    } else {
        m_firstProxies.remove(proxy.m_watched);
    }
}

void IDomainNotificationManagerPrivate::post(const std::shared_ptr<const CDomainNotification>& notification)
{
    QMutexLocker lock(&m_mutex);
    for (auto receiver = m_receivers.cbegin(); receiver != m_receivers.cend(); ++receiver) {
        QCoreApplication::postEvent(receiver.key(), new CDomainNotificationEvent(notification));
    }
    if (notification->notificationType() != CDomainNotification::ObjectValueChanged) {
        return;
    }
    const CDomainObjectPointer object = notification->object();
    for (CDomainObjectProxy* proxy = m_firstProxies.value(object.data()); proxy; proxy = proxy->m_next) {
        // An object that has gone may have had the same address.
        if (proxy->m_object == object) {
            QCoreApplication::postEvent(proxy, new ProxyEvent(notification));
        }
    }
}

CAsyncNotificationMapper::CAsyncNotificationMapper(IDomainNotificationManager& manager)
    : m_manager(manager)
{
}

CAsyncNotificationMapper::~CAsyncNotificationMapper()
{
    for (const QPointer<QObject>& receiver : qAsConst(m_receivers)) {
        if (receiver) {
            m_manager.data().removeReceiver(*receiver);
        }
    }
}

void CAsyncNotificationMapper::addGlobalNotificationReceiver(QObject& receiver)
{
    if (m_receivers.contains(&receiver)) {
        return;
    }
    m_receivers.append(&receiver);
    m_manager.data().addReceiver(receiver);
}

CDomainObjectProxy::CDomainObjectProxy(CAsyncNotificationMapper& mapper, const CDomainObjectPointer& object,
                                       QObject* parent)
    : QObject(parent)
    , m_manager(mapper.m_manager)
    , m_object(object)
    , m_watched(object.data())
{
    if (m_watched) {
        m_manager.data().addProxy(*this);
    }
}

CDomainObjectProxy::~CDomainObjectProxy()
{
    if (m_watched) {
        m_manager.data().removeProxy(*this);
    }
}

QWeakPointer<CDomainObject> CDomainObjectProxy::domainObject() const
{
    return m_object;
}

void CDomainObjectProxy::customEvent(QEvent* event)
{
    if (event->type() != proxyEventType) {
        return;
    }
    const auto& change = static_cast<const CObjectValueChangedNotification&>(*static_cast<ProxyEvent*>(event)->change);
    emit objectValueChanged(change.key(), change.value(), change.origin());
}

NotificationManager& NotificationManager::instance()
{
    static NotificationManager* const manager = new NotificationManager; // outlives every receiver
    return *manager;
}

void NotificationManager::notify(int type, const CDomainObjectPointer& object)
{
    m_data.post(std::make_shared<CDomainNotification>(type, object));
}

void NotificationManager::notifyListChanged(const CDomainObjectPointer& parent)
{
    m_data.post(std::make_shared<CObjectListChangedNotification>(parent));
}

void NotificationManager::notifyValueChanged(const CDomainObjectPointer& object, const QString& key,
                                             const QVariant& before, int origin)
{
    m_data.post(std::make_shared<CObjectValueChangedNotification>(object, key, before, origin));
}

} // namespace Torvik::Database
