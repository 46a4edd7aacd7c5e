#pragma once

#include "domain/boundary/CDomainObject.h"

#include <QEvent>
#include <QObject>

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

/** Delivers notifications to the thread of their receivers, as posted events. */
class CAsyncNotificationMapper {
public:
    explicit CAsyncNotificationMapper(IDomainNotificationManager& manager);
    ~CAsyncNotificationMapper();
    CAsyncNotificationMapper(const CAsyncNotificationMapper&) = delete;
    CAsyncNotificationMapper& operator=(const CAsyncNotificationMapper&) = delete;

    /** From now on the receiver gets a CDomainNotificationEvent for every notification of the project. */
    void addGlobalNotificationReceiver(QObject& receiver);

private:
    friend class CDomainObjectProxy;
    IDomainNotificationManager& m_manager;
};

/** Watches one object. The signal is emitted on the proxy's thread, by a posted event. */
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
    IDomainNotificationManager& m_manager;
    QWeakPointer<CDomainObject> m_object;
    QString m_objectId;
};

} // namespace Torvik::Database

Q_DECLARE_METATYPE(Torvik::Database::CObjectListChangedNotification)
