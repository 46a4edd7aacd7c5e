#include "plans/GifExtent.h"

#include <QIODevice>

namespace Torvik::View3d {

namespace {

/** More extensions than that before the first frame are no picture in earnest. */
constexpr qint64 searched = 1 << 20;
constexpr int headerBytes = 13;
constexpr int frameBytes = 10;

int word(const QByteArray& bytes, int at)
{
    return int(uchar(bytes[at])) | int(uchar(bytes[at + 1])) << 8;
}

/** Behind an extension's label: blocks with their lengths in front, up to one without length. */
int behindBlocks(const QByteArray& bytes, int at)
{
    while (at < bytes.size() && bytes[at] != '\0')
        at += 1 + int(uchar(bytes[at]));
    return at + 1;
}

} // namespace

QSize gifExtent(QIODevice& file)
{
    const QByteArray bytes = file.peek(headerBytes).startsWith("GIF") ? file.peek(searched) : QByteArray();
    if (bytes.size() < headerBytes)
        return {};
    const int width = word(bytes, 6);
    const int height = word(bytes, 8);
    if (width > 0 && height > 0)
        return {width, height};
    const int flags = uchar(bytes[10]);
    const bool hasColours = (flags & 0x80) != 0;
    int at = headerBytes + (hasColours ? 3 * (2 << (flags & 7)) : 0);
    // Decoders pass over what is no block.
    while (at < bytes.size() && bytes[at] != ',')
        at = bytes[at] == '!' ? behindBlocks(bytes, at + 2) : at + 1;
    if (at + frameBytes > bytes.size())
        return {};
    return {width > 0 ? width : word(bytes, at + 1) + word(bytes, at + 5),
            height > 0 ? height : word(bytes, at + 3) + word(bytes, at + 7)};
}

} // namespace Torvik::View3d
