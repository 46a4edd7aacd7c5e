#include "host/app/PlanMessages.h"

#include "host/drawing/DrawingJournal.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace Torvik::Viewer::PlanMessages {

namespace {

constexpr qint64 megabyte = 1024 * 1024;

QString tr(const char* text)
{
    return QCoreApplication::translate("Torvik::Viewer::PlanMessages", text);
}

bool isDrawing(const QString& file)
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    return suffix == QLatin1String("dxf") || suffix == QLatin1String("dwg");
}

} // namespace

QString missing(const QString& file)
{
    return tr("%1: there is no such file.").arg(file);
}

QString noPlan(const QString& file)
{
    return tr("%1: no file of this kind can be laid as a plan. Pictures (PNG, JPEG, TIFF, BMP, GIF), PDF, DXF and DWG "
              "can be; save it as one of them.")
        .arg(file);
}

QString closed(const QString& file)
{
    return tr("%1: you may not open this file. Ask whoever it belongs to, or copy it to a folder of yours.").arg(file);
}

QString unreadable(const QString& file)
{
    const QString known = DXF::DrawingJournal::last(file).message;
    if (!known.isEmpty())
        return known;
    if (isDrawing(file))
        return tr("%1: this drawing cannot be read. Save it as an ASCII DXF and try again.").arg(file);
    return tr("%1: this cannot be read; it is damaged, or no picture of its kind. Open it in a picture program, save "
              "it "
              "as PNG or JPEG, and try again.")
        .arg(file);
}

QString tooLarge(const QString& file, const View3d::SizeInfo& size)
{
    return tr("%1: %2 x %3 pixels are too many; a plan has at most %4 x %5. Make it smaller and try again.")
        .arg(file)
        .arg(size.currentWidth)
        .arg(size.currentHeight)
        .arg(size.maxWidth)
        .arg(size.maxHeight);
}

QString fileTooLarge(const QString& file, qint64 limitBytes)
{
    return tr("%1: the file is too large; a drawing of its kind has at most %2 MB. Leave out what is not needed of it.")
        .arg(file)
        .arg(limitBytes / megabyte);
}

QString notCopied(const QString& file, const QString& reason)
{
    return tr("%1: the file could not be copied: %2. Is its disk still connected, and is there room on this one?")
        .arg(file, reason);
}

QString placeNotStored(const QString& file)
{
    return tr("%1: the plan lies under the network, but where it lies could not be stored in the project. Is the disk "
              "full, or may it not be written to? Make room and lay the plan again.")
        .arg(file);
}

QString converterFailed(const QString& file)
{
    return tr("%1: no picture can be made of this PDF. Is the package poppler-utils installed, and is there room on "
              "the "
              "disk?")
        .arg(file);
}

} // namespace Torvik::Viewer::PlanMessages
