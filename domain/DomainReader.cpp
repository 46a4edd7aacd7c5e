#include "domain/DomainReader.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/ColumnNames.h"
#include "geo/GdalGeoProjector.h"
#include "labels/LabelsPositionsLoader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

namespace Torvik::View3d {

using namespace Torvik::Database;
using Torvik::Logging::CLogger;

namespace {

const QString category = QStringLiteral("View3d::DomainReader");

/** How long a load may hold the event loop at a stretch. */
constexpr qint64 sliceMs = 100;

template <typename Pipe>
void appendInspections(const Pipe& pipe, QVector<CDomainObjectPointer>& inspections)
{
    for (int i = 0; i < pipe->inspectionCount(); ++i)
        inspections.append(pipe->inspection(i));
}

bool warnOfNull(const QSharedPointer<CProjectObject>& project)
{
    if (project)
        return false;
    CLogger::logMessage(Logging::LogError, category, QStringLiteral("CQmlDomainObject project is not valid"));
    return true;
}

} // namespace

/** A load under way: all that was read, and how much of it has been told. */
struct DomainReader::Load {
    Project project;
    QVector<CDomainObjectPointer> nodes;
    QVector<CDomainObjectPointer> sectionInspections;
    QVector<CDomainObjectPointer> lateralInspections;
    int next = 0;
    bool paused = false;
    CDomainObjectPointer activeInspection; ///< to be told at the end

