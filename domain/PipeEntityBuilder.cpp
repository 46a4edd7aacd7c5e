#include "domain/PipeEntityBuilder.h"

#include "domain/NotificationMapper.h"
#include "domain/ObservationAdapter.h"
#include "domain/SectionAdapter.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/Notifications.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/ObservationConnection.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

namespace Torvik::View3d {

namespace {

void logError(const char* message)
{
    Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("PipeEntityBuilder"), QLatin1String(message));
}

} // namespace

PipeEntityBuilder::PipeEntityBuilder(QObject* parent)
    : QObject(parent)
{
}

Section* PipeEntityBuilder::create(const Inspection& inspection)
{
    const auto pipe = inspection->parentObject().toStrongRef();
    if (!pipe)
        return nullptr;
    auto* const proxy = new Database::CDomainObjectProxy(sharedNotificationMapper(), pipe, nullptr);
    Section* const section = Section::create(SceneRoot::instance(), new SectionAdapter(inspection, proxy));
    SceneEntities::instance().getPipeEntities().addPipeEntity(section);
    connectSection(section);
    section->setName(pipe->readValue(QStringLiteral("OBJ_Key")).toString());
    emit section->visibilityChanged(true);
    takeToJoint(section);
    return section;
}

void PipeEntityBuilder::takeToJoint(Section* section)
{
    // A made-up node has a depth that no lateral begins at; its connection knows better.
    const Node* const start = section->startNode();
    if (section->inspectionUpstream() && start && start->isVirtual() &&
        SceneEntities::instance().getLateralConnections().contains(section->getProps()->sectionId()))
        section->reposition();
}

void PipeEntityBuilder::connectSection(Section* section)
{
    connect(section, &Section::lateralConnectionAdded, this, &PipeEntityBuilder::onLateralConnectionAdded,
            Qt::DirectConnection);
    connect(section, &Section::lateralConnectionRemoved, this, &PipeEntityBuilder::onLateralConnectionRemoved);
    connect(section, &Section::lateralRefreshRequest, this, &PipeEntityBuilder::onLateralRefreshRequest);
    connect(section, &Section::lateralInProximity, this, &PipeEntityBuilder::onLateralInProximity);
    connect(section, &Section::lateralNotInProximity, SceneRoot::instance(), &SceneRoot::lateralNotInProximity);
}

Section* PipeEntityBuilder::createOrReplace(Section* old, Section* replacement, const Inspection& inspection)
{
    if (old) {
        if (old == replacement)
            return nullptr;
        old->deleteAndSave();
        SceneEntities::instance().getPipeEntities().remove(old);
        dropObservations(old);
    }
    if (!inspection || replacement)
        return nullptr;
    Section* const section = create(inspection);
    loadObservations(inspection);
    SceneEntities::instance().onSectionArrived(section);
    return section;
}

void PipeEntityBuilder::dropObservations(const Section* section)
{
    // Left to go with their section they would count as known, and their laterals as connected, until then.
    const auto& known = SceneEntities::instance().getObservations();
    const auto ids = known.keys();
    for (const QString& id : ids) {
        const Observation* const observation = known.value(id);
        if (observation && observation->section() == section)
            delete observation;
    }
}

void PipeEntityBuilder::loadObservations(const Inspection& inspection)
{
    if (!inspection)
        return;
    for (int i = 0; i < inspection->observationCount(); ++i)
        insertObservation(inspection->observation(i), true);
}

void PipeEntityBuilder::insertObservation(const CDomainObjectPointer& observation, bool fromDB)
{
    const auto inspection = observation ? observation->parentObject().toStrongRef() : CDomainObjectPointer();
    auto& entities = SceneEntities::instance();
    Section* const section = inspection ? entities.getPipeEntities().getByInspectionId(inspection->id()) : nullptr;
    // One that came with its inspection, from another program too, or during a load is announced once more by itself.
    if (!section || entities.getObservations().contains(observation->id()))
        return;
    auto* const proxy = new Database::CDomainObjectProxy(sharedNotificationMapper(), observation, nullptr);
    auto* const adapter = new ObservationAdapter(proxy, nullptr);
    proxy->setParent(adapter);
    entities.getObservations().insert(observation->id(), Observation::create(section, adapter, fromDB));
    // A new bend may have turned the pipe under it.
    if (!fromDB && entities.getCrawler())
        entities.getCrawler()->refreshPosition();
}

void PipeEntityBuilder::onLateralConnectionAdded(const QString& sectionId, ObservationConnection* connection)
{
    auto& entities = SceneEntities::instance();
    entities.getLateralConnections().insert(sectionId, connection);
    const auto sections = entities.getPipeEntities().getBySectionId(sectionId);
    for (Section* section : sections)
        section->reposition();
}

void PipeEntityBuilder::onLateralConnectionRemoved(const QString& sectionId)
{
    SceneEntities::instance().getLateralConnections().take(sectionId);
}

void PipeEntityBuilder::onLateralRefreshRequest(const QString& sectionId)
{
    const auto sections = SceneEntities::instance().getPipeEntities().getBySectionId(sectionId);
    if (sections.isEmpty())
        logError("onLateralRefreshRequest object not found");
    for (Section* section : sections) {
        if (!section) {
            logError("onLateralRefreshRequest object is not a Section");
            return;
        }
        section->reposition();
        section->refreshName();
    }
}

void PipeEntityBuilder::onLateralInProximity(const QString& inspectionId)
{
    const auto& pipes = SceneEntities::instance().getPipeEntities();
    Section* section = pipes.getByInspectionId(inspectionId);
    // A section names its lateral by the pipe.
    if (!section)
        section = pipes.getBySectionId(inspectionId).value(0);
    if (!section)
        return;
    const QString domainId = section->getDomainObjectId();
    if (!domainId.isEmpty())
        emit SceneRoot::instance()->lateralInProximity(domainId, section->transform());
}

} // namespace Torvik::View3d
