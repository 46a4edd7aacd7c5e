#include "host/app/SceneSelection.h"

#include "domain/SectionAdapterBase.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

namespace Torvik::Viewer {

using View3d::SceneRoot;

namespace {

/** Under which the scene selects the object: nodes by their id, pipes by that of an inspection. */
QString guidOf(const QString& id)
{
    const auto sections = View3d::SceneEntities::instance().getPipeEntities().getBySectionId(id);
    return sections.isEmpty() || !sections.first() ? id : sections.first()->guid();
}

} // namespace

void SceneSelection::follow()
{
    const SceneRoot* root = SceneRoot::instance();
    if (m_following || !root)
        return;
    m_following = true;
    connect(root, &SceneRoot::selectedRenderableChanged, this, &SceneSelection::take);
}

void SceneSelection::select(const QString& id)
{
    SceneRoot* root = SceneRoot::instance();
    if (!root)
        return;
    const QString guid = guidOf(id);
    if (View3d::GlobalNav::instance()->connectionMode())
        root->selectNextByDomainGuid(guid);
    else if (!root->selectOneByDomainGuid(guid).isValid())
        root->deselectAll();
}

void SceneSelection::take(View3d::Renderable* renderable)
{
    QStringList ids;
    QString inspectionId;
    if (auto* section = qobject_cast<View3d::Section*>(renderable)) {
        inspectionId = section->guid();
        ids << inspectionId;
        if (section->getProps())
            ids << section->getProps()->sectionId();
    } else if (auto* node = qobject_cast<View3d::Node*>(renderable)) {
        ids << node->guid();
    }
    if (m_ids == ids)
        return;
    m_ids = ids;
    m_inspectionId = inspectionId;
    emit changed();
}

} // namespace Torvik::Viewer
