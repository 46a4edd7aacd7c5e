#pragma once

#include "labels/LabelLook.h"
#include "labels/LabelPlacement.h"

#include <Qt3DCore/QEntity>

namespace Qt3DCore {
class QTransform;
}
namespace Qt3DRender {
class QEffect;
class QGeometryRenderer;
class QParameter;
} // namespace Qt3DRender

namespace Torvik::View3d {

class PaintedTextureText;

/** What all faces have in common. */
struct LabelFaceParts {
    Qt3DRender::QGeometryRenderer* surface = nullptr; ///< one by one metre, in the x-z plane
    Qt3DRender::QGeometryRenderer* pointer = nullptr; ///< one by one metre along z
    Qt3DRender::QEffect* textEffect = nullptr;
    Qt3DRender::QEffect* pointerEffect = nullptr;
};

/** What is drawn of a label: its text on its background, and the pointer to its object. Serves one label after the
 *  other, so that what is off the screen has neither a texture nor entities.
 *
 *  It stands far away, on the rays on which the label plane has it, and large enough to look the same: two metres
 * before a camera 100 km away there are no digits left for a place, and nothing is drawn nearer than the near plane.
 * There it also leaves every press to the objects before it. */
class LabelFace : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    LabelFace(Qt3DCore::QNode* parent, const LabelFaceParts& parts);

    /** `pixels`: of the device. */
    void paint(const LabelLook& look, const QSize& pixels);
    /** @param center  local
     *  @param size    metres in the label plane
     *  @param offset  local, from the centre to the anchor
     *  @param line    height of one line, metres in the label plane */
    void place(const LabelPlacement::View& view, float depth, const QVector3D& center, const QSizeF& size,
               const QVector3D& offset, float line);
    /** Over all faces of a greater depth (LabelTextEffect). */
    void setDepth(float depth);
    QSize texturePixels() const;

private:
    PaintedTextureText* m_texture;
    Qt3DRender::QParameter* m_depth;
    Qt3DCore::QEntity* m_surface;
    Qt3DCore::QTransform* m_surfaceTransform;
    Qt3DCore::QEntity* m_pointer;
    Qt3DCore::QTransform* m_pointerTransform;
};

} // namespace Torvik::View3d
