#include "scene/SceneRoot.h"

#include "domain/boundary/AppState.h"
#include "geo/GdalGeoProjector.h"
#include "interaction/TouchInput.h"
#include "labels/LabelBoard.h"
#include "measurement/SystemControlProxy.h"
#include "network/Crawler.h"
#include "plans/BackgroundLoader.h"
#include "plans/FloorPlanLoader.h"
#include "plans/IBackgroundPlan.h"
#include "scene/Fuzzy.h"
#include "scene/GlobalNav.h"
#include "scene/ReadableEffect.h"
#include "scene/SceneEntities.h"
#include "scene/SelectionAwareness.h"
#include "scene/SharedComponents.h"

#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QPerVertexColorMaterial>
#include <Qt3DExtras/QPhongMaterial>
#include <Qt3DRender/QLayer>
#include <Qt3DRender/QRayCaster>

namespace Torvik::View3d {

using Qt3DRender::QLayer;
using Qt3DRender::QMaterial;

namespace {

constexpr float markerLength = 2.0F;
constexpr float markerRadius = 0.02F;
const QColor selectedColour(12, 12, 255);

/** A manhole stays visible in a picture of a whole town. */
void makeReadable(QMaterial* material)
{
    if (auto* const gooch = qobject_cast<Qt3DExtras::QGoochMaterial*>(material)) {
        auto& shared = SharedComponents::instance();
        Readable::apply(gooch, shared.readableEffect(), SharedComponents::nodePixels);
    }
}

} // namespace

SceneRoot* SceneRoot::m_instance = nullptr;
Qt3DRender::QCamera* SceneRoot::m_camera = nullptr;

SceneRoot::SceneRoot()
    : Qt3DCore::QEntity(nullptr)
    , m_entitiesManager(*this, SystemControlProxy::instance(), nullptr)
    , m_materialPipe(new Qt3DExtras::QPhongMaterial(this))
    , m_materialNode(new Qt3DExtras::QPhongMaterial(this))
    , m_materialNodeSelected(new Qt3DExtras::QPhongMaterial(this))
    , m_materialCone(new Qt3DExtras::QPhongMaterial(this))
    , m_materialConnection(new Qt3DExtras::QPhongMaterial(this))
    , m_gridMaterial(new Qt3DExtras::QPerVertexColorMaterial)
    , m_rayCaster(new Qt3DRender::QRayCaster(this))
    , m_touchInput(new TouchInput(this))
    , m_planLoader(std::make_unique<BackgroundLoader>())
    , m_floorPlanLoader(std::make_unique<FloorPlanLoader>())
{
    m_instance = this;
    SharedComponents::instance().setHome(this);
    // Its guard counts from now: begun by the first tap, it would take that for a selection's.
    SelectionAwareness::instance();
    connect(GlobalNav::instance(), &GlobalNav::shortTap, this, &SceneRoot::onShortTap);
    auto& app = AppState::instance();
    connect(&app, &AppState::activeProjectChanged, this, &SceneRoot::cleanupBeforeProjectChanged);
    // Anew for each root, so that it comes before every other reaction to the change.
    disconnect(&app, &AppState::activeProjectChanged, GdalGeoProjector::instance(), &GdalGeoProjector::deinit);
    connect(&app, &AppState::activeProjectChanged, GdalGeoProjector::instance(), &GdalGeoProjector::deinit);
    createGridPlane();
    createSetDefaultMaterialSelected();
    SceneEntities::instance().initConnections();
    addComponent(m_rayCaster);
}

SceneRoot::~SceneRoot()
{
    // Objects that go with the root must not ask it to deselect them.
    SelectionAwareness::instance().deselectAll();
}

SceneRoot* SceneRoot::instance()
{
    return m_instance;
}

Qt3DRender::QCamera* SceneRoot::camera()
{
    return m_camera;
}

void SceneRoot::createSetDefaultMaterialSelected()
{
    auto* const material = new Qt3DExtras::QGoochMaterial(this);
    material->setAlpha(0.12F);
    material->setBeta(1.0F);
    material->setShininess(0.1F);
    material->setCool(selectedColour);
    material->setWarm(selectedColour);
    material->setDiffuse(Qt::black);
    material->setSpecular(Qt::black);
    setMaterialSelected(material);
}

void SceneRoot::qmlOnCompleted()
{
    auto& vehicle = SystemControlProxy::instance();
    const auto distance = [&vehicle] { return static_cast<double>(vehicle.sectionDistanceCounter()); };
    connect(&vehicle, &SystemControlProxy::sectionDistanceCounterChanged, this,
            [this, distance] { onDistanceValueChanged(distance()); });
    SceneEntities::instance().onCrawlerPositionChanged(distance());
    m_entitiesManager.init();
    connect(this, &SceneRoot::lateralInProximity, GlobalNav::instance(), &GlobalNav::onLateralInProximity);
    connect(this, &SceneRoot::lateralNotInProximity, GlobalNav::instance(), &GlobalNav::onLateralNotInProximity);
}

void SceneRoot::onDistanceValueChanged(double distance)
{
    SceneEntities::instance().onCrawlerPositionChanged(distance);
    emit distanceValueChanged(distance);
}

void SceneRoot::safeGeoProjectorInit(Database::WktPoint point, QString& projectionSystem)
{
    if (!sceneHasNodesWithPosition())
        GdalGeoProjector::instance()->init(point, projectionSystem);
}

void SceneRoot::safeGeoProjectorInitFromMap(double latit, double longit, double alitid)
{
    if (!sceneHasNodesWithPosition())
        GdalGeoProjector::instance()->initFromMap(latit, longit, alitid);
}

Qt3DCore::QEntity* SceneRoot::createMarker(const QColor& colour)
{
    auto* const marker = new Qt3DCore::QEntity(this);
    auto* const mesh = new Qt3DExtras::QCylinderMesh(marker);
    mesh->setLength(markerLength);
    mesh->setRadius(markerRadius);
    auto* const transform = new Qt3DCore::QTransform(marker);
    m_markerTransforms.append(transform);
    auto* const material = new Qt3DExtras::QGoochMaterial(marker);
    material->setCool(colour);
    material->setWarm(colour);
    marker->addComponent(mesh);
    marker->addComponent(transform);
    marker->addComponent(material);
    return marker;
}

void SceneRoot::setMarkerPosition(int index, const QVector3D& position)
{
    if (index >= 0 && index < m_markerTransforms.size())
        m_markerTransforms.at(index)->setTranslation(position);
}

QMatrix4x4 SceneRoot::rotationMatrixFromFourPoints(const QVector3D& a, const QVector3D& b, const QVector3D& c,
                                                   const QVector3D& d) const
{
    QVector3D axis;
    float angle = 0;
    QQuaternion::rotationTo(b - a, d - c).getAxisAndAngle(&axis, &angle);
    return Qt3DCore::QTransform::rotateAround(a, angle, axis);
}

template <typename Value, typename Signal>
void SceneRoot::change(Value& member, const Value& value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(this->*signal)(value);
}

void SceneRoot::setMaterialPipe(QMaterial* material)
{
    change(m_materialPipe, material, &SceneRoot::materialPipeChanged);
}

void SceneRoot::setMaterialNode(QMaterial* material)
{
    makeReadable(material);
    change(m_materialNode, material, &SceneRoot::materialNodeChanged);
}

void SceneRoot::setMaterialNodeSelected(QMaterial* material)
{
    makeReadable(material);
    change(m_materialNodeSelected, material, &SceneRoot::materialNodeSelectedChanged);
}

void SceneRoot::setMaterialCone(QMaterial* material)
{
    change(m_materialCone, material, &SceneRoot::materialConeChanged);
}

void SceneRoot::setMaterialConnection(QMaterial* material)
{
    change(m_materialConnection, material, &SceneRoot::materialConnectionChanged);
}

void SceneRoot::setVertexLabelMaterial(QMaterial* material)
{
    change(m_materialVertexLabel, material, &SceneRoot::vertexLabelMaterialChanged);
}

void SceneRoot::setMaterialSelected(QMaterial* material)
{
    change(m_materialSelected, material, &SceneRoot::materialSelectedChanged);
}

void SceneRoot::setLayerGrid(QLayer* layer)
{
    change(m_layerGrid, layer, &SceneRoot::layerGridChanged);
}

void SceneRoot::setLayerObservation(QLayer* layer)
{
    change(m_layerObservation, layer, &SceneRoot::layerObservationChanged);
}

void SceneRoot::setLayerStructure(QLayer* layer)
{
    change(m_layerStructure, layer, &SceneRoot::layerStructureChanged);
}

void SceneRoot::setGridVisible(bool visible)
{
    change(m_gridVisible, visible, &SceneRoot::gridVisibleChanged);
}

void SceneRoot::setBackgroundVisible(bool visible)
{
    change(m_backgroundVisible, visible, &SceneRoot::backgroundVisibleChanged);
}

void SceneRoot::setPlanLayerEnabled(bool enabled)
{
    if (m_planLayerEnabled == enabled)
        return;
    m_planLayerEnabled = enabled;
    emit planLayerEnabledChanged(enabled);
    const SceneEntities& entities = SceneEntities::instance();
    IBackgroundPlan* const waiting = entities.getBackgroundPlanToConfirm();
    if (IBackgroundPlan* const plan = waiting ? waiting : entities.getBackgroundPlan())
        plan->setEnabled(planLayerShown());
}

bool SceneRoot::planLayerShown() const
{
    return m_planLayerEnabled &&
           (m_planLayerOnAllViewModesEnabled || GlobalNav::instance()->viewType() == CameraController::View2dTop);
}

bool SceneRoot::planLayerLock() const
{
    const IBackgroundPlan* const plan = SceneEntities::instance().getBackgroundPlan();
    return plan && plan->isLocked();
}

void SceneRoot::setPlanLayerLock(bool lock)
{
    if (IBackgroundPlan* const plan = SceneEntities::instance().getBackgroundPlan())
        plan->setLock(lock);
}

void SceneRoot::setSelectionsEnabled(bool enabled)
{
    change(m_selectionsEnabled, enabled, &SceneRoot::selectionsEnabledChanged);
}

void SceneRoot::setMaxSelection(int maxSelection)
{
    change(m_maxSelection, maxSelection, &SceneRoot::maxSelectionChanged);
}

void SceneRoot::setSceneWidth(double sceneWidth)
{
    if (Fuzzy::equal(static_cast<double>(m_sceneWidth), sceneWidth))
        return;
    m_sceneWidth = static_cast<float>(sceneWidth);
    emit sceneWidthChanged(static_cast<double>(m_sceneWidth));
}

void SceneRoot::setSceneHeight(double sceneHeight)
{
    if (Fuzzy::equal(static_cast<double>(m_sceneHeight), sceneHeight))
        return;
    m_sceneHeight = static_cast<float>(sceneHeight);
    tellViewScale();
    emit sceneHeightChanged(static_cast<double>(m_sceneHeight));
}

void SceneRoot::setCamera(Qt3DRender::QCamera* camera)
{
    m_camera = camera;
    m_viewCamera = camera;
    LabelBoard::instance().watch(this, camera);
    if (!camera)
        return;
    connect(camera, &Qt3DRender::QCamera::viewVectorChanged, this, &SceneRoot::tellViewScale);
    connect(camera, &Qt3DRender::QCamera::fieldOfViewChanged, this, &SceneRoot::tellViewScale);
    tellViewScale();
    connect(camera, &Qt3DRender::QCamera::viewVectorChanged, this, [this, camera] { fitGrid(*camera); });
    fitGrid(*camera);
}

void SceneRoot::tellViewScale()
{
    if (m_viewCamera)
        SharedComponents::instance().setMetresPerPixel(
            Readable::metresPerPixel(m_viewCamera->viewVector().length(), m_viewCamera->fieldOfView(), m_sceneHeight));
}

Crawler* SceneRoot::crawler() const
{
    return m_crawler;
}

void SceneRoot::setCrawler(Crawler* crawler)
{
    if (m_crawler == crawler)
        return;
    m_crawler = crawler;
    if (crawler)
        setupCrawler();
    emit crawlerChanged(crawler);
}

void SceneRoot::setupCrawler()
{
    // QML makes it for a property, and so in no scene yet.
    if (!m_crawler->parentNode() || m_crawler->parentNode() == this)
        m_crawler->setParent(this);
    SceneEntities::instance().setCrawler(m_crawler);
    connect(&AppState::instance(), &AppState::activeInspectionChanged, m_crawler,
            [crawler = m_crawler.data()](const CDomainObjectPointer& inspection) {
                crawler->setEnabled(!inspection.isNull());
            });
}

void SceneRoot::setRayCaster(Qt3DRender::QRayCaster* rayCaster)
{
    change(m_rayCaster, rayCaster, &SceneRoot::rayCasterChanged);
}

void SceneRoot::abandonTouch()
{
    m_touchInput->cancel();
}

} // namespace Torvik::View3d
