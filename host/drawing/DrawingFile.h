#pragma once

#include "host/drawing/DxfCensus.h"

#include <QByteArray>
#include <QString>

#include <atomic>

namespace Torvik::DXF {

/** Why no plan comes of a file. */
enum class DrawingProblem {
    None,
    Missing,       ///< no such file
    NotReadable,   ///< a folder, no right to read it, or the disk fails
    Empty,         ///< no byte in it
    NoDrawing,     ///< something else under a drawing's name
    BinaryDxf,     ///< the form of DXF that isn't text
    DwgVersion,    ///< DWG that GDAL does not know
    Damaged,       ///< a line in its midst is none of a drawing's
    CutOff,        ///< ends within its entities
    TooMuch,       ///< its blocks unfold to more than a device can hold
    Unread,        ///< GDAL gives up, or leaves most of it out
    NothingToDraw, ///< read, and without a line
    Cancelled
};

/** What kind of file it is, told by its first bytes and never by its name. */
struct DrawingFile {
    enum Kind { TextDxf, BinaryDxf, Dwg, Unknown };

    DrawingProblem problem = DrawingProblem::None;
    Kind kind = Unknown;
    QString version; ///< AC1015 and so on, where the file tells
    QString instead; ///< what it is where it is no drawing, as endingByContents() tells
    qint64 bytes = 0;
    DxfCensus census; ///< of a DXF in text form
};

DrawingFile::Kind kindOfDrawing(const char* data, std::size_t size);
/** By which ending a file would be known that begins like that: pdf, png, jpg, tif, gif, dwg or dxf; empty otherwise.
 */
QString endingByContents(const QByteArray& first);
/** AC1015 becomes "2000"; empty for what nobody has heard of. */
QString releaseOf(const QString& version);

/** Reads the file once from end to end; gives up soon after `cancelled` is set. */
DrawingFile inspectDrawing(const QString& path, const std::atomic<bool>& cancelled);

/** A sentence or two for the user, in the language of the application: what is wrong with the file, and what helps.
 * Empty for None and Cancelled. */
QString explain(const DrawingFile& file, const QString& path);

} // namespace Torvik::DXF
