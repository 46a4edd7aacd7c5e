#pragma once

#include "host/app/CameraPose.h"

class QQuickItem;

namespace Torvik::Viewer::ViewFit {

/** Where the camera sees all of the open project in a direction of view, with no object and no name under a control of
 *  the view, which may be missing. The direction itself without a scene. Main thread only. */
CameraPose wholeProject(const CameraPose& direction, QQuickItem* view);

} // namespace Torvik::Viewer::ViewFit
