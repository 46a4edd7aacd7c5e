#include "network/Section.h"

#include "domain/SectionAdapterBase.h"
#include "domain/boundary/AppState.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/WktPoint.h"
#include "geo/GdalGeoProjector.h"
#include "interaction/TouchControl.h"
#include "interaction/Utils3d.h"
#include "labels/ImageLabel.h"
#include "measurement/InspectionCommands.h"
#include "measurement/MeasurementPointsHandler.h"
#include "network/LowestManholeTracker.h"
#include "network/Node.h"
#include "network/OutletMath.h"
#include "network/Pipe.h"
#include "scene/Fuzzy.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

namespace Torvik::View3d {

namespace {

constexpr QRgb selectedColour = qRgb(60, 60, 255);
constexpr QRgb defaultColour = qRgb(60, 255, 60);

void log(Logging::LogLevel level, const QString& message)
{
    Logging::CLogger::logMessage(level, QStringLiteral("View3d::Section"), message);
}

} // namespace

Section::Section(Qt3DCore::QEntity* parent, SectionAdapterBase* props)
    : Renderable(parent)
    , m_props(props)
    , m_shapeAccess(nullptr)
    , m_tag(*this, NameTag::OfSection)
{
    setTransformFlags(TransformFlags::Unknown);
    connect(transform(), &FlaggedTransform::flagsChanged, this, &Section::onTransformFlagsChanged);
}

Section::~Section()
{
    SceneEntities::instance().removeObject(this);
    connectCancel();
    LowestManholeTracker::instance()->unregisterSection(this);
    emit lateralNotInProximity();
    delete m_inspection;
    m_inspection = nullptr;
    nodesCleanup();
    m_secondPipe = nullptr;
    delete m_secondPipeEntity;
    const auto tied = m_tiedNodes;
    for (Node* node : tied)
        node->forgetSection(this);
    delete m_props;
}

Section* Section::create(Qt3DCore::QEntity* parent, SectionAdapterBase* props)
{
    log(Logging::LogTrace, QStringLiteral("create"));
    // Put together first and hung into the scene whole: the renderer would search its list of changes with each part.
    auto* const section = new Section(nullptr, props);
    section->setupPipe();
    section->setParent(parent);
    const auto [start, end] = section->getInspectionNodes();
    section->setStartNode(start ? start : section->virtualNode(), false);
    section->setEndNode(end ? end : section->virtualNode());
    section->setEnablePicker(true);
    section->alignToOutlet(section->m_startNode);
    section->moveEndNodeToPipeEnd();
    if (section->m_endNode->has3dPosition())
        section->rotateToEndNodeDirection();
    section->refreshConnectionVisibility();
    section->recalculateManualRotationOffset();
    emit section->sectionGeometryChanged();
    return section;
}

Node* Section::virtualNode()
{
    return Node::createVirtual(parentEntity(), false, QString(), QStringLiteral("NOD"));
}

void Section::setupPipe()
{
    setInspectionDirection();
    createPipes(m_shapeAccess.readPoints(this));
    connectPipe();
    setDiameter(static_cast<double>(Utils3d::roundToFloat(m_props->diameter().toDouble())));
    LowestManholeTracker::instance()->registerSection(this);
}

QVector<QVector3D> Section::setupPipeInitialPoints()
{
    return {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, Pipe::initialSegmentLength()}};
}

void Section::createPipes(const QVector<QVector<QVector3D>>& shapes)
{
    const bool stored = !shapes.isEmpty() && !shapes.first().isEmpty();
    const auto points = stored ? shapes.first() : setupPipeInitialPoints();
    if (!stored)
        setTransformFlags(TransformFlags::Unknown);
    m_pipe = Pipe::create(this, points, pipeScale());
    if (shapes.size() > 1) {
        m_secondPipeEntity = new Qt3DCore::QEntity(SceneRoot::instance());
        m_secondPipe = Pipe::create(m_secondPipeEntity, shapes[1], pipeScale());
    }
}

void Section::connectPipe()
{
    connect(&SceneEntities::instance(), &SceneEntities::start3dRealTimeMeasurements, m_pipe,
            &Pipe::startSensorMeasurement);
    m_inspection = new InspectionCommands(m_pipe, this);
    m_inspection->realTime = GlobalNav::instance()->realTimeEnabled();
    connect(this, &Renderable::editingFinished, this, [this] {
        // While real time is on, the measurement itself stores the shape.
        if (!GlobalNav::instance()->realTimeEnabled())
            m_shapeAccess.writePoints(this);
    });
    connect(m_pipe, &Pipe::segmentsRemoved, this, &Section::onSegmentsRemoved);
    connect(m_pipe, &Pipe::segmentAdded, this, &Section::onSegmentAdded);
    connect(GlobalNav::instance(), &GlobalNav::realTimeEnabledChanged, this, &Section::onRealTimeEnabledChanged);
}

