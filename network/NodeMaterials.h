#pragma once

namespace Qt3DRender {
class QMaterial;
}

namespace Torvik::View3d::NodeMaterials {

/** A material that draws like `original` and follows it, for one more entity. Stand-ins share the original's effect and
 *  parameters and are its children, so they leave with it; each serves some hundred entities, since one component on
 * very many entities is slow. Ask again for every entity. Null for null. Main thread only. */
Qt3DRender::QMaterial* standInFor(Qt3DRender::QMaterial* original);

} // namespace Torvik::View3d::NodeMaterials
