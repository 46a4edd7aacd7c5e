#include "domain/EntitiesManager.h"

#include "domain/NodeAdapter.h"
#include "domain/NotificationMapper.h"
#include "domain/SectionAdapterBase.h"
#include "domain/boundary/AppState.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/ColumnNames.h"
#include "domain/boundary/Notifications.h"
#include "domain/boundary/Vector3D.h"
#include "geo/GdalGeoProjector.h"
#include "measurement/SystemControlProxy.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/ObservationConnection.h"
#include "network/Section.h"
#include "plans/PlanLoader.h"
#include "scene/Debounce.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

namespace Torvik::View3d {

using namespace Torvik::Database;

namespace {

/** Tags of the view's own writes. */
constexpr int ownShapeOrigin = 5000;
constexpr int projectionOrigin = -1;
/** Objects from which on a load leaves the scene. */
constexpr int largeLoad = 3000;

void logError(const char* message)
{
    Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("View3d"), QLatin1String(message));
}

} // namespace

EntitiesManager::EntitiesManager(SceneRoot& root, SystemControlProxy& proxy, QObject* parent)
    : QObject(parent)
    , m_root(root)
    , m_proxy(proxy)
    , m_reader(this)
    , m_pipeEntityBuilder(this)
    , m_removals(this)
    , m_dock(std::make_unique<Qt3DCore::QNode>())
{
}

EntitiesManager::~EntitiesManager()
{
    holdStoring(false);
    // The root is being destroyed; the dock must not do it again.
    if (m_root.parentNode() == m_dock.get())
        m_root.setParent(static_cast<Qt3DCore::QNode*>(nullptr));
}

void EntitiesManager::init()
{
    connect(&m_reader, &DomainReader::nodeInserted, this, &EntitiesManager::onNodeInserted);
    connect(&m_reader, &DomainReader::sectionInspectionInserted, this, &EntitiesManager::onSectionInspectionInserted);
    connect(&m_reader, &DomainReader::lateralInspectionInserted, this, &EntitiesManager::onSectionInspectionInserted);
    connect(&m_reader, &DomainReader::nodeModified, this, &EntitiesManager::onNodeModified);
    connect(&m_reader, &DomainReader::sectionModified, this, &EntitiesManager::onSectionModified);
    connect(&m_reader, &DomainReader::inspectionModified, this, &EntitiesManager::onInspectionModified);
    connect(&m_reader, &DomainReader::observationInserted, this, &EntitiesManager::onObservationInserted);
    connect(&m_reader, &DomainReader::observationModified, this, &EntitiesManager::onObservationModified);
    connect(&m_reader, &DomainReader::allRowsRemoved, this, &EntitiesManager::onCleanAll);
    connect(&m_reader, &DomainReader::objectRemoved, this, &EntitiesManager::onObjectRemoved);
    connect(&m_reader, &DomainReader::activeInspectionChanged, this, &EntitiesManager::activeInspectionChanged);
    connect(&m_reader, &DomainReader::loadingStarted, this, &EntitiesManager::onLoadingStarted);
    connect(&m_reader, &DomainReader::loadingProgress, this, &EntitiesManager::onLoadingProgress);
    connect(&m_reader, &DomainReader::loadingFinished, this, &EntitiesManager::onLoadingFinished);
    connect(&m_reader, &DomainReader::projectRead, m_root.planLoader(), &PlanLoader::loadPlanFromProject);
    connect(&m_removals, &RemovalQueue::finished, this, [this] {
        leaveScene();
        m_reader.resumeLoad();
    });
    connect(&m_removals, &RemovalQueue::finished, this, &EntitiesManager::removalFinished);
    // A project that is older than the scene must not come to lie where a map has tied the empty scene.
    if (AppState::instance().getActiveProject())
        GdalGeoProjector::instance()->deinit();
    m_reader.init();
}

void EntitiesManager::onLoadingStarted(int total)
{
    // What is still leaving would be searched through with every object that comes.
    m_loadIsLarge = total > largeLoad;
    holdStoring(true);
    SceneEntities::instance().setLoading(true);
    if (m_removals.isBusy())
        m_reader.pauseLoad();
    else
        leaveScene();
    emit loadingStarted(total);
}

void EntitiesManager::leaveScene()
{
    if (!m_reader.isLoading() || !m_loadIsLarge || !m_root.parentNode() || m_root.parentNode() == m_dock.get())
        return;
    m_place = m_root.parentNode();
    m_root.setParent(m_dock.get());
}

void EntitiesManager::returnToScene()
{
    if (m_root.parentNode() == m_dock.get())
        m_root.setParent(m_place.data());
}

