#pragma once

#include "domain/boundary/CPipeObjects.h"
#include "domain/boundary/CProjectObject.h"
#include "host/domain/ObjectValues.h"

#include <QHash>
#include <QVector>

namespace Torvik::Database {

class ProjectSession;

/** A column that was changed in memory, and what it held before. */
struct ColumnChange {
    int column = 0;
    QVariant before;
};

/** What stands behind a domain object. The project owns its children, they theirs; upward references are weak. */
class CDomainObjectPrivate {
public:
    CDomainObjectPrivate(ObjectType objectType, QString objectId, std::shared_ptr<ColumnLayout> columnLayout);
    virtual ~CDomainObjectPrivate();

    /** An object of the class that belongs to the type. */
    static CDomainObjectPointer make(std::unique_ptr<CDomainObjectPrivate> data);
    /** Null for null. */
    static CDomainObjectPrivate* of(const CDomainObject* object);
    static CDomainObjectPrivate* of(const CDomainObjectPointer& object) { return of(object.data()); }

    const ObjectType type;
    const QString id;
    const std::shared_ptr<ColumnLayout> layout;
    bool valid = true;
    QWeakPointer<CDomainObject> self;
    QWeakPointer<CDomainObject> parent;
    QVector<CDomainObjectPointer> children; ///< inspections of a pipe, observations of an inspection
    ObjectValues values;
    QVector<ColumnChange> changed; ///< columns changed in memory and not yet written

    bool isChanged(int column) const;
};

/** The project's own part: the lists of its children, the index of all objects, the connection while it is open. */
class ProjectData : public CDomainObjectPrivate {
public:
    ProjectData(const QString& projectId, std::shared_ptr<ColumnLayout> columnLayout, QString folder);
    ~ProjectData() override;

    static ProjectData* of(const QSharedPointer<CProjectObject>& project);

    /** The list that holds the project's direct children of that type; null for other types. */
    QVector<CDomainObjectPointer>* listFor(ObjectType objectType);
    /** Puts an object under its parent and into the index. */
    void attach(const CDomainObjectPointer& parentObject, const CDomainObjectPointer& object);
    /** Takes an object and all below it out of the project and makes them invalid. Returns them, the lowest first. */
    QVector<CDomainObjectPointer> detach(const CDomainObjectPointer& object);
    /** Makes every object of the project invalid; the objects stay readable. */
    void invalidateAll();

    const QString path; ///< ends in a separator
    QVector<CDomainObjectPointer> nodes;
    QVector<CDomainObjectPointer> sections;
    QVector<CDomainObjectPointer> laterals;
    QHash<QString, CDomainObjectPointer> index;        ///< all objects but the project itself
    QHash<int, std::shared_ptr<ColumnLayout>> layouts; ///< by object type
    qint64 seenChange = 0;                             ///< last entry of the change log that the cache knows
    std::unique_ptr<ProjectSession> session;           ///< null for a project that is not, or no longer, open
};

} // namespace Torvik::Database
