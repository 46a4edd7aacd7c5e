#include "network/LowestManholeTracker.h"

#include "network/Node.h"
#include "network/Section.h"
#include "scene/SceneRoot.h"

#include <algorithm>
#include <cmath>

namespace Torvik::View3d {

namespace {

float lowestOf(const Node& node)
{
    return node.position().y() - node.depth();
}

/** False also for an infinity that stays what it was, since their difference is no number. */
bool isChange(float before, float now)
{
    return std::abs(now - before) * 100000.0F > std::min(std::abs(now), std::abs(before));
}

float lowestOf(const Section& section)
{
    const QMatrix4x4 farEnd = section.pipeTransMatrixAtDistance(static_cast<float>(section.length()));
    return std::min(section.position().y(), farEnd.column(3).y());
}

} // namespace

LowestManholeTracker* LowestManholeTracker::instance()
{
    // Never destroyed: scene objects of static storage may still take their leave.
    static auto* const tracker = new LowestManholeTracker;
    return tracker;
}

LowestManholeTracker::LowestManholeTracker()
{
    updateLowestObject();
}

void LowestManholeTracker::registerNode(Node* node)
{
    if (!node)
        return;
    connect(node, &Node::transformChanged, this, &LowestManholeTracker::updateLowestObject);
    connect(node, &Node::shapeChanged, this, &LowestManholeTracker::updateLowestObject);
    follow(node);
}

void LowestManholeTracker::registerSection(Section* section)
{
    if (!section)
        return;
    connect(section, &Section::transformChanged, this, &LowestManholeTracker::updateLowestObject);
    connect(section, &Section::sectionGeometryChanged, this, &LowestManholeTracker::updateLowestObject);
    follow(section);
}

void LowestManholeTracker::unregisterNode(Node* node)
{
    if (!node)
        return;
    disconnect(node, &Node::transformChanged, this, &LowestManholeTracker::updateLowestObject);
    disconnect(node, &Node::shapeChanged, this, &LowestManholeTracker::updateLowestObject);
    unfollow(node);
}

void LowestManholeTracker::unregisterSection(Section* section)
{
    if (!section)
        return;
    disconnect(section, &Section::transformChanged, this, &LowestManholeTracker::updateLowestObject);
    disconnect(section, &Section::sectionGeometryChanged, this, &LowestManholeTracker::updateLowestObject);
    unfollow(section);
}

void LowestManholeTracker::follow(Qt3DCore::QNode* object)
{
    connect(object, &Qt3DCore::QNode::parentChanged, this, &LowestManholeTracker::onParentChanged,
            Qt::UniqueConnection);
    m_unfollowed.remove(object);
    m_followed.insert(object);
    refresh(object);
    publish();
}

void LowestManholeTracker::unfollow(Qt3DCore::QNode* object)
{
    if (!m_followed.remove(object))
        return;
    disconnect(object, &Qt3DCore::QNode::parentChanged, this, &LowestManholeTracker::onParentChanged);
    m_stale.remove(object);
    m_outside.remove(object);
    m_unfollowed.insert(object, object);
}

void LowestManholeTracker::onParentChanged()
{
    markStale(sender());
}

void LowestManholeTracker::lookAt(QObject* object)
{
    markStale(object);
    publish();
}

void LowestManholeTracker::markStale(QObject* object)
{
    if (m_followed.contains(object))
        m_stale.insert(object);
}

void LowestManholeTracker::refresh(QObject* object)
{
    // An object in the midst of its destruction is no longer of its class, and a child of another entity doesn't count.
    if (const auto* const node = qobject_cast<Node*>(object); node && node->parentNode() == m_root) {
        m_nodes.set(object, lowestOf(*node));
        m_outside.remove(object);
        return;
    }
    if (const auto* const section = qobject_cast<Section*>(object);
        section && section->parentNode() == m_root && section->pipe()) {
        m_sections.set(object, lowestOf(*section));
        m_outside.remove(object);
        return;
    }
    m_nodes.remove(object);
    m_sections.remove(object);
    if (m_followed.contains(object))
        m_outside.insert(object);
}

void LowestManholeTracker::refreshAll()
{
    m_root = SceneRoot::instance();
    m_stale.clear();
    for (QObject* object : std::as_const(m_followed))
        refresh(object);
    refreshUnfollowed();
}

void LowestManholeTracker::refreshUnfollowed()
{
    if (m_unfollowed.isEmpty())
        return;
    for (auto entry = m_unfollowed.begin(); entry != m_unfollowed.end();) {
        if (entry.value()) {
            refresh(entry.value());
            ++entry;
        } else {
            m_nodes.remove(entry.key());
            m_sections.remove(entry.key());
            entry = m_unfollowed.erase(entry);
        }
    }
    // A hash that was large keeps its room, and walking it means walking that.
    if (m_unfollowed.isEmpty())
        m_unfollowed = {};
}

void LowestManholeTracker::refreshOutside()
{
    // A copy: what has been hung into the scene leaves the set.
    const auto outside = m_outside;
    for (QObject* object : outside)
        refresh(object);
}

void LowestManholeTracker::catchUp()
{
    if (m_root != SceneRoot::instance()) {
        refreshAll();
        return;
    }
    if (!m_stale.isEmpty()) {
        const auto stale = std::exchange(m_stale, {});
        for (QObject* object : stale)
            refresh(object);
    }
    refreshOutside();
    refreshUnfollowed();
}

float LowestManholeTracker::getLowestManholeElevation()
{
    refreshAll();
    return m_nodes.lowest();
}

float LowestManholeTracker::getLowestSectionElevation()
{
    refreshAll();
    return m_sections.lowest();
}

void LowestManholeTracker::updateLowestObject()
{
    QObject* const changed = sender();
    if (changed && m_followed.contains(changed))
        refresh(changed);
    else
        refreshAll();
    publish();
}

void LowestManholeTracker::publish()
{
    catchUp();
    const float lowest = std::min({m_nodes.lowest(), m_sections.lowest(), 0.0F});
    if (!isChange(m_lowestY, lowest))
        return;
    m_lowestY = lowest;
    emit lowestObjectChanged(lowest);
}

} // namespace Torvik::View3d
