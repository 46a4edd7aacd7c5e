#include "host/drawing/DrawingFile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

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

QString endingByContents(const QByteArray& first)
{
    static const struct {
        QByteArray begin;
        const char* ending;
    } known[] = {{"%PDF", "pdf"},
                 {QByteArrayLiteral("\x89PNG"), "png"},
                 {QByteArrayLiteral("\xff\xd8\xff"), "jpg"},
                 {QByteArrayLiteral("II*\0"), "tif"},
                 {QByteArrayLiteral("MM\0*"), "tif"},
                 {"GIF8", "gif"}};
    for (const auto& row : known) {
        if (first.startsWith(row.begin))
            return QLatin1String(row.ending);
    }
    const DrawingFile::Kind kind = kindOfDrawing(first.constData(), std::size_t(first.size()));
    if (kind == DrawingFile::Dwg)
        return QStringLiteral("dwg");
    static const QRegularExpression sectionOfDxf(QStringLiteral("^\\s*(999\\s*\\n[^\\n]*\\n\\s*)*0\\s*\\n\\s*SECTION"));
    const bool dxf =
        kind == DrawingFile::BinaryDxf ||
        (kind == DrawingFile::TextDxf && sectionOfDxf.match(QString::fromLatin1(first.left(4000))).hasMatch());
    return dxf ? QStringLiteral("dxf") : QString();
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
    if (found.problem == DrawingProblem::NoDrawing)
        found.instead = endingByContents(first);
    if (file.error() == QFileDevice::ReadError)
        found.problem = DrawingProblem::NotReadable;
    return found;
}

} // namespace Torvik::DXF
