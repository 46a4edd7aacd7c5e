#pragma once

#include <QString>

namespace Torvik::View3d {
class IBackgroundPlan;
}

/** How a plan that has loaded becomes the project's. Main thread only. */
namespace Torvik::Viewer::PlanLaying {

/** Lays it under the network, its file among the project's documents, its place in plan.xml; the plan before goes with
 *  its file. When any of it fails, all is as it was before.
 *  @param source  the user's file, by which the plan is called
 *  @returns why it was not done, for the user; the plan is still the caller's then */
QString layUnderNetwork(View3d::IBackgroundPlan* plan, const QString& project, const QString& source);

/** Brings the file of a plan that lies on a floor to the project's documents; until then it is gone when the project
 *  closes.
 *  @returns why it was not done, for the user */
QString keepOnFloor(View3d::IBackgroundPlan* plan, const QString& project, const QString& source);

/** Takes the plan for a look out of the scene, if there is one. */
void removeWaiting();

} // namespace Torvik::Viewer::PlanLaying
