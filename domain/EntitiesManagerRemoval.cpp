#include "domain/EntitiesManager.h"

#include "labels/LabelBoard.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/ObservationConnection.h"
#include "network/Section.h"
#include "plans/FloorPlanLoader.h"
#include "plans/IBackgroundPlan.h"
#include "plans/PlanLoader.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

/** What leaves the scene: one object, or all of a project. Second part of EntitiesManager's source. */
namespace Torvik::View3d {

void EntitiesManager::onObjectRemoved(const QString& id)
{
    auto& entities = SceneEntities::instance();
    if (Section* const section = entities.getPipeEntities().removeByInspectionId(id)) {
        detachCrawler();
        section->deleteLater();
        return;
    }
    if (Node* const node = entities.getNodes().take(id)) {
        node->deleteLater();
        return;
    }
    if (Observation* const observation = entities.getObservations().take(id)) {
        observation->performCleanup();
        refreshCrawler();
        observation->deleteLater();
    }
}

void EntitiesManager::onCleanAll()
{
    cleanPlans();
    cleanObservations();
    cleanNodes();
    const auto sections = SceneEntities::instance().getPipeEntities().takeAll();
    for (Section* section : sections)
        letGo(section);
    detachCrawler();
    cleanVirtualNodes();
    LabelBoard::instance().schedule();
}

void EntitiesManager::cleanPlans()
{
    // One that is still loading must not come to lie in the next project, nor wait for its confirmation there.
    m_root.planLoader()->abandon();
    m_root.floorPlanLoader()->abandon();
    auto& entities = SceneEntities::instance();
    if (IBackgroundPlan* const waiting = entities.getBackgroundPlanToConfirm()) {
        waiting->deleteLater();
        entities.setBackgroundPlanToConfirm(nullptr);
    }
    entities.deleteBackgroundPlan();
}

void EntitiesManager::letGo(Renderable* object)
{
    if (!object)
        return;
    // While it waits for its removal the same project may be opened again: it must not store its shape there.
    disconnect(object, &Renderable::editingFinished, nullptr, nullptr);
    m_removals.remove(object);
}

void EntitiesManager::cleanObservations()
{
    auto& entities = SceneEntities::instance();
    const auto laterals = entities.getLateralConnections().keys();
    for (const QString& lateral : laterals)
        entities.getLateralConnections().take(lateral);
    const auto observations = entities.getObservations().keys();
    for (const QString& id : observations)
        letGo(entities.getObservations().take(id));
}

void EntitiesManager::cleanNodes()
{
    auto& nodes = SceneEntities::instance().getNodes();
    const auto keys = nodes.keys();
    for (const QString& key : keys) {
        letGo(nodes.take(key));
    }
}

void EntitiesManager::cleanVirtualNodes()
{
    const auto children = m_root.childNodes();
    for (Qt3DCore::QNode* child : children) {
        auto* const node = qobject_cast<Node*>(child);
        if (node && node->isVirtual())
            letGo(node);
    }
}

void EntitiesManager::detachCrawler()
{
    if (Crawler* const crawler = SceneEntities::instance().getCrawler())
        crawler->attachToSection(nullptr);
}

} // namespace Torvik::View3d
