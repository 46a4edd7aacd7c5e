#include "host/app/AppDesk.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CPipeObjects.h"
#include "domain/boundary/CProjectObject.h"
#include "domain/boundary/ColumnNames.h"
#include "host/domain/ProjectStore.h"
#include "host/domain/ShownUnit.h"
#include "host/modules/Language.h"

namespace Torvik::Viewer {

using namespace Torvik::Database;

namespace {

CDomainObjectPointer objectOf(const QString& id)
{
    const auto project = CDomainObject::projectFromObject(AppState::instance().getActiveProject());
    return project && !id.isEmpty() ? project->lookupObject(id) : nullptr;
}

QString nameOf(const CDomainObjectPointer& object)
{
    return object ? object->readValue(NODE_KEY_COLUMN).toString() : QString();
}

} // namespace

AppDesk::AppDesk(QObject* parent)
    : QObject(parent)
{
    connect(&AppState::instance(), &AppState::activeProjectChanged, this, [this](const CDomainObjectPointer& project) {
        m_details.setObject({});
        m_tree.setProject(CDomainObject::projectFromObject(project));
    });
    connect(&Language::instance(), &Language::changed, this, &AppDesk::writeAnew);
    connect(&Base::ShownUnit::instance(), &Base::ShownUnit::changed, this, &AppDesk::writeAnew);
    connect(this, &AppDesk::deleted, this, &AppDesk::writeAnew);
}

void AppDesk::setCurrentId(const QString& id)
{
    m_details.setObject(objectOf(id));
}

void AppDesk::goTo(const QString& id)
{
    const auto object = objectOf(id);
    const bool isObservation = object && object->objectType() == PipeObservationObjectType;
    const auto place = isObservation ? object->parentObject().toStrongRef() : object;
    if (place)
        emit goToWanted(place->id());
}

void AppDesk::writeAnew()
{
    m_tree.refresh();
    m_details.refresh();
}

QString AppDesk::questionBeforeDeleting(const QString& id) const
{
    const auto object = objectOf(id);
    if (!object)
        return {};
    switch (object->objectType()) {
    case NodeObjectType:
        return tr("Delete the node %1 from the project? Pipes keep their place but lose this end.").arg(nameOf(object));
    case SectionObjectType:
    case LateralObjectType:
        return tr("Delete the pipe %1 from the project, with all its inspections and observations?")
            .arg(nameOf(object));
    case PipeInspectionObjectType:
        return tr("Delete this inspection of the pipe %1 from the project, with all its observations?")
            .arg(nameOf(object->parentObject().toStrongRef()));
    default:
        return {};
    }
}

QString AppDesk::deleteObject(const QString& id)
{
    const auto object = objectOf(id);
    if (!object)
        return tr("It is not in the project any more.");
    const QString error = ProjectStore::instance().deleteObject(object).error;
    if (error.isEmpty())
        emit deleted();
    return error;
}

} // namespace Torvik::Viewer
