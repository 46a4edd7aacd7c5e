#include "network/Section.h"

#include "domain/NodeAdapter.h"
#include "domain/SectionAdapterBase.h"
#include "network/Node.h"
#include "network/OutletMath.h"
#include "scene/Fuzzy.h"
#include "scene/SceneEntities.h"

/** The relation of a section to its nodes: the second part of Section's source. */
namespace Torvik::View3d {

namespace {

bool isRealOfTypeConnection(const Node* node)
{
    return !node->isVirtual() && node->getProps() && node->getProps()->type() == QLatin1String("CON");
}

QVariant variantOf(Node* node)
{
    return node ? QVariant::fromValue(node) : QVariant();
}

} // namespace

QPair<Node*, Node*> Section::getInspectionNodes() const
{
    const auto& nodes = SceneEntities::instance().getNodes();
    return {nodes.value(m_props->startNodeId()), nodes.value(m_props->endNodeId())};
}

void Section::modify()
{
    const bool changed = setInspectionDirection();
    setDiameter(m_props->diameter().toDouble());
    auto [start, end] = getInspectionNodes();
    if (!start)
        start = m_startNode ? m_startNode.data() : virtualNode();
    if (!end)
        end = m_endNode ? m_endNode.data() : virtualNode();
    if (changed) {
        if (m_endNode && m_endNode != end)
            m_endNode->disconnectSection(this);
        if (m_startNode && m_startNode != start)
            m_startNode->disconnectSection(this);
        setEndNode(end);
        setStartNode(start, true);
        if (start->getProps() && start->getProps()->type() == QLatin1String("CON"))
            start->linkToBegining(this);
    } else {
        setEndNode(end);
        setStartNode(start, false);
    }
    alignToOutlet(start);
    moveEndNodeToPipeEnd();
    rotateToEndNodeDirection();
    emit sectionGeometryChanged();
}

void Section::setStartNode(Node* node, bool forceSnap)
{
    if (!node || node == m_startNode)
        return;
    if (m_startNode) {
        if (!m_startNode->isVirtual())
            hideDirectionArrow();
        // A node can't both end and start the same pipe.
        if (m_lockedAsEnded && m_endNode == node)
            node->unSnapFromSection(this);
        if (!m_startNode->isVirtual() || !node->isVirtual())
            disconnectNode(m_startNode);
    }
    m_startNode = node;
    node->connectSection(this);
    if (forceSnap || !transform()->positionBound())
        snapToNode(node);
}

void Section::setEndNode(Node* node)
{
    if (!node || node == m_endNode)
        return;
    if (!m_endNode) {
        node->connectSection(this);
        if (m_lockedAsEnded || node->isVirtual())
            node->snapToSection(this);
        m_endNode = node;
        return;
    }
    if (m_endNode->isVirtual() && node->isVirtual())
        return;
    Node* const old = m_endNode;
    if (old != m_startNode) {
        disconnectNode(old);
        old->disconnectSection(this);
    }
    if (m_lockedAsEnded) {
        old->unSnapFromSection(this);
        node->snapToSection(this);
    }
    m_endNode = node;
    node->connectSection(this);
}

QVariant Section::startNodeVariant() const
{
    return variantOf(m_startNode);
}

QVariant Section::endNodeVariant() const
{
    return variantOf(m_endNode);
}

Node* Section::startNode() const
{
    return m_startNode;
}

Node* Section::endNode() const
{
    return m_endNode;
}

Node* Section::upstreamNode() const
{
    return inspectionDirection() == InspectionDir::Upstream ? m_endNode : m_startNode;
}

Node* Section::downstreamNode() const
{
    return inspectionDirection() == InspectionDir::Upstream ? m_startNode : m_endNode;
}

QVector3D Section::startNodePosition() const
{
    return m_startNode->position();
}

QVector3D Section::endNodePosition() const
{
    return m_endNode->position();
}

bool Section::hasUpstreamNode() const
{
    return m_startNode && !m_startNode->isVirtual();
}

bool Section::hasDownstreamNode() const
{
    return m_endNode && !m_endNode->isVirtual();
}

void Section::unregisterNode(Node* node)
{
    if (m_startNode == node)
        m_startNode = nullptr;
    if (m_endNode == node)
        m_endNode = nullptr;
    removeTiedNode(node);
}

void Section::addTiedNode(Node* node)
{
    if (!m_tiedNodes.contains(node))
        m_tiedNodes.append(node);
}

void Section::removeTiedNode(Node* node)
{
    m_tiedNodes.removeOne(node);
}

void Section::disconnectNode(Node* node)
{
    if (!node || (node != m_startNode && node != m_endNode))
        return;
    if (node != m_startNode || node != m_endNode)
        node->disconnectSection(this);
    disconnectNodeSignals(node);
}

void Section::disconnectNodeSignals(Node* node)
{
    disconnect(node, nullptr, this, nullptr);
    disconnect(node->transform(), nullptr, this, nullptr);
}

void Section::nodesCleanup()
{
    for (Node* node : {m_startNode.data(), m_endNode.data()}) {
        if (node && !node->isVirtual())
            node->disconnectSection(this);
    }
}

float Section::recordedDepthAt(Node* node, const QVariant& recorded) const
{
    if (!node || isRealOfTypeConnection(node))
        return 0.0F;
    return OutletMath::depthBelowNode(recorded.toFloat(), node->depth());
}

float Section::fromNodeDepth() const
{
    return recordedDepthAt(inspectionDownstream() ? m_startNode : m_endNode, m_props->fromNodeDepth());
}

float Section::toNodeDepth() const
{
    return recordedDepthAt(inspectionDownstream() ? m_endNode : m_startNode, m_props->toNodeDepth());
}

float Section::getOutletDepthOffset(Node* node) const
{
    const bool atUpperEnd = (node == m_startNode) == inspectionDownstream();
    return atUpperEnd ? fromNodeDepth() : toNodeDepth();
}

QVector3D Section::getOutletOffset() const
{
    return OutletMath::outletOffset(direction(), m_props->offset().toFloat());
}

QVector3D Section::getOutletPosition(Node* node) const
{
    return OutletMath::outletPosition(node->position(), getOutletDepthOffset(node), getOutletOffset());
}

void Section::alignToOutlet(Node* node)
{
    if (!node || (transformFlags() & TransformFlags::Manual) != 0)
        return;
    if (node->isVirtual() && transform()->positionBound())
        return;
    const QVector3D place = getOutletPosition(node);
    if (Fuzzy::equal(place, transform()->translation()))
        return;
    transform()->setTranslation(place, 0);
    emit sectionGeometryChanged();
}

void Section::snapToNode(Node* node)
{
    if (m_props->isLateral())
        snapLateralToNode(node);
    alignToOutlet(node);
    followStartNode(node);
}

void Section::followStartNode(Node* node)
{
    // At a connection it is the section that moves the node.
    if (!node || !node->getProps() || node->getProps()->type() == QLatin1String("CON"))
        return;
    connect(node->transform(), &FlaggedTransform::translationChanged, this, [this, node] {
        alignToOutlet(node);
        emit sectionGeometryChanged();
    });
}

void Section::lockAsEnded()
{
    if (m_lockedAsEnded || !m_endNode || m_endNode->has3dPosition())
        return;
    m_lockedAsEnded = true;
    m_endNode->snapToSection(this);
}

void Section::unlockEnded()
{
    if (!m_lockedAsEnded || !m_endNode)
        return;
    m_lockedAsEnded = false;
    m_endDistance = 0.0F;
    m_endNode->unSnapFromSection(this);
}

void Section::attachEndNode(float distance)
{
    if (m_endNode && !m_endNode->has3dPosition())
        setEndDistance(distance);
}

void Section::setEndDistance(float distance)
{
    if (Fuzzy::equalBiased(distance, m_endDistance))
        return;
    m_endDistance = distance;
    moveEndNodeToPipeEnd();
}

void Section::moveEndNodeToPipeEnd()
{
    if (m_endNode && m_lockedAsEnded)
        m_endNode->moveToEnd();
}

} // namespace Torvik::View3d