void EntitiesManager::onLoadingProgress(int done, int total)
{
    // A network that takes more than one slice appears when it is whole: drawing it again after every slice would cost
    // more than building it.
    m_root.setEnabled(done == total);
    emit loadingProgress(done, total);
}

void EntitiesManager::onLoadingFinished()
{
    m_root.setEnabled(true);
    returnToScene();
    holdStoring(false);
    SceneEntities::instance().setLoading(false);
    emit loadingFinished();
}

void EntitiesManager::holdStoring(bool hold)
{
    if (m_holdsStoring == hold)
        return;
    m_holdsStoring = hold;
    if (hold)
        Debounce::pauseAll();
    else
        Debounce::resumeAll();
}

QVector3D EntitiesManager::positionFromWKT(const QString& wkt)
{
    const auto& projector = *GdalGeoProjector::instance();
    return (Vector3D<double>(WktPoint(wkt), projector.scale()) - projector.origin()).toQVector3D();
}

EntitiesManager::ScenePosition EntitiesManager::domainObjScenePos(const CDomainObject& object)
{
    const QVariant shape = object.readValue(NODE_SHAPE_WKT_COLUMN);
    if (!shape.isValid() || shape.isNull())
        return {};
    const QString wkt = shape.toString();
    const int flags = WktPoint(wkt).m().toInt() & TransformFlags::allTransformFlags();
    return {positionFromWKT(wkt), TransformFlags(flags)};
}

void EntitiesManager::onNodeInserted(const CDomainObjectPointer& node)
{
    onNodeInsertedByDomainObj(node);
}

void EntitiesManager::onNodeInsertedByDomainObj(const CDomainObjectPointer& object)
{
    const QString id = object->id();
    const QString key = object->readValue(NODE_KEY_COLUMN).toString();
    const bool positioned = !object->readValue(NODE_SHAPE_WKT_COLUMN).toString().isEmpty();
    QList<Section*> sections;
    ScenePosition place;
    if (positioned)
        actionsForPositionedNode(object, sections, place);

    auto* const proxy = new CDomainObjectProxy(sharedNotificationMapper(), object, nullptr);
    Node* const node = Node::create(&m_root, new NodeAdapter(proxy, nullptr));
    connect(proxy, &CDomainObjectProxy::objectValueChanged, this,
            [this, proxy, node](const QString& changedKey, const QVariant& value, int origin) {
                onNodeValueChanged(*proxy, node, changedKey, value, origin);
            });
    node->setVisible(positioned);
    node->setTransformFlags(place.flags.getFlags());
    node->setName(key);
    SceneEntities::instance().getNodes().insert(id, node);
    for (Section* section : sections)
        section->modify();
}

void EntitiesManager::actionsForPositionedNode(const CDomainObjectPointer& node, QList<Section*>& sections,
                                               ScenePosition& place)
{
    if (!GdalGeoProjector::instance()->initialized())
        initProjectorFrom(node);
    place = domainObjScenePos(*node);
    sections = getConnectedPipeEntities(node->id());
}

void EntitiesManager::initProjectorFrom(const CDomainObjectPointer& node)
{
    const auto project = CDomainObject::projectFromObject(node);
    if (!project)
        return;
    QString projection = project->projectionWKT();
    m_root.safeGeoProjectorInit(WktPoint(node->readValue(NODE_SHAPE_WKT_COLUMN).toString()), projection);
    project->setProjectionWKT(projection);
    CDatabaseLibrary::dbAccessManager()->updateObject(project, projectionOrigin);
}

QList<Section*> EntitiesManager::getConnectedPipeEntities(const QString& nodeId) const
{
    QList<Section*> sections;
    const auto ids = m_reader.getConnectedSections(nodeId);
    for (const QString& id : ids)
        sections += SceneEntities::instance().getPipeEntities().getBySectionId(id);
    return sections;
}

void EntitiesManager::onNodeValueChanged(const CDomainObjectProxy& proxy, Node* node, const QString& key,
                                         const QVariant& value, int origin)
{
    if (origin == ownShapeOrigin || key != NODE_SHAPE_WKT_COLUMN)
        return;
    const auto object = proxy.domainObject().toStrongRef();
    if (!object)
        return;
    // Kept as the rule stands: a value that the object no longer holds is the one that moves the node.
    if (value == object->readValue(key))
        return;
    const ScenePosition place = domainObjScenePos(*object);
    const bool hadPosition = node->has3dPosition();
    node->setPosition(place.position, place.flags.getFlags());
    if (hadPosition)
        return;
    const auto sections = getConnectedPipeEntities(node->guid());
    for (Section* section : sections)
        section->rotateToEndNodeDirection();
}

