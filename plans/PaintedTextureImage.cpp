#include "plans/PaintedTextureImage.h"

#include <Qt3DRender/QTextureImageData>
#include <Qt3DRender/QTextureImageDataGenerator>

namespace Torvik::View3d {

namespace {

constexpr int bytesPerPixel = 4;

/** Keeps the picture, since a lost graphics context asks for it again. */
class Pixels : public Qt3DRender::QTextureImageDataGenerator {
public:
    explicit Pixels(const QImage& image)
        : m_image(image.convertToFormat(QImage::Format_RGBA8888))
    {
    }
    QT3D_FUNCTOR(Pixels)

    Qt3DRender::QTextureImageDataPtr operator()() override
    {
        // The bytes are the picture's own, which must live as long as they are used.
        const Qt3DRender::QTextureImageDataPtr data(
            new Qt3DRender::QTextureImageData, [image = m_image](Qt3DRender::QTextureImageData* used) { delete used; });
        data->setTarget(QOpenGLTexture::Target2D);
        data->setFormat(QOpenGLTexture::RGBA8_UNorm);
        data->setPixelFormat(QOpenGLTexture::RGBA);
        data->setPixelType(QOpenGLTexture::UInt8);
        data->setWidth(m_image.width());
        data->setHeight(m_image.height());
        data->setDepth(1);
        data->setFaces(1);
        data->setLayers(1);
        data->setMipLevels(1);
        data->setData(QByteArray::fromRawData(reinterpret_cast<const char*>(m_image.constBits()),
                                              m_image.bytesPerLine() * m_image.height()),
                      bytesPerPixel);
        return data;
    }

    bool operator==(const Qt3DRender::QTextureImageDataGenerator& other) const override
    {
        const auto* const pixels = Qt3DRender::functor_cast<Pixels>(&other);
        return pixels && pixels->m_image.cacheKey() == m_image.cacheKey();
    }

private:
    QImage m_image;
};

} // namespace

PaintedTextureImage::PaintedTextureImage(const QImage& image, Qt3DCore::QNode* parent)
    : Qt3DRender::QPaintedTextureImage(parent)
    , m_pixels(new Pixels(image))
{
}

void PaintedTextureImage::paint(QPainter*) {}

} // namespace Torvik::View3d
