#pragma once

#include "domain/boundary/CProjectObject.h"
#include "host/app/PlanDesk.h"

namespace Torvik::Viewer {

/** A scene without a window. Needs a QGuiApplication, no screen. */
namespace HeadlessScene {

/** Makes the project the active one and returns when all of it stands in the scene. Once in a process: the scene stays
 *  to its end, since taking thousands of entities down one by one would take longer than what it is needed for. */
void show(const QSharedPointer<Database::CProjectObject>& project);

/** Returns when the project's plan and the wished one lie in the scene.
 *  @returns why the wished one does not; empty when it does */
QString layPlan(const PlanWish& wish);

} // namespace HeadlessScene

} // namespace Torvik::Viewer
