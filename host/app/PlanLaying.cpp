#include "host/app/PlanLaying.h"

#include "domain/boundary/BaseServices.h"
#include "host/app/PlanMessages.h"
#include "plans/IBackgroundPlan.h"
#include "plans/PlanSwap.h"
#include "scene/SceneEntities.h"

#include <QDir>
#include <QFileInfo>

namespace Torvik::Viewer::PlanLaying {

using Base::CFileSystemNames;
using View3d::IBackgroundPlan;
using View3d::SceneEntities;

QString layUnderNetwork(IBackgroundPlan* plan, const QString& project, const QString& source)
{
    auto& entities = SceneEntities::instance();
    const IBackgroundPlan* const old = entities.getBackgroundPlan();
    const QString documents = project + CFileSystemNames::documentationPathPart();
    const QString from = plan->fullPath();
    const QString target = documents + plan->fileName();
    QDir().mkpath(documents);
    QDir().mkpath(project + CFileSystemNames::graphics3DPathPart());

    View3d::PlanSwap files(old ? old->fullPath() : QString(), from, target);
    const QString hindered = files.begin();
    if (!hindered.isEmpty())
        return PlanMessages::notLaid(source, hindered);
    plan->setFullPath(target);
    if (!plan->savePlanFile(project)) {
        plan->setFullPath(from);
        const QString lost = files.takeBack();
        return lost.isEmpty() ? PlanMessages::notStored(source) : PlanMessages::notLaid(source, lost);
    }
    files.commit();
    removeWaiting();
    entities.setBackgroundPlan(plan);
    return {};
}

QString keepOnFloor(IBackgroundPlan* plan, const QString& project, const QString& source)
{
    const QString target = project + CFileSystemNames::documentationPathPart() + plan->fileName();
    View3d::PlanSwap files({}, plan->fullPath(), target);
    const QString hindered = files.begin();
    if (!hindered.isEmpty())
        return PlanMessages::notKept(source, hindered);
    plan->setFullPath(target);
    files.commit();
    return {};
}

void removeWaiting()
{
    auto& entities = SceneEntities::instance();
    IBackgroundPlan* const waiting = entities.getBackgroundPlanToConfirm();
    if (!waiting)
        return;
    entities.setBackgroundPlanToConfirm(nullptr);
    waiting->destroyLater();
}

} // namespace Torvik::Viewer::PlanLaying
