#pragma once

#include "domain/boundary/CDomainObject.h"

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QVector>

#include <memory>

namespace Torvik::Database {

/** A change in the project. */
class CDomainNotification {
public:
    enum Type {
        ObjectListChanged = 1,
        ObjectValueChanged = 2,
        ObjectCreated = 4,
        ObjectDeleted = 5,
        ObjectUnloaded = 6,
        TransactionCompleted = 7
    };

    CDomainNotification(int notificationType, const CDomainObjectPointer& object);
    virtual ~CDomainNotification();

    int notificationType() const;
    /** The object concerned; null for a completed transaction. */
    CDomainObjectPointer object() const;

private:
    int m_type;
    CDomainObjectPointer m_object;
};

/** The list of an object's children has changed. */
class CObjectListChangedNotification : public CDomainNotification {
public:
    CObjectListChangedNotification();
    explicit CObjectListChangedNotification(const CDomainObjectPointer& object);
};

/** One value of an object has changed. */
class CObjectValueChangedNotification : public CDomainNotification {
public:
    CObjectValueChangedNotification(const CDomainObjectPointer& object, const QString& key, const QVariant& value,
                                    int origin);

    /** The column that has changed. */
    QString key() const;
    /** The value that the column held before: a listener tells by it whether anything has changed at all. */
    QVariant value() const;
    /** The tag that the writer gave to updateObject. */
    int origin() const;

private:
    QString m_key;
    QVariant m_value;
    int m_origin;
};

/** Carries a notification to a global receiver's customEvent. */
class CDomainNotificationEvent : public QEvent {
public:
    static constexpr QEvent::Type eventType = static_cast<QEvent::Type>(3020);

    explicit CDomainNotificationEvent(std::shared_ptr<const CDomainNotification> notification);
    ~CDomainNotificationEvent() override;

    const CDomainNotification& notification() const;

private:
    std::shared_ptr<const CDomainNotification> m_notification;
};

class IDomainNotificationManagerPrivate;

/** Source of a domain library's notifications. Notifications may be raised on any thread. */
class IDomainNotificationManager {
public:
    virtual ~IDomainNotificationManager();

protected:
    IDomainNotificationManager();

private:
    friend class CAsyncNotificationMapper;
    friend class CDomainObjectProxy;
    virtual IDomainNotificationManagerPrivate& data() = 0;
};

/** Delivers notifications to the thread of their receivers, as posted events. Its end is the end of what its global
 *  receivers hear; proxies made on it do not need it any more. */
class CAsyncNotificationMapper {
public:
    explicit CAsyncNotificationMapper(IDomainNotificationManager& manager);
    ~CAsyncNotificationMapper();
    CAsyncNotificationMapper(const CAsyncNotificationMapper&) = delete;
    CAsyncNotificationMapper& operator=(const CAsyncNotificationMapper&) = delete;

    /** From now on the receiver gets a CDomainNotificationEvent for every notification of the project: one each,
     * however often it is added. A receiver that is destroyed leaves by itself. */
    void addGlobalNotificationReceiver(QObject& receiver);

private:
    friend class CDomainObjectProxy;
    IDomainNotificationManager& m_manager;
    QVector<QPointer<QObject>> m_receivers;
};

/** Watches one object, or nothing when given null. The signal is emitted on the proxy's thread, by a posted event. Made
 *  and destroyed in constant time, and a notification only reaches the proxies of its own object, so there may be as
 * many as there are objects. */
class CDomainObjectProxy : public QObject {
    Q_OBJECT

public:
    CDomainObjectProxy(CAsyncNotificationMapper& mapper, const CDomainObjectPointer& object, QObject* parent);
    ~CDomainObjectProxy() override;

    QWeakPointer<CDomainObject> domainObject() const;

signals:
    /** `value` is what the column held before; the object holds the new value already. */
    void objectValueChanged(const QString& key, const QVariant& value, int origin);

protected:
    void customEvent(QEvent* event) override;

private:
    friend class IDomainNotificationManagerPrivate;

    IDomainNotificationManager& m_manager;
    QWeakPointer<CDomainObject> m_object;
    const CDomainObject* m_watched = nullptr; ///< key in the manager's index, never followed
    CDomainObjectProxy* m_previous = nullptr; ///< neighbours among the proxies of the same object
    CDomainObjectProxy* m_next = nullptr;
};

} // namespace Torvik::Database

Q_DECLARE_METATYPE(Torvik::Database::CObjectListChangedNotification)
