#include "domain/boundary/CDomainObject.h"

#include "domain/boundary/CProjectObject.h"
#include "host/domain/DomainObjectData.h"

namespace Torvik::Database {

CDomainObject::CDomainObject(std::unique_ptr<CDomainObjectPrivate> data)
    : d(std::move(data))
{
}

CDomainObject::~CDomainObject() = default;

QString CDomainObject::id() const
{
    return d->id;
}

ObjectType CDomainObject::objectType() const
{
    return d->type;
}

bool CDomainObject::isValid() const
{
    return d->valid;
}

QWeakPointer<CDomainObject> CDomainObject::parentObject() const
{
    return d->parent;
}

QVariant CDomainObject::readValue(const QString& key) const
{
    const int column = d->layout->indexOf(key);
    if (column < 0)
        return {};
    // An empty column is told from one that is not there: null, but valid.
    const QVariant value = d->values.value(column);
    return value.isValid() ? value : QVariant(QVariant::String);
}

void CDomainObject::updateValue(const QString& key, const QVariant& value)
{
    const int column = d->layout->indexForMemory(key);
    const QVariant before = d->values.value(column);
    if (d->values.set(column, d->layout->asStored(column, value)) && !d->isChanged(column)) {
        d->changed.append({column, before});
    }
}

CDomainObjectPointer CDomainObject::findChildObjectById(ObjectType type, const QString& id) const
{
    if (d->type == ProjectObjectType) {
        const auto& project = static_cast<const ProjectData&>(*d);
        const bool direct = type == NodeObjectType || type == SectionObjectType || type == LateralObjectType;
        const CDomainObjectPointer found = direct ? project.index.value(id) : CDomainObjectPointer();
        return found && found->objectType() == type ? found : CDomainObjectPointer();
    }
    for (const CDomainObjectPointer& child : qAsConst(d->children)) {
        if (child->objectType() == type && child->id() == id) {
            return child;
        }
    }
    return {};
}

QSharedPointer<CProjectObject> CDomainObject::projectFromObject(const CDomainObjectPointer& any)
{
    CDomainObjectPointer object = any && any->isValid() ? any : CDomainObjectPointer();
    while (object && object->objectType() != ProjectObjectType) {
        object = object->parentObject().toStrongRef();
    }
    return object.staticCast<CProjectObject>();
}

} // namespace Torvik::Database