void Section::onSegmentsRemoved(int start, int end, bool recalculateIndexes)
{
    if (const CDomainObjectPointer inspection = AppState::instance().getActiveInspection())
        MeasurementPointsHandler::instance()->removeRowsFromSECMP(inspection->id(), start, end, recalculateIndexes);
    // Measured points change the course without sectionGeometryChanged().
    LowestManholeTracker::instance()->markStale(this);
}

void Section::onSegmentAdded(const QVector3D& point, int index, bool recalculateIndexes)
{
    if (const CDomainObjectPointer inspection = AppState::instance().getActiveInspection())
        MeasurementPointsHandler::instance()->addRowToSECMP(inspection->id(), point, index, recalculateIndexes);
    LowestManholeTracker::instance()->markStale(this);
}

void Section::onRealTimeEnabledChanged(bool enabled)
{
    // Also when it goes off: the section has been measured.
    setTransformFlags(TransformFlags::Geosensor);
    m_inspection->realTime = enabled;
    SceneEntities::instance().announceRealTime(enabled);
}

bool Section::setInspectionDirection()
{
    const int before = inspectionDirection();
    switch (m_props->inspectionDir()) {
    case 1:
        setInspectionDownstream();
        break;
    case 2:
        setInspectionUpstream();
        break;
    default:
        setInspectionDirUnknown();
        log(Logging::LogError, QStringLiteral("Cannot setup inspection flow for %1 ").arg(name()));
    }
    return inspectionDirection() != before;
}

QVector3D Section::center() const
{
    return {0.0F, 0.0F, m_inspection->totalDistance() / 2.0F};
}

QQuaternion Section::orientation() const
{
    return {};
}

QVector3D Section::connectionPoint(Renderable*)
{
    return m_pipe->worldMatrix() * m_pipe->lastPoint();
}

void Section::setSelectedMaterial()
{
    m_pipe->setColor(QColor(selectedColour));
}

void Section::setDefaultMaterial()
{
    m_pipe->setColor(QColor(defaultColour));
}

TouchControlBase* Section::createTouchControl()
{
    return new TouchControl(this, false);
}

QString Section::guid()
{
    return m_props ? m_props->inspectionId() : Renderable::guid();
}

QString Section::name() const
{
    return m_tag.isSet() ? m_tag.text() : QStringLiteral("?");
}

void Section::setName(const QString& name)
{
    const bool first = !m_tag.isSet();
    if (!first && m_tag.text() == name)
        return;
    m_tag.setText(name);
    if (first) {
        refreshLabelPlace();
        connect(this, &Section::sectionGeometryChanged, this, &Section::refreshLabelPlace);
        // A turn about the start takes the middle along.
        connect(transform(), &FlaggedTransform::rotationChanged, this, &Section::refreshLabelPlace);
    }
    emit nameChanged(name);
}

Label* Section::getLabel()
{
    return m_tag.isSet() ? m_tag.label() : nullptr;
}

void Section::refreshLabelPlace()
{
    const float length = m_pipe->length();
    const QVector3D middle = m_pipe->getTransformMatrixAtDistance(length / 2.0F).column(3).toVector3D();
    m_tag.setOffset(middle - position());
    m_tag.setVisible(length > Pipe::initialSegmentLength());
}

void Section::refreshName()
{
    setName(m_props->name());
}

QString Section::renderableType() const
{
    return QStringLiteral("section");
}

QMatrix4x4 Section::crawlerTransformMatrix() const
{
    return m_inspection->crawlerTransformMatrix();
}

float Section::pipeScale() const
{
    return OutletMath::pipeRadius(m_diameter);
}

QVector<QVector<QVector3D>> Section::getShapePoints() const
{
    QVector<QVector<QVector3D>> shapes {m_pipe->getShapePoints()};
    if (m_secondPipe)
        shapes.append(m_secondPipe->getShapePoints());
    return shapes;
}

Pipe* Section::secondPipe() const
{
    return m_secondPipe;
}

QString Section::wktPrefix() const
{
    return Database::ShapeWKTHelper::WKT_LINESTRING_PREFIX;
}

QString Section::getDomainObjectId() const
{
    return getInspectionObjectId();
}

QString Section::getInspectionObjectId() const
{
    return m_props ? m_props->getInspectionObjectId() : QString();
}

void Section::setDiameter(double diameterMm)
{
    const double diameter = OutletMath::effectiveDiameter(diameterMm);
    if (Fuzzy::equalBiased(diameter, m_diameter))
        return;
    m_diameter = diameter;
    m_pipe->setRadius(pipeScale());
    if (m_secondPipe)
        m_secondPipe->setRadius(pipeScale());
}

double Section::length() const
{
    return static_cast<double>(m_pipe->length());
}

float Section::seaLevel() const
{
    return GdalGeoProjector::instance()->origin().toQVector3D().y() + transform()->translation().y();
}

void Section::deleteAndSave()
{
    deleteLater();
}

void Section::saveToSecMes() {}

void Section::clicked(Qt3DRender::QPickEvent*) {}

} // namespace Torvik::View3d
