#include "host/domain/DomainObjectData.h"

#include "host/domain/ProjectSession.h"

#include <algorithm>

namespace Torvik::Database {

namespace {

/** Gives construction to the factory, which the boundary's classes keep to the library. */
template <typename Base>
class Made : public Base {
public:
    explicit Made(std::unique_ptr<CDomainObjectPrivate> data)
        : Base(std::move(data))
    {
    }
};

template <typename Base>
CDomainObjectPointer makeAs(std::unique_ptr<CDomainObjectPrivate> data)
{
    return QSharedPointer<Made<Base>>::create(std::move(data));
}

CDomainObjectPointer makeByType(std::unique_ptr<CDomainObjectPrivate> data)
{
    switch (data->type) {
    case ProjectObjectType:
        return makeAs<CProjectObject>(std::move(data));
    case SectionObjectType:
    case LateralObjectType: // also a lateral's parent is promoted as a section
        return makeAs<CSectionObject>(std::move(data));
    case PipeInspectionObjectType:
        return makeAs<CPipeInspectionObject>(std::move(data));
    case PipeObservationObjectType:
        return makeAs<CPipeObservationObject>(std::move(data));
    default:
        return makeAs<CDomainObject>(std::move(data));
    }
}

} // namespace

CDomainObjectPrivate::CDomainObjectPrivate(ObjectType objectType, QString objectId,
                                           std::shared_ptr<ColumnLayout> columnLayout)
    : type(objectType)
    , id(std::move(objectId))
    , layout(std::move(columnLayout))
{
}

CDomainObjectPrivate::~CDomainObjectPrivate() = default;

bool CDomainObjectPrivate::isChanged(int column) const
{
    return std::any_of(changed.begin(), changed.end(),
                       [column](const ColumnChange& change) { return change.column == column; });
}

CDomainObjectPointer CDomainObjectPrivate::make(std::unique_ptr<CDomainObjectPrivate> data)
{
    CDomainObjectPrivate* const raw = data.get();
    CDomainObjectPointer object = makeByType(std::move(data));
    raw->self = object;
    return object;
}

CDomainObjectPrivate* CDomainObjectPrivate::of(const CDomainObject* object)
{
    return object ? object->d.get() : nullptr;
}

ProjectData::ProjectData(const QString& projectId, std::shared_ptr<ColumnLayout> columnLayout, QString folder)
    : CDomainObjectPrivate(ProjectObjectType, projectId, std::move(columnLayout))
    , path(std::move(folder))
{
}

ProjectData::~ProjectData() = default;

ProjectData* ProjectData::of(const QSharedPointer<CProjectObject>& project)
{
    return static_cast<ProjectData*>(CDomainObjectPrivate::of(project.data()));
}

QVector<CDomainObjectPointer>* ProjectData::listFor(ObjectType objectType)
{
    switch (objectType) {
    case NodeObjectType:
        return &nodes;
    case SectionObjectType:
        return &sections;
    case LateralObjectType:
        return &laterals;
    default:
        return nullptr;
    }
}

void ProjectData::attach(const CDomainObjectPointer& parentObject, const CDomainObjectPointer& object)
{
    CDomainObjectPrivate* const data = CDomainObjectPrivate::of(object);
    CDomainObjectPrivate* const parentData = CDomainObjectPrivate::of(parentObject);
    data->parent = parentObject;
    QVector<CDomainObjectPointer>* const list = parentData == this ? listFor(data->type) : &parentData->children;
    Q_ASSERT(list);
    list->append(object);
    index.insert(data->id, object);
}

QVector<CDomainObjectPointer> ProjectData::detach(const CDomainObjectPointer& object)
{
    CDomainObjectPrivate* const data = CDomainObjectPrivate::of(object);
    QVector<CDomainObjectPointer> removed;
    const QVector<CDomainObjectPointer> below = data->children;
    for (const CDomainObjectPointer& child : below) {
        removed += detach(child);
    }
    if (CDomainObjectPrivate* const parentData = CDomainObjectPrivate::of(data->parent.toStrongRef())) {
        QVector<CDomainObjectPointer>* const list = parentData == this ? listFor(data->type) : &parentData->children;
        const int position = list->lastIndexOf(object);
        if (position >= 0) {
            list->remove(position);
        }
    }
    index.remove(data->id);
    data->valid = false;
    removed.append(object);
    return removed;
}

void ProjectData::invalidateAll()
{
    for (const CDomainObjectPointer& object : qAsConst(index)) {
        CDomainObjectPrivate::of(object)->valid = false;
    }
    valid = false;
}

} // namespace Torvik::Database
