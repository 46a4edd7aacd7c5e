#include "host/app/PlanMessages.h"

#include "host/drawing/DrawingJournal.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace Torvik::Viewer::PlanMessages {

namespace {

constexpr qint64 megabyte = 1024 * 1024;
constexpr qint64 firstBytes = 4096;

QString tr(const char* text)
{
    return QCoreApplication::translate("Torvik::Viewer::PlanMessages", text);
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

QString unreadable(const QString& file, const QString& loadedAs)
{
    const QFileInfo loaded(loadedAs.isEmpty() ? file : loadedAs);
    QString known = DXF::DrawingJournal::last(loaded.absoluteFilePath()).message;
    if (!known.isEmpty())
        return known.replace(loaded.fileName(), QFileInfo(file).fileName());
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
              "it "
              "as PNG or JPEG, and try again.")
        .arg(file);
}

QString notes(const QString& file, const QString& loadedAs)
{
    const QFileInfo loaded(loadedAs.isEmpty() ? file : loadedAs);
    return DXF::DrawingJournal::last(loaded.absoluteFilePath())
        .warnings.join(QLatin1Char('\n'))
        .replace(loaded.fileName(), QFileInfo(file).fileName());
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
