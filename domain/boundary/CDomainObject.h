#pragma once

#include "domain/boundary/ObjectType.h"

#include <QMetaType>
#include <QSharedPointer>
#include <QString>
#include <QVariant>
#include <QWeakPointer>

#include <memory>

namespace Torvik::Database {

class CDomainObject;
class CDomainObjectPrivate;
class CProjectObject;

using CDomainObjectPointer = QSharedPointer<CDomainObject>;

/** One object of a project: the project itself, a node, a pipe, an inspection, an observation.
 *  Objects reach the view by shared pointer only; the view never makes or deletes one.
 *  Main thread only. */
class CDomainObject {
public:
    virtual ~CDomainObject();
    CDomainObject(const CDomainObject&) = delete;
    CDomainObject& operator=(const CDomainObject&) = delete;

    /** Stable identifier of the object in the project. */
    QString id() const;
    ObjectType objectType() const;
    /** False once the object no longer stands for a row. */
    bool isValid() const;
    /** Tests as false when the parent is gone. */
    QWeakPointer<CDomainObject> parentObject() const;

    /** Value of the column `key`; an absent column gives an invalid variant, an empty one a null variant. */
    QVariant readValue(const QString& key) const;
    /** Changes the value in memory; it reaches the database with CProjectDBAccessManager::updateObject. */
    void updateValue(const QString& key, const QVariant& value);
    /** The direct child of that type and id, or null. */
    CDomainObjectPointer findChildObjectById(ObjectType type, const QString& id) const;

    /** The project that holds `any`; null for a null or detached object. */
    static QSharedPointer<CProjectObject> projectFromObject(const CDomainObjectPointer& any);

protected:
    explicit CDomainObject(std::unique_ptr<CDomainObjectPrivate> data);

    std::unique_ptr<CDomainObjectPrivate> d;

    friend class CDomainObjectPrivate;
};

} // namespace Torvik::Database

using CDomainObjectPointer = Torvik::Database::CDomainObjectPointer;

Q_DECLARE_METATYPE(Torvik::Database::CDomainObjectPointer)
