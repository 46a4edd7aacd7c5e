#include "host/drawing/DrawingFile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cstring>

namespace Torvik::DXF {

namespace {

constexpr qint64 pieceSize = 1 << 20;
constexpr char binaryMark[] = "AutoCAD Binary DXF\r\n\x1a";
/** Entities in the model once all blocks are unfolded. */
constexpr double mostEntities = 2e6;

void count(QFile& file, const QByteArray& first, DrawingFile& found, const std::atomic<bool>& cancelled)
{
    DxfCounter counter;
    QByteArray piece = first;
    while (!piece.isEmpty() && !cancelled) {
        counter.feed(piece.constData(), std::size_t(piece.size()));
        piece = file.read(pieceSize);
    }
    found.census = counter.finish();
    found.version = QString::fromLatin1(found.census.version.c_str());
}

DrawingProblem problemOf(const DrawingFile& file)
{
    switch (file.kind) {
    case DrawingFile::BinaryDxf:
        return DrawingProblem::BinaryDxf;
    case DrawingFile::Dwg:
        return file.version == QLatin1String("AC1015") ? DrawingProblem::None : DrawingProblem::DwgVersion;
    case DrawingFile::Unknown:
        return DrawingProblem::NoDrawing;
    case DrawingFile::TextDxf:
        break;
    }
    const DxfCensus& census = file.census;
    if (!census.isText)
        return DrawingProblem::NoDrawing;
    if (census.brokenLine > 0 && (census.entitiesOpen || !census.hasEntities))
        return DrawingProblem::Damaged;
    if (!census.hasEnd && (census.entitiesOpen || !census.hasEntities))
        return DrawingProblem::CutOff;
    return census.unfolded > mostEntities ? DrawingProblem::TooMuch : DrawingProblem::None;
}

QString nameOf(const DrawingFile& file)
{
    const QString release = releaseOf(file.version);
    return release.isEmpty() ? QString() : QLatin1Char(' ') + release;
}

} // namespace

DrawingFile::Kind kindOfDrawing(const char* data, std::size_t size)
{
    const QByteArray text = QByteArray::fromRawData(data, int(size));
    if (text.startsWith(binaryMark))
        return DrawingFile::BinaryDxf;
    if (text.startsWith("AC") && size >= 6 && text.left(6).count('\0') == 0 && text.at(2) >= '0' && text.at(2) <= '9')
        return DrawingFile::Dwg;
    return text.contains('\0') ? DrawingFile::Unknown : DrawingFile::TextDxf;
}

QString releaseOf(const QString& version)
{
    static const struct {
        const char* version;
        const char* release;
    } known[] = {{"AC1006", "R10"},  {"AC1009", "R12"},  {"AC1012", "R13"},  {"AC1014", "R14"},  {"AC1015", "2000"},
                 {"AC1018", "2004"}, {"AC1021", "2007"}, {"AC1024", "2010"}, {"AC1027", "2013"}, {"AC1032", "2018"}};
    for (const auto& row : known) {
        if (version == QLatin1String(row.version))
            return QLatin1String(row.release);
    }
    return {};
}

DrawingFile inspectDrawing(const QString& path, const std::atomic<bool>& cancelled)
{
    DrawingFile found;
    const QFileInfo info(path);
    if (!info.exists()) {
        found.problem = DrawingProblem::Missing;
        return found;
    }
    QFile file(path);
    // A pipe or a device would be waited for, perhaps for ever.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        found.problem = DrawingProblem::NotReadable;
        return found;
    }
    found.bytes = file.size();
    const QByteArray first = file.read(pieceSize);
    if (first.isEmpty()) {
        found.problem = found.bytes > 0 ? DrawingProblem::NotReadable : DrawingProblem::Empty;
        return found;
    }
    found.kind = kindOfDrawing(first.constData(), std::size_t(first.size()));
    if (found.kind == DrawingFile::Dwg)
        found.version = QString::fromLatin1(first.left(6));
    else if (found.kind == DrawingFile::TextDxf)
        count(file, first, found, cancelled);
    found.problem = cancelled ? DrawingProblem::Cancelled : problemOf(found);
    if (file.error() == QFileDevice::ReadError)
        found.problem = DrawingProblem::NotReadable;
    return found;
}

QString explain(const DrawingFile& file, const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    const QString help = QStringLiteral(" Save it as DXF in text form (ASCII DXF) and choose that file.");
    switch (file.problem) {
    case DrawingProblem::None:
    case DrawingProblem::Cancelled:
        return {};
    case DrawingProblem::Missing:
        return QStringLiteral("%1 is not there any more.").arg(name);
    case DrawingProblem::NotReadable:
        return QStringLiteral("%1 cannot be read. Look whether it is a file, whether you may open it, and whether its "
                              "disk is connected.")
            .arg(name);
    case DrawingProblem::Empty:
        return QStringLiteral("%1 is empty. Copy it again from where it came.").arg(name);
    case DrawingProblem::NoDrawing:
        return QStringLiteral("%1 is no DXF or DWG drawing, whatever its name says.").arg(name) + help;
    case DrawingProblem::BinaryDxf:
        return QStringLiteral("%1 is a DXF in binary form, which cannot be read here.").arg(name) + help;
    case DrawingProblem::DwgVersion:
        return QStringLiteral("%1 is a DWG%2 drawing (%3); only DWG 2000 can be read here.")
                   .arg(name, nameOf(file), file.version) +
               help;
    case DrawingProblem::Damaged:
        return QStringLiteral("%1 is damaged in line %2. Copy it again from where it came, or save the drawing again.")
            .arg(name)
            .arg(file.census.brokenLine);
    case DrawingProblem::CutOff:
        return QStringLiteral("%1 is cut off: it ends before its drawing does. Copy it again from where it came.")
            .arg(name);
    case DrawingProblem::TooMuch:
        return QStringLiteral("%1 holds more lines than can be shown, most of them in blocks. Save the part that is "
                              "needed as a drawing of its own.")
            .arg(name);
    case DrawingProblem::Unread:
        return QStringLiteral("%1%2 cannot be read.")
                   .arg(name,
                        file.kind == DrawingFile::Dwg ? QStringLiteral(" (DWG%1)").arg(nameOf(file)) : QString()) +
               help;
    case DrawingProblem::NothingToDraw:
        return QStringLiteral("%1 holds nothing that can be drawn, or only on layers that are frozen or off.")
            .arg(name);
    }
    return {};
}

} // namespace Torvik::DXF
