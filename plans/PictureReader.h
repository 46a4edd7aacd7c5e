#pragma once

#include "plans/SizeInfo.h"
#include "scene/KxView3dExport.h"

#include <QImage>
#include <QSize>
#include <QString>

#include <atomic>

/** Reading a picture that is to become a texture, within the memory that such a texture may have. Pure functions; any
 *  thread. */
namespace Torvik::View3d::PictureReader {

constexpr int bytesPerPixel = 4;
constexpr int maxWidth = 4048;
constexpr int maxHeight = 4048;
constexpr int maxSize = maxWidth * maxHeight * bytesPerPixel;

struct SizeCheck {
    bool fits = false;
    SizeInfo info;
};

enum class Outcome { Read, TooLarge, Unreadable };

struct Reading {
    Outcome outcome = Outcome::Unreadable;
    /** Format_RGBA8888; null unless read. */
    QImage image;
    SizeInfo size;
    /** Why it is unreadable, as the decoder says it. */
    QString reason;
};

/** A side below 0 means that the size is not known; that fits. */
KXVIEW3D_EXPORT SizeCheck validateImageSize(const QSize& size);

/** Decodes no picture that is too large. Holds at most twice the bytes of the result at any moment.
 *  @param abandoned  set from another thread, it ends the reading soon, without a picture */
KXVIEW3D_EXPORT Reading read(const QString& path, const std::atomic_bool& abandoned);

} // namespace Torvik::View3d::PictureReader
