#include "host/app/ViewFit.h"

#include "host/app/FramedView.h"
#include "host/app/SceneReader.h"
#include "host/app/ViewControls.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"

namespace Torvik::Viewer::ViewFit {

CameraPose wholeProject(const CameraPose& direction, QQuickItem* view)
{
    const View3d::SceneRoot* root = View3d::SceneRoot::instance();
    const QSizeF screen = root ? QSizeF(root->sceneWidth(), root->sceneHeight()) : QSizeF();
    if (screen.isEmpty())
        return direction;
    const auto* const nav = View3d::GlobalNav::instance();
    const auto points = framedPointsOf(SceneReader::snapshot(), {nav->labelsVisible(), nav->manholeFullInfoVisible()});
    const QRectF clear = clearPart(QRectF(QPointF(), screen), ViewControls::shownOn(view), aspectOf(points, direction));
    return framedPose(points, direction, screen, clear, closestFit);
}

} // namespace Torvik::Viewer::ViewFit
