#include "geo/GdalGeoProjector.h"
#include "labels/GridPlane.h"
#include "scene/SceneRoot.h"

#include <Qt3DExtras/QPerVertexColorMaterial>

namespace Torvik::View3d {

void SceneRoot::createGridPlane()
{
    m_gridPlane = new GridPlane(this, m_gridMaterial);
    m_gridPlane->setEnabled(m_gridVisible);
    connect(this, &SceneRoot::gridVisibleChanged, m_gridPlane, [this] { m_gridPlane->setEnabled(m_gridVisible); });
    connect(m_gridPlane, &GridPlane::gridSquareSizeChanged, this, [this] { emit gridSizeChanged(gridSize()); });
    connect(m_gridPlane, &GridPlane::positionChanged, this, [this] { emit gridSeaLevelChanged(gridSeaLevel()); });
    connect(GdalGeoProjector::instance(), &GdalGeoProjector::geoLocationChanged, this,
            [this] { emit gridSeaLevelChanged(gridSeaLevel()); });
}

void SceneRoot::fitGrid(const Qt3DRender::QCamera& camera)
{
    const float scale = camera.property("viewVectorLenToFovScale").toFloat();
    m_gridPlane->resizeForDistance(scale * camera.viewVector().length());
    m_gridPlane->reposition(camera.viewCenter());
}

double SceneRoot::gridSize() const
{
    return static_cast<double>(m_gridPlane->squareSize());
}

double SceneRoot::gridSeaLevel() const
{
    return static_cast<double>(static_cast<float>(GdalGeoProjector::instance()->origin().y())) +
           static_cast<double>(m_gridPlane->position().y());
}

} // namespace Torvik::View3d
