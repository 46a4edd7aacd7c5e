#pragma once

#include <Qt3DRender/QEffect>

namespace Qt3DExtras {
class QGoochMaterial;
}

namespace Torvik::View3d::Readable {

/** Gooch shading that never draws a tube or ball thinner than some pixels: from far away a pipe would fall apart into
 *  dashes and a manhole vanish. Only what is drawn grows; no radius changes.
 *
 *  It works on unit meshes (radius 1, a cylinder along y) that their transforms size. The effect's parameter
 *  "metresPerPixel" (0: draw as it is) is the only thing that follows the camera; "minimumPixels" is each material's.
 */
Qt3DRender::QEffect* makeEffect(Qt3DCore::QNode* parent);

/** Name of the effect's parameter that tells how many metres a pixel shows at the distance of the view's centre. */
inline constexpr const char* metresPerPixelParameter = "metresPerPixel";

/** Lets a gooch material draw by the effect; its properties work as before. */
void apply(Qt3DExtras::QGoochMaterial* material, Qt3DRender::QEffect* effect, float minimumPixels);

/** Metres that a pixel shows at a distance; 0 for a view without height. */
float metresPerPixel(float distanceMetres, float fieldOfViewDeg, float heightPixels);

} // namespace Torvik::View3d::Readable
