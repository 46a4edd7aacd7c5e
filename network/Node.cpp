#include "network/Node.h"

#include "domain/NodeAdapter.h"
#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/WktPoint.h"
#include "geo/GdalGeoProjector.h"
#include "interaction/TouchControl.h"
#include "labels/ImageLabel.h"
#include "network/LowestManholeTracker.h"
#include "network/NodeGeometry.h"
#include "network/NodeInformationToggle.h"
#include "network/Section.h"
#include "scene/Fuzzy.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"
#include "scene/SelectionAwareness.h"

namespace Torvik::View3d {

namespace {

constexpr float depthWithoutRecord = 1.0F;

QString number(float value)
{
    return QString::number(static_cast<double>(value), 'g', 6);
}

} // namespace

Node::Node()
    : Node(nullptr, nullptr, true, false, QString())
{
}

Node::Node(Qt3DCore::QEntity* parent, NodeAdapter* props, bool isVirtual, bool visible, const QString& name)
    : Renderable(parent)
    , m_props(props)
    , m_shapeAccess(nullptr)
    , m_tag(*this, NameTag::OfNode)
    , m_isVirtual(isVirtual)
{
    if (m_props)
        m_props->setParent(this);
    initGeoProjectorConnection();
    readDiameter();
    readDepth();
    createMesh();
    initVisibility(visible);
    setName(name);
    setDefaultMaterial();
    setEnablePicker(m_visible);
    if (!m_isVirtual) {
        connect(this, &Renderable::editingFinished, this, [this] { m_shapeAccess.writePoints(this); });
        if (m_props)
            m_nodeType = m_props->type();
    }
    LowestManholeTracker::instance()->registerNode(this);
    NodeInformationToggle::m_labelLineHeight =
        Base::CApplicationSettings::instance().getDefaultLabelLineHeight() / 10.0F;
}

Node::~Node()
{
    if (SelectionAwareness::instance().isSelected(guid()))
        SceneRoot::instance()->deselectByDomainGuid(guid());
    const auto sections = m_sections;
    for (Section* section : sections)
        section->unregisterNode(this);
    SceneEntities::instance().removeObject(this);
    LowestManholeTracker::instance()->unregisterNode(this);
}

Node* Node::create(Qt3DCore::QEntity* parent, NodeAdapter* props)
{
    Logging::CLogger::logMessage(Logging::LogTrace, QStringLiteral("View3d::Node"), QStringLiteral("create"));
    // Put together first and hung into the scene whole: the renderer would search its list of changes with each part.
    auto* const node = new Node(nullptr, props, false, true, QString());
    const auto shape = ShapeAccess(nullptr).readPoints(node);
    if (!shape.isEmpty() && !shape.first().isEmpty())
        node->transform()->setTranslation(shape.first().first(), 0);
    node->setParent(parent);
    LowestManholeTracker::instance()->lookAt(node);
    return node;
}

Node* Node::createVirtual(Qt3DCore::QEntity* parent, bool visible, const QString& name, const QString& type)
{
    auto* const node = new Node(parent, nullptr, true, visible, name);
    node->m_nodeType = type;
    return node;
}

void Node::initGeoProjectorConnection()
{
    // Another tie of the scene to the earth means another stored point.
    connect(GdalGeoProjector::instance(), &GdalGeoProjector::geoLocationChanged, this, &Node::editingFinished);
}

QVector3D Node::connectionPoint(Renderable* other)
{
    const auto* const section = qobject_cast<Section*>(other);
    return section ? position() - QVector3D(0.0F, section->toNodeDepth(), 0.0F) : position();
}

void Node::setSelectedMaterial()
{
    m_geometry->selected();
}

void Node::setDefaultMaterial()
{
    m_geometry->unselected();
}

TouchControlBase* Node::createTouchControl()
{
    return new TouchControl(this, false);
}

QString Node::guid()
{
    return m_isVirtual || !m_props ? Renderable::guid() : getDomainObjectId();
}

QString Node::name() const
{
    return m_tag.text();
}

Label* Node::getLabel()
{
    return m_tag.isSet() ? m_tag.label() : nullptr;
}

void Node::setName(const QString& name)
{
    const bool first = !m_tag.isSet();
    if (!first && m_tag.text() == name)
        return;
    m_tag.setText(name);
    emit nameChanged(name);
    if (!first && NodeInformationToggle::m_manholeFullInfoVisible) {
        m_tag.setMultiline(true);
        NodeInformationToggle::setFullInfoLabelParameters(this, getFullManholeInfo());
    }
}

void Node::refreshName()
{
    if (m_props)
        setName(m_props->key());
}

QString Node::renderableType() const
{
    return QStringLiteral("node");
}

QVector<QVector<QVector3D>> Node::getShapePoints() const
{
    return {{transform()->translation()}};
}

QString Node::wktPrefix() const
{
    return Database::ShapeWKTHelper::WKT_POINT_PREFIX;
}

QString Node::getDomainObjectId() const
{
    const auto object = m_props ? m_props->getDomainObject().toStrongRef() : CDomainObjectPointer();
    return object ? object->id() : QString();
}

QString Node::getInspectionObjectId() const
{
    return {};
}

bool Node::has3dPosition() const
{
    if (!m_props || !transform()->hasPosition())
        return false;
    const QVariant shape = m_props->shape();
    return !shape.isNull() && Database::ShapeWKTHelper::hasPosition(shape.toString());
}

float Node::seaLevel() const
{
    return GdalGeoProjector::instance()->origin().toQVector3D().y() + transform()->translation().y();
}

float Node::depth() const
{
    return Fuzzy::isNull(m_depth) ? depthWithoutRecord : m_depth;
}

void Node::readDepth()
{
    if (m_props && !m_isVirtual)
        m_depth = static_cast<float>(m_props->depthToInvert().toDouble());
}

void Node::readDiameter()
{
    const float diameter = m_props ? m_props->diameter().toFloat() : 0.0F;
    if (diameter > 0.0F)
        m_diameter = diameter;
}

void Node::setDepth(const QVariant& value)
{
    const float depthOfValue = value.isNull() ? depthWithoutRecord : value.toFloat();
    if (Fuzzy::equalBiased(m_depth, depthOfValue))
        return;
    m_depth = depthOfValue;
    m_geometry->setLength(depth());
    emit shapeChanged();
}

void Node::setDiameter(const QVariant& value)
{
    if (value.isNull() || Fuzzy::equalBiased(m_diameter, value.toFloat()))
        return;
    m_diameter = value.toFloat();
    m_geometry->setRadius(radius());
}

void Node::createMesh()
{
    delete m_geometry;
    m_geometry = Geometry::NodeGeometry::create(this);
    m_geometry->setRadius(radius());
    m_geometry->setLength(depth());
    setDefaultMaterial();
    emit shapeChanged();
}

void Node::modify()
{
    // The type that the node was made with stays, so that the mesh follows the record each time.
    if (m_props->type() != m_nodeType)
        createMesh();
    setDepth(m_props->depthToInvert());
    setDiameter(m_props->diameter());
    ensureVisibility();
}

void Node::initVisibility(bool visible)
{
    applyVisibility(visible);
    emit visibilityChanged(visible);
}

void Node::setVisible(bool visible)
{
    if (visible != m_visible)
        applyVisibility(visible);
    emit visibilityChanged(visible);
}

void Node::applyVisibility(bool visible)
{
    m_visible = visible;
    m_geometry->setVisible(visible);
    setEnablePicker(visible);
    m_tag.setOwnerVisible(visible);
}

void Node::ensureVisibility()
{
    setVisible(has3dPosition());
}

void Node::show()
{
    if (m_isVirtual || has3dPosition())
        setVisible(true);
}

QString Node::getFullManholeInfo() const
{
    return QStringLiteral("\n DN + ") + number(m_diameter) + QStringLiteral(" \n D + ") + number(depth()) +
           QStringLiteral(" \n t = ") + number(seaLevel());
}

} // namespace Torvik::View3d
