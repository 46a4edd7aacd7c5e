#include "host/app/PlanMessages.h"

#include "host/app/PlanUnits.h"
#include "host/drawing/DrawingJournal.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace Torvik::Viewer::PlanMessages {

namespace {

constexpr qint64 megabyte = 1024 * 1024;
constexpr qint64 firstBytes = 4096;
/** A PDF becomes a picture of 80 dots an inch. */
constexpr double dotsPerCentimetre = 80 / 2.54;

QString tr(const char* text)
{
    return QCoreApplication::translate("Torvik::Viewer::PlanMessages", text);
}

/** Of a page, from the dots of its picture. */
double centimetres(int pixels)
{
    return pixels / dotsPerCentimetre;
}

/** What reads files of such an ending. */
enum class Loader { Picture, Pdf, Drawing };

Loader loaderOf(const QString& ending)
{
    const QString lower = ending.toLower();
    if (lower == QLatin1String("dxf") || lower == QLatin1String("dwg"))
        return Loader::Drawing;
    return lower == QLatin1String("pdf") ? Loader::Pdf : Loader::Picture;
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

QString named(QString text, const QString& copy, const QString& source)
{
    if (copy == source)
        return text;
    return text.replace(copy, source).replace(QFileInfo(copy).fileName(), QFileInfo(source).fileName());
}

QString unreadable(const QString& file, const QString& loadedAs)
{
    const QFileInfo loaded(loadedAs.isEmpty() ? file : loadedAs);
    const QString known = DXF::DrawingJournal::last(loaded.absoluteFilePath()).message;
    if (!known.isEmpty())
        return named(known, loaded.absoluteFilePath(), file);
    QFile contents(file);
    const QByteArray first = contents.open(QIODevice::ReadOnly) ? contents.read(firstBytes) : QByteArray();
    if (contents.isOpen() && first.isEmpty())
        return tr("%1: this file is empty. Copy it again from where it came.").arg(file);
    const QString ending = DXF::endingByContents(first);
    if (!ending.isEmpty() && loaderOf(ending) != loaderOf(QFileInfo(file).suffix()))
        return tr("%1: whatever its name says, this is a %2 file. Rename it so that its name ends in .%3, and choose "
                  "it "
                  "again.")
            .arg(file, ending.toUpper(), ending);
    switch (loaderOf(QFileInfo(file).suffix())) {
    case Loader::Drawing:
        return tr("%1: this drawing cannot be read. Save it as an ASCII DXF and try again.").arg(file);
    case Loader::Pdf:
        return tr("%1: this PDF cannot be read; it is damaged, or locked by a password. Open it in a PDF program, save "
                  "it "
                  "without a password, and try again.")
            .arg(file);
    case Loader::Picture:
        break;
    }
    return tr("%1: this cannot be read; it is damaged, or no picture of its kind. Open it in a picture program, save "
              "it as PNG or JPEG, and try again.")
        .arg(file);
}

QString notes(const QString& file, const QString& loadedAs)
{
    const QFileInfo loaded(loadedAs.isEmpty() ? file : loadedAs);
    const DXF::DrawingReport drawing = DXF::DrawingJournal::last(loaded.absoluteFilePath());
    QStringList texts = drawing.warnings;
    texts << PlanUnits::note(drawing, loaded.absoluteFilePath());
    texts.removeAll({});
    return named(texts.join(QLatin1Char('\n')), loaded.absoluteFilePath(), file);
}

QString tooLarge(const QString& file, const View3d::SizeInfo& size)
{
    if (loaderOf(QFileInfo(file).suffix()) == Loader::Pdf)
        return tr("%1: the page is too large: %2 x %3 cm; a plan has at most %4 x %5 cm. Print it to a smaller page, "
                  "or in parts, and try again.")
            .arg(file)
            .arg(std::round(centimetres(size.currentWidth)))
            .arg(std::round(centimetres(size.currentHeight)))
            .arg(std::floor(centimetres(size.maxWidth)))
            .arg(std::floor(centimetres(size.maxHeight)));
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

QString notLaid(const QString& file, const QString& reason)
{
    return tr("%1: the plan is not laid, and all is as before: %2").arg(file, reason);
}

QString notStored(const QString& file)
{
    return tr("%1: the plan is not laid, since the project's folder cannot be written to; what was there before still "
              "is. Is the disk full, or write-protected? Make room and lay the plan again.")
        .arg(file);
}

QString placeNotStored(const QString& file)
{
    return tr("%1: where the plan lies now could not be stored in the project. Is the disk full, or write-protected? "
              "Make room, and place the plan once more before you close the project.")
        .arg(file);
}

QString notKept(const QString& file, const QString& reason)
{
    return tr("%1: the plan lies on its floor, but will not when the project is opened again, since its file could not "
              "be brought into the project: %2")
        .arg(file, reason);
}

QString floorsNotStored(const QString& reason)
{
    return tr("The plans of the floors and their heights could not be stored in the project: %1. Is the disk full, or "
              "write-protected? Make room, and set the heights once more before you close the project.")
        .arg(reason);
}

QString notForgotten(const QString& planFile)
{
    return tr("The plan is out of the view, but will be there again when the project is opened: %1 cannot be deleted. "
              "May it not be written to?")
        .arg(planFile);
}

QString noRoom(const QString& file, qint64 bytes)
{
    return tr("%1: there is no room for it on the disk of the project, which needs %2 MB. Make room and try again.")
        .arg(file)
        .arg(bytes / megabyte + 1);
}

QString firstPageOnly(const QString& file, int pages)
{
    return tr("%1 has %2 pages; the first one is laid. Save another page as a file of its own to lay that.")
        .arg(file)
        .arg(pages);
}

QString converterFailed(const QString& file)
{
    return tr("%1: no picture can be made of this PDF. Is the package poppler-utils installed, and is there room on "
              "the disk?")
        .arg(file);
}

} // namespace Torvik::Viewer::PlanMessages
