#pragma once

#include "scene/KxView3dExport.h"

#include <QImage>
#include <Qt3DRender/QPaintedTextureImage>

namespace Torvik::View3d {

/** A picture as the image of a texture. Its pixels reach the texture as they are: painting them into an image of Qt's
 *  own and copying that would take the memory of the picture four times, and the main thread's time. Main thread only.
 */
class KXVIEW3D_EXPORT PaintedTextureImage : public Qt3DRender::QPaintedTextureImage {
    Q_OBJECT

public:
    explicit PaintedTextureImage(const QImage& image, Qt3DCore::QNode* parent = nullptr);

protected:
    /** Nothing: see above. */
    void paint(QPainter* painter) override;

private:
    Qt3DRender::QTextureImageDataGeneratorPtr dataGenerator() const override { return m_pixels; }

    Qt3DRender::QTextureImageDataGeneratorPtr m_pixels;
};

} // namespace Torvik::View3d
