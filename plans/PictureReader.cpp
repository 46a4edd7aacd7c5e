#include "plans/PictureReader.h"

#include "plans/GifExtent.h"

#include <QFile>
#include <QImageReader>
#include <QRgba64>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace Torvik::View3d::PictureReader {

namespace {

constexpr auto textureFormat = QImage::Format_RGBA8888;

/** Decoders know no cancelling; a file that gives nothing more ends them. */
class AbandonableFile : public QFile {
public:
    AbandonableFile(const QString& path, const std::atomic_bool& abandoned)
        : QFile(path)
        , m_abandoned(abandoned)
    {
    }

protected:
    qint64 readData(char* data, qint64 length) override { return m_abandoned ? -1 : QFile::readData(data, length); }

private:
    const std::atomic_bool& m_abandoned;
};

/** Gives the pages behind `used` bytes back to the system. */
void releaseTail(uchar* bytes, qsizetype used, qsizetype whole)
{
    const auto page = quintptr(sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<quintptr>(bytes) + quintptr(used) + page - 1) / page * page;
    const auto end = (reinterpret_cast<quintptr>(bytes) + quintptr(whole)) / page * page;
    if (begin < end)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
}

/** Sixteen bits a channel take twice the room of the result, so that a copy would be three times of it: the pixels are
 *  narrowed where they stand. */
QImage narrowed(QImage wide)
{
    const bool premultiplied = wide.format() == QImage::Format_RGBA64_Premultiplied;
    const int width = wide.width();
    const int height = wide.height();
    uchar* const bytes = wide.bits();
    const qsizetype lineBytes = wide.bytesPerLine();
    uchar* out = bytes;
    for (int y = 0; y < height; ++y) {
        const uchar* in = bytes + y * lineBytes;
        for (int x = 0; x < width; ++x, in += sizeof(QRgba64), out += bytesPerPixel) {
            QRgba64 pixel;
            std::memcpy(&pixel, in, sizeof pixel);
            if (premultiplied)
                pixel = pixel.unpremultiplied();
            const uchar channels[] = {pixel.red8(), pixel.green8(), pixel.blue8(), pixel.alpha8()};
            std::memcpy(out, channels, sizeof channels);
        }
    }
    const qsizetype used = qsizetype(width) * height * bytesPerPixel;
    releaseTail(bytes, used, lineBytes * height);
    auto* const owner = new QImage(std::move(wide));
    return {bytes,         width,
            height,        width * bytesPerPixel,
            textureFormat, [](void* image) { delete static_cast<QImage*>(image); },
            owner};
}

/** A bitmap whose lines go downwards tells its height below zero. */
QSize toldSize(const QImageReader& reader)
{
    const QSize size = reader.size();
    return size.width() < 0 ? size : QSize(size.width(), std::abs(std::max(size.height(), -INT_MAX)));
}

QImage forTexture(QImage image)
{
    if (image.depth() == 64)
        return narrowed(std::move(image));
    // In place where the format allows it.
    return std::move(image).convertToFormat(textureFormat);
}

} // namespace

SizeCheck validateImageSize(const QSize& size)
{
    SizeCheck check;
    SizeInfo& info = check.info;
    info.currentWidth = size.width();
    info.currentHeight = size.height();
    // 32 bits, whatever the sides are.
    info.currentSize = int(unsigned(size.width()) * unsigned(size.height()) * unsigned(bytesPerPixel));
    info.bytesPerPixel = bytesPerPixel;
    info.maxWidth = maxWidth;
    info.maxHeight = maxHeight;
    info.maxSize = maxSize;
    check.fits = info.currentSize <= maxSize && size.width() <= maxWidth && size.height() <= maxHeight;
    return check;
}

Reading read(const QString& path, const std::atomic_bool& abandoned)
{
    AbandonableFile file(path, abandoned);
    QImageReader reader(&file);
    // A decoder that is chosen by the file's ending takes any bytes for its own.
    reader.setDecideFormatFromContent(true);
    SizeCheck before = validateImageSize(file.open(QIODevice::ReadOnly) ? gifExtent(file) : QSize());
    if (before.fits)
        before = validateImageSize(toldSize(reader));
    Reading reading;
    reading.size = before.info;
    if (!before.fits) {
        reading.outcome = Outcome::TooLarge;
        return reading;
    }
    QImage image;
    if (!reader.read(&image) || image.isNull() || abandoned) {
        reading.reason = file.isOpen() ? reader.errorString() : file.errorString();
        return reading;
    }
    // What a decoder tells beforehand need not be what it gives.
    const SizeCheck after = validateImageSize(image.size());
    reading.size = after.info;
    reading.outcome = after.fits ? Outcome::Read : Outcome::TooLarge;
    if (after.fits)
        reading.image = forTexture(std::move(image));
    return reading;
}

} // namespace Torvik::View3d::PictureReader
