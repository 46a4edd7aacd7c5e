#include "scene/SceneEntities.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/CProjectObject.h"
#include "measurement/InspectionCommands.h"
#include "measurement/SystemControlProxy.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/ObservationConnection.h"
#include "network/Section.h"
#include "scene/Debounce.h"
#include "scene/GlobalNav.h"

#include <QQmlEngine>

#include <cmath>
#include <utility>

namespace Torvik::View3d {

using Torvik::QmlWrapper::CQmlDomainObject;

namespace {

void log(Logging::LogLevel level, const char* message)
{
    Logging::CLogger::logMessage(level, QStringLiteral("View3d::SceneEntities"), QLatin1String(message));
}

} // namespace

SceneEntities& SceneEntities::instance()
{
    static SceneEntities entities;
    return entities;
}

QObject* SceneEntities::qmlSingletonInstance(QQmlEngine*, QJSEngine*)
{
    QQmlEngine::setObjectOwnership(&instance(), QQmlEngine::CppOwnership);
    return &instance();
}

SceneEntities::SceneEntities()
    : m_shapeAccess(nullptr)
    , m_pipeEntityBuilder(nullptr)
{
}

void SceneEntities::initConnections()
{
    auto& app = AppState::instance();
    auto& vehicle = SystemControlProxy::instance();
    // A scene that is built again must not hear everything twice.
    disconnect(&app, nullptr, this, nullptr);
    disconnect(&vehicle, nullptr, this, nullptr);
    disconnect(&m_realTimeController, nullptr, this, nullptr);
    m_loading = false;
    m_readyWhileLoading = false;
    const auto onInspection = [this](const CDomainObjectPointer& inspection) {
        onActiveInspectionChanged(CQmlDomainObject(inspection));
    };
    connect(&app, &AppState::activeInspectionChanged, this, onInspection);
    onInspection(app.getActiveInspection());
    connect(&app, &AppState::activeStructureChanged, this,
            [this](const CDomainObjectPointer& structure) { onActiveStructureChanged(CQmlDomainObject(structure)); });
    // Before the scene is emptied: what has changed a moment ago is not stored yet.
    auto* const access = Database::CDatabaseLibrary::dbAccessManager();
    disconnect(access, nullptr, this, nullptr);
    connect(access, &Database::CProjectDBAccessManager::projectUnloading, this, [] { Debounce::flushAll(); });
    connect(&vehicle, &SystemControlProxy::latestCameraSensorPositionChanged, this,
            &SceneEntities::onLatestCameraSensorPositionChanged);
    connect(&m_realTimeController, &RealTimeController::start3dRealTimeMeasurements, this,
            &SceneEntities::start3dRealTimeMeasurements);
    connect(&m_realTimeController, &RealTimeController::stop3dRealTimeMeasurements, this,
            &SceneEntities::stop3dRealTimeMeasurements);
    log(Logging::LogTrace, "Connected to application state data");
}

void SceneEntities::onActiveInspectionChanged(CQmlDomainObject inspection)
{
    // The last reference may be ours: it must live until the measurement has ended.
    const CDomainObjectPointer earlier = m_activeInspection;
    m_realTimeController.enableMeasurement(false);
    GlobalNav::instance()->setRealTimeEnabled(false);
    if (!inspection.isValid()) {
        m_activeInspection.clear();
        m_inspectionReady = false;
        return;
    }
    m_activeInspection = inspection.object();
    m_inspectionReady = true;
    m_structureReady = !m_activeInspection->parentObject().isNull();
    if (m_structureReady)
        onInspReady();
}

void SceneEntities::onActiveStructureChanged(CQmlDomainObject section)
{
    m_structureReady = section.isValid() && section.object();
    if (m_structureReady && m_inspectionReady)
        onInspReady();
}

void SceneEntities::setLoading(bool loading)
{
    m_loading = loading;
    if (!loading && m_readyWhileLoading && m_inspectionReady && m_structureReady)
        onInspReady();
    m_readyWhileLoading = false;
}

void SceneEntities::onSectionArrived(const Section* section)
{
    // Its inspection was made active before its section could stand.
    if (!m_loading && m_inspectionReady && m_structureReady && section && section == getActiveSectionEntity())
        onInspReady();
}

void SceneEntities::onInspReady()
{
    if (m_loading) {
        m_readyWhileLoading = true;
        return;
    }
    showDirectionArrowIfNeeded();
    if (!m_activeInspection) {
        if (m_crawler)
            m_crawler->attachToSection(nullptr);
        return;
    }
    // What was announced in the inspection before holds no more.
    if (Section* const section = getActiveSectionEntity())
        emit section->lateralNotInProximity();
    attachCrawlerToSection();
    log(Logging::LogTrace, "Crawler attached to the Section");
}

void SceneEntities::attachCrawlerToSection()
{
    Section* const section = getActiveSectionEntity();
    if (!section) {
        log(Logging::LogInformation, "Cannot attach crawler to null section");
        return;
    }
    if (m_crawler)
        m_crawler->attachToSection(section);
    section->testLateralProximity(static_cast<double>(SystemControlProxy::instance().sectionDistanceCounter()));
}

void SceneEntities::showDirectionArrowIfNeeded()
{
    Section* const active = getActiveSectionEntity();
    if (!active)
        return;
    const auto sections = m_pipeEntities.getPipeEntities();
    for (Section* section : sections)
        section->hideDirectionArrow();
    if (active->needsDirectionArrow())
        active->showDirectionArrow();
}

Section* SceneEntities::getActiveSectionEntity() const
{
    return m_activeInspection ? m_pipeEntities.getByInspectionId(m_activeInspection->id()) : nullptr;
}

Crawler* SceneEntities::getCrawler() const
{
    return m_crawler;
}

void SceneEntities::setCrawler(Crawler* crawler)
{
    m_crawler = crawler;
}

void SceneEntities::enable3dMeasurement(bool enabled)
{
    m_realTimeController.enableMeasurement(enabled);
}

void SceneEntities::announceRealTime(bool enabled)
{
    const int present = GlobalNav::instance()->realTimeSwitches();
    if (std::exchange(m_announcedSwitch, present) != present)
        enable3dMeasurement(enabled);
}

void SceneEntities::onCrawlerPositionChanged(double distance)
{
    if (Section* const section = getActiveSectionEntity()) {
        section->onDistanceCounterChanged(distance);
        if (m_crawler)
            m_crawler->refreshPosition();
    }
    m_realTimeController.setCrawlerDistance(distance);
}

void SceneEntities::onLatestCameraSensorPositionChanged(Vector3D<double> position, float distance)
{
    Section* const section = getActiveSectionEntity();
    InspectionCommands* const commands = section ? section->inspection() : nullptr;
    const bool number = std::isfinite(position.x()) && std::isfinite(position.y()) && std::isfinite(position.z()) &&
                        std::isfinite(distance);
    if (!commands || !number)
        return;
    // The scene's up is y, the sensor's is z.
    commands->addPoint(Vector3D<double>(position.x(), position.z(), -position.y()).toQVector3D(), distance);
    // Without real time a reading changes nothing, and must not hold back what is about to be written.
    if (commands->realTime)
        m_shapeAccess.writePointsLater(section);
    else
        m_shapeAccess.writePoints(section);
    emit section->realTimeDataChanged();
}

QString SceneEntities::getProjectPathOrEmptyString() const
{
    const auto project = AppState::instance().getActiveProject();
    if (!project || project->objectType() != Database::ProjectObjectType)
        return {};
    return qSharedPointerCast<Database::CProjectObject>(project)->projectPath();
}

QVariant SceneEntities::getPositionOfAnyNodeFromSection(const QString& sectionId) const
{
    const auto sections = m_pipeEntities.getBySectionId(sectionId);
    if (sections.isEmpty())
        return {};
    for (Node* node : {sections.first()->upstreamNode(), sections.first()->downstreamNode()}) {
        if (node && node->has3dPosition())
            return node->position();
    }
    return {};
}

void SceneEntities::removeObject(QObject* object)
{
    m_shapeAccess.takeLeave(object);
    m_pipeEntities.removeObject(object);
    m_nodes.removeObject(object);
    m_lateralConnections.removeObject(object);
    m_observations.removeObject(object);
}

} // namespace Torvik::View3d
