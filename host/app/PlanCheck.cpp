#include "host/app/PlanCheck.h"

#include "host/app/PlanMessages.h"
#include "plans/PictureReader.h"
#include "plans/PlanFiles.h"

#include <QFileInfo>
#include <QImageReader>
#include <QStorageInfo>

namespace Torvik::Viewer {

namespace {

/** Beside the copy the project needs some room for what else is stored. */
constexpr qint64 spareBytes = 4 * 1024 * 1024;

bool isPicture(const QString& suffix)
{
    static const QStringList endings {QStringLiteral("png"), QStringLiteral("jpg"),  QStringLiteral("jpeg"),
                                      QStringLiteral("tif"), QStringLiteral("tiff"), QStringLiteral("bmp"),
                                      QStringLiteral("gif"), QStringLiteral("exif")};
    return endings.contains(suffix);
}

bool isPlan(const QString& suffix)
{
    static const QStringList others {QStringLiteral("pdf"), QStringLiteral("dxf"), QStringLiteral("dwg")};
    return isPicture(suffix) || others.contains(suffix);
}

} // namespace

QString whyNoPlan(const QString& file)
{
    const QFileInfo info(file);
    const QString suffix = info.suffix().toLower();
    if (!info.isFile())
        return PlanMessages::missing(file);
    if (!isPlan(suffix))
        return PlanMessages::noPlan(file);
    if (!info.isReadable())
        return PlanMessages::closed(file);
    const qint64 limit = View3d::PlanFiles::sizeLimit(suffix);
    if (limit > 0 && info.size() > limit)
        return PlanMessages::fileTooLarge(file, limit);
    if (isPicture(suffix)) {
        // Before gigabytes of it are copied in vain.
        const auto size = View3d::PictureReader::validateImageSize(QImageReader(file).size());
        if (!size.fits)
            return PlanMessages::tooLarge(file, size.info);
    }
    return {};
}

QString whyNoPlan(const QString& file, const QString& project)
{
    const QString refused = whyNoPlan(file);
    if (!refused.isEmpty())
        return refused;
    const QFileInfo info(file);
    const QStorageInfo disk(project);
    const bool fits = !disk.isValid() || disk.bytesAvailable() >= info.size() + spareBytes;
    return fits ? QString() : PlanMessages::noRoom(file, info.size() + spareBytes);
}

} // namespace Torvik::Viewer