void EntitiesManager::onNodeRemoved(const CDomainObjectPointer&) {}

void EntitiesManager::onSectionInspectionInserted(const CDomainObjectPointer& object)
{
    const auto inspection = qSharedPointerDynamicCast<CPipeInspectionObject>(object);
    if (!inspection) {
        logError("onSectionInspectionInserted invalid object");
        return;
    }
    if (!inspection->parentObject()) {
        logError("onSectionInspectionInserted invalid object2");
        return;
    }
    const Section* const section = m_pipeEntityBuilder.create(inspection);
    m_pipeEntityBuilder.loadObservations(inspection);
    SceneEntities::instance().onSectionArrived(section);
    const auto pipe = inspection->parentObject().toStrongRef();
    if (pipe && pipe->objectType() == LateralObjectType)
        testProximty(inspection);
}

void EntitiesManager::testProximty(const QSharedPointer<CPipeInspectionObject>& inspection)
{
    const auto lateral = inspection->parentObject().toStrongRef();
    const QString carrier = lateral ? lateral->readValue(QStringLiteral("OBJ_Section_REF")).toString() : QString();
    if (carrier.isEmpty())
        return;
    // A lateral that appears right at the crawler is announced at once; it is the section it sits on that meets it.
    const auto counter = static_cast<double>(m_proxy.sectionDistanceCounter());
    if (Section* const section = SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id()))
        section->testLateralProximity(counter);
    Section* const active = SceneEntities::instance().getActiveSectionEntity();
    if (active && active->getProps()->sectionId() == carrier)
        active->testLateralProximity(counter);
}

void EntitiesManager::onObservationInserted(const CDomainObjectPointer& observation, bool fromDB)
{
    m_pipeEntityBuilder.insertObservation(observation, fromDB);
}

void EntitiesManager::onObservationModified(const CDomainObjectPointer& object)
{
    auto& observations = SceneEntities::instance().getObservations();
    const auto entry = observations.constFind(object ? object->id() : QString());
    if (entry == observations.constEnd()) {
        logError("onObservationModified object not found");
        return;
    }
    Observation* const observation = *entry;
    if (!observation) {
        logError("onObservationModified object is not Observation");
        return;
    }
    Observation* const replacement = observation->modify();
    if (replacement != observation) {
        observations.insert(object->id(), replacement);
        observation->deleteLater();
    }
    refreshCrawler();
}

void EntitiesManager::onObservationRemoved(const CDomainObjectPointer&) {}

void EntitiesManager::onNodeModified(const CDomainObjectPointer& object)
{
    if (!object) {
        logError("onNodeModified invalid object");
        return;
    }
    const auto& nodes = SceneEntities::instance().getNodes();
    const auto entry = nodes.constFind(object->id());
    if (entry == nodes.constEnd()) {
        logError("onNodeModified object not found");
        return;
    }
    Node* const node = *entry;
    if (!node) {
        logError("onNodeModified empty Node reference");
        return;
    }
    node->modify();
    node->refreshName();
    refreshCrawler();
}

void EntitiesManager::onSectionModified(const CDomainObjectPointer& object)
{
    if (!object)
        return;
    CDomainObjectPointer pipe;
    switch (object->objectType()) {
    case PipeInspectionObjectType:
        pipe = object->parentObject().toStrongRef();
        break;
    case SectionObjectType:
    case LateralObjectType:
        pipe = object;
        break;
    default:
        return;
    }
    if (!pipe)
        return;
    const auto sections = SceneEntities::instance().getPipeEntities().getBySectionId(pipe->id());
    if (sections.isEmpty()) {
        logError("onSectionModified object not found");
        return;
    }
    for (Section* section : sections) {
        if (!section) {
            logError("onSectionModified object is not a Section");
            return;
        }
        section->modify();
        section->refreshName();
    }
    refreshCrawler();
}

void EntitiesManager::onInspectionModified(const CDomainObjectPointer& inspection)
{
    onSectionModified(inspection);
}

void EntitiesManager::onCrawlerPositionChanged(double distance)
{
    SceneEntities::instance().onCrawlerPositionChanged(distance);
}

void EntitiesManager::activeInspectionChanged(const CDomainObjectPointer&)
{
    auto& entities = SceneEntities::instance();
    const Section* const section = entities.getActiveSectionEntity();
    // To be put there a second time would cut the crawler off from its section.
    if (section && entities.getCrawler() && entities.getCrawler()->section() == section)
        return;
    entities.attachCrawlerToSection();
}

void EntitiesManager::refreshCrawler()
{
    if (Crawler* const crawler = SceneEntities::instance().getCrawler())
        crawler->refreshPosition();
}

} // namespace Torvik::View3d