    int total() const { return nodes.size() + sectionInspections.size() + lateralInspections.size(); }
};

DomainReader::DomainReader(QObject* parent)
    : QObject(parent)
    , m_mapper(CDatabaseLibrary::notificationManager())
{
    m_mapper.addGlobalNotificationReceiver(m_receiver);
}

DomainReader::~DomainReader() = default;

void DomainReader::init()
{
    GdalGeoProjector::instance();
    auto& app = AppState::instance();
    connect(&app, &AppState::activeProjectChanged, this, &DomainReader::onProjectChanged);
    connect(CDatabaseLibrary::dbAccessManager(), &CProjectDBAccessManager::projectUnloading, this,
            [this](const Project& unloading) {
                // The load of another project goes on: its host brought the next one before it took the last one away.
                if (m_load && m_load->project == unloading)
                    giveUpLoad();
                emit allRowsRemoved();
            });

    const auto project = CDomainObject::projectFromObject(app.getActiveProject());
    if (project && app.is3dProjectActive())
        populateObjects(project, true);
}

void DomainReader::onProjectChanged(const CDomainObjectPointer& object)
{
    giveUpLoad();
    LabelsPositionsLoader::instance().saveLabelsPositionsForPreviousProject();
    const auto project = CDomainObject::projectFromObject(object);
    if (!project) {
        dropProject();
        return;
    }
    if (!project->is3dProject()) {
        disconnectSignals();
        return;
    }
    LabelsPositionsLoader::instance().readLabelsPositionsForProject(project);
    updateProjectionString(project);
    populateObjects(project, false);
}

void DomainReader::dropProject()
{
    emit allRowsRemoved();
    m_index.clear();
    disconnectSignals();
}

void DomainReader::updateProjectionString(const Project& project)
{
    auto& projector = *GdalGeoProjector::instance();
    if (projector.projectionString().isEmpty())
        projector.setProjectionSystem(project->projectionWKT());
}

void DomainReader::populateObjects(const Project& project, bool announceActiveInspection)
{
    // What still waits in the event queue was raised before; the reading below sees its outcome.
    QCoreApplication::removePostedEvents(&m_receiver, CDomainNotificationEvent::eventType);
    m_receiver.discard();
    auto load = std::make_unique<Load>();
    load->project = project;
    load->nodes = loadNodes(project);
    load->sectionInspections = loadSectionInspection(project);
    load->lateralInspections = loadLateralInspection(project);
    if (announceActiveInspection)
        load->activeInspection = AppState::instance().getActiveInspection();
    m_load = std::move(load);
    m_receiver.hold();
    emit loadingStarted(m_load->total());
    announceNext();
}

QVector<CDomainObjectPointer> DomainReader::loadNodes(const Project& project) const
{
    QVector<CDomainObjectPointer> nodes;
    if (warnOfNull(project))
        return nodes;
    nodes.reserve(project->nodeCount());
    for (int i = 0; i < project->nodeCount(); ++i)
        nodes.append(project->node(i));
    return nodes;
}

QVector<CDomainObjectPointer> DomainReader::loadSectionInspection(const Project& project)
{
    QVector<CDomainObjectPointer> inspections;
    if (warnOfNull(project))
        return inspections;
    for (int i = 0; i < project->sectionCount(); ++i) {
        const auto section = project->section(i);
        setNodeSectionMapping(qSharedPointerCast<CSectionObject>(section));
        appendInspections(section, inspections);
    }
    return inspections;
}

QVector<CDomainObjectPointer> DomainReader::loadLateralInspection(const Project& project) const
{
    QVector<CDomainObjectPointer> inspections;
    if (warnOfNull(project))
        return inspections;
    for (int i = 0; i < project->lateralCount(); ++i)
        appendInspections(project->lateral(i), inspections);
    return inspections;
}

void DomainReader::announceNext()
{
    QElapsedTimer stretch;
    stretch.start();
    const Load* const load = m_load.get();
    while (m_load && m_load.get() == load && m_load->next < m_load->total()) {
        if (m_load->paused)
            return;
        announce(m_load->next++);
        if (m_load.get() == load && stretch.elapsed() > sliceMs && m_load->next < m_load->total()) {
            emit loadingProgress(m_load->next, m_load->total());
            QTimer::singleShot(0, this, [this, load] {
                if (m_load && m_load.get() == load)
                    announceNext();
            });
            return;
        }
    }
    if (m_load && m_load.get() == load)
        finishLoad();
}

void DomainReader::pauseLoad()
{
    if (m_load)
        m_load->paused = true;
}

void DomainReader::resumeLoad()
{
    if (!m_load || !m_load->paused)
        return;
    m_load->paused = false;
    announceNext();
}

void DomainReader::announce(int index)
{
    const int nodes = m_load->nodes.size();
    const int sections = m_load->sectionInspections.size();
    if (index < nodes)
        emit nodeInserted(m_load->nodes.at(index));
    else if (index < nodes + sections)
        emit sectionInspectionInserted(m_load->sectionInspections.at(index - nodes));
    else
        emit lateralInspectionInserted(m_load->lateralInspections.at(index - nodes - sections), true);
}

void DomainReader::finishLoad()
{
    const int total = m_load->total();
    const auto inspection = m_load->activeInspection;
    const auto project = m_load->project;
    m_load.reset();
    emit projectRead(project);
    initConnections();
    emit loadingProgress(total, total);
    emit loadingFinished();
    // Everybody has heard of one that came meanwhile.
    if (inspection && inspection == AppState::instance().getActiveInspection())
        emit activeInspectionChanged(inspection);
    // A listener may have brought the next project already; what is kept by then belongs to that one's load.
    if (!m_load)
        m_receiver.release();
}

void DomainReader::giveUpLoad()
{
    if (!m_load)
        return;
    m_load.reset();
    m_receiver.discard();
    emit loadingFinished();
}

QMultiHash<Base::GUID, Base::GUID> DomainReader::nodeToPipeParentMapping() const
{
    return m_index.entries();
}

QList<Base::GUID> DomainReader::getConnectedSections(const QString& nodeId) const
{
    return m_index.sectionsAt(nodeId);
}

void DomainReader::setNodeSectionMapping(const QSharedPointer<CSectionObject>& section)
{
    m_index.setEnds(section->id(), section->readValue(SECTION_FROMNODE_REF_COLUMN).toString(),
                    section->readValue(SECTION_TONODE_REF_COLUMN).toString());
}

void DomainReader::fillinInspPoints(const QSharedPointer<CGenericPipeObject>& pipe) const
{
    pipe->inspectionCount();
}

void DomainReader::initConnections()
{
    disconnectSignals();
    connect(&m_receiver, &NotificationsReceiver::objectCreated, this, &DomainReader::onObjectCreated);
    connect(&m_receiver, &NotificationsReceiver::objectDeleted, this, &DomainReader::onObjectRemoved);
    connect(&m_receiver, &NotificationsReceiver::objectUnloaded, this, &DomainReader::onObjectUnloaded);
    connect(&m_receiver, &NotificationsReceiver::objectValueChanged, this, &DomainReader::onObjectChanged);
}

void DomainReader::disconnectSignals()
{
    m_receiver.disconnect();
}

void DomainReader::onObjectCreated(const CDomainObjectPointer& object)
{
    if (!object)
        return;
    switch (object->objectType()) {
    case PipeObservationObjectType:
        emit observationInserted(object, false);
        break;
    case NodeObjectType:
        emit nodeInserted(object);
        break;
    case PipeInspectionObjectType:
        onInspectionCreated(object);
        break;
    default:
        break;
    }
}

void DomainReader::onInspectionCreated(const CDomainObjectPointer& inspection)
{
    const auto parent = inspection->parentObject();
    if (!parent) {
        CLogger::logMessage(Logging::LogTrace, category, QStringLiteral("Parent object needed"));
        return;
    }
    // A lateral's inspection comes this way too; the entity layer tells it by the parent's type.
    if (const auto section = qSharedPointerCast<CSectionObject>(parent.toStrongRef())) {
        setNodeSectionMapping(section);
        emit sectionInspectionInserted(inspection);
    } else {
        CLogger::logMessage(Logging::LogTrace, category, QStringLiteral("Section or lateral object needed"));
    }
}

void DomainReader::onObjectChanged(const CDomainObjectPointer& object, const QString&)
{
    if (!object)
        return;
    switch (object->objectType()) {
    case SectionObjectType:
        setNodeSectionMapping(qSharedPointerCast<CSectionObject>(object));
        emit sectionModified(object);
        break;
    case LateralObjectType:
        emit sectionModified(object);
        break;
    case PipeInspectionObjectType:
        emit inspectionModified(object);
        break;
    case PipeObservationObjectType:
        emit observationModified(object);
        break;
    case NodeObjectType:
        emit nodeModified(object);
        break;
    default:
        break;
    }
}

void DomainReader::onObjectRemoved(const CDomainObjectPointer& object)
{
    // At once, even if another object stands under the same id by now: it is told next.
    if (object)
        emit objectRemoved(object->id());
}

void DomainReader::onObjectUnloaded(const CDomainObjectPointer& object)
{
    if (!object)
        return;
    // The farewell of a project that was closed may arrive when it has been opened again: its objects bear the same
    // ids, and those that stand now must stay.
    const auto project = CDomainObject::projectFromObject(AppState::instance().getActiveProject());
    const auto present = project ? project->lookupObject(object->id()) : CDomainObjectPointer();
    if (!present || present == object)
        onObjectRemoved(object);
}

} // namespace Torvik::View3d
