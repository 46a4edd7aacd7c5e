#include "host/drawing/OgrDrawingReader.h"
#include "host/drawing/DrawingStyle.h"
#include "host/drawing/OgrShapes.h"
#include "host/drawing/StoppableFile.h"
#include "host/drawing/StrokeFont.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace Torvik::DXF {

namespace {

/** A pattern lets what lies under it through. */
constexpr unsigned patternOpacity = 80;
/** GDAL tells no height of a text in a DWG. */
constexpr double heightOfText = 2.5;

/** GDAL's settings on this thread while it lives. */
class Setting {
public:
    Setting(const char* name, const char* value)
        : m_name(name)
    {
        CPLSetThreadLocalConfigOption(name, value);
    }
    ~Setting() { CPLSetThreadLocalConfigOption(m_name, nullptr); }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

private:
    const char* m_name;
};

void CPL_STDCALL keepComplaint(CPLErr level, CPLErrorNum, const char* message)
{
    if (level >= CE_Failure)
        *static_cast<QString*>(CPLGetErrorHandlerUserData()) = QString::fromUtf8(message);
}

class Complaints {
public:
    explicit Complaints(QString* last) { CPLPushErrorHandlerEx(keepComplaint, last); }
    ~Complaints() { CPLPopErrorHandler(); }
    Complaints(const Complaints&) = delete;
    Complaints& operator=(const Complaints&) = delete;
};

/** Where a layer's features keep what is asked of them; -1 where they don't. */
struct Columns {
    int paper = -1;
    int kind = -1;
    int handle = -1;
    int text = -1;

    explicit Columns(OGRFeatureDefn& layer)
        : paper(layer.GetFieldIndex("PaperSpace"))
        , kind(layer.GetFieldIndex("SubClasses"))
        , handle(layer.GetFieldIndex("EntityHandle"))
        , text(layer.GetFieldIndex("Text"))
    {
    }
};

bool isSet(const OGRFeature& feature, int column)
{
    return column >= 0 && feature.IsFieldSetAndNotNull(column);
}

class Reading {
public:
    Reading(DrawingFile::Kind kind, DrawingRead& read)
        : m_isDwg(kind == DrawingFile::Dwg)
        , m_read(read)
    {
    }

    std::vector<unsigned long long> seen;

    void take(const OGRFeature& feature, const Columns& columns)
    {
        if (isSet(feature, columns.paper) && feature.GetFieldAsInteger(columns.paper) != 0) {
            ++m_read.inPaper;
            return;
        }
        ++m_read.features;
        if (isSet(feature, columns.handle))
            seen.push_back(std::strtoull(feature.GetFieldAsString(columns.handle), nullptr, 16));
        DrawingStyle style = parseStyle(feature.GetStyleString());
        if (style.hidden) {
            ++m_read.hidden;
            return;
        }
        // A DWG's own colour is told as white, that of a DXF as black.
        if (m_isDwg && style.colour == colourOf(255, 255, 255))
            style.colour = colourOf(0, 0, 0);
        if (style.tool == DrawingStyle::Label)
            addLabel(feature, columns, style);
        else
            addShape(feature, columns, style);
    }

private:
    void addLabel(const OGRFeature& feature, const Columns& columns, const DrawingStyle& style)
    {
        const OGRGeometry* const geometry = feature.GetGeometryRef();
        if (!geometry || wkbFlatten(geometry->getGeometryType()) != wkbPoint || geometry->IsEmpty())
            return;
        const OGRPoint* const point = geometry->toPoint();
        const QString text = isSet(feature, columns.text) ? QString::fromUtf8(feature.GetFieldAsString(columns.text))
                                                          : QString::fromStdString(style.text);
        TextPlace place;
        place.at = {point->getX() + style.dx, point->getY() + style.dy, point->getZ()};
        place.height = style.height > 0.0 ? style.height : heightOfText;
        place.angleDeg = style.angleDeg;
        place.widthFactor = style.width > 0.0 ? style.width / 100.0 : 1.0;
        place.anchor = style.anchor;
        addText(m_read.drawing, withoutNumbers(text), place, style.colour);
    }

    void addShape(const OGRFeature& feature, const Columns& columns, const DrawingStyle& style)
    {
        const bool hatch =
            isSet(feature, columns.kind) && std::strstr(feature.GetFieldAsString(columns.kind), "AcDbHatch") != nullptr;
        const bool pattern =
            hatch && isSet(feature, columns.text) && std::strcmp(feature.GetFieldAsString(columns.text), "SOLID") != 0;
        const DrawingColour colour = pattern ? (style.colour & 0xffffffU) | patternOpacity << 24U : style.colour;
        addGeometry(m_read.drawing, feature.GetGeometryRef(), colour, style.tool == DrawingStyle::Brush);
    }

    bool m_isDwg;
    DrawingRead& m_read;
};

/** False when there is nothing more to come of the file. */
bool readLayer(OGRLayer& layer, Reading& reading, DrawingRead& read, const std::atomic<bool>& cancelled)
{
    const Columns columns(*layer.GetLayerDefn());
    for (const auto& feature : layer) {
        reading.take(*feature, columns);
        if (cancelled)
            return false;
        if (read.drawing.vertexCount() > mostVertices) {
            read.problem = DrawingProblem::TooMuch;
            return false;
        }
    }
    return !cancelled;
}

void judge(const DrawingFile& file, Reading& reading, DrawingRead& read)
{
    if (file.kind == DrawingFile::TextDxf)
        read.losses = findLosses(file.census, std::move(reading.seen), read.features);
    const int expected = file.census.inModel;
    if (expected > 0 && read.losses.lostAtLeast > expected / 2)
        read.problem = DrawingProblem::Unread;
    else if (read.drawing.vertexCount() == 0)
        read.problem = DrawingProblem::NothingToDraw;
}

void registerDrivers()
{
    static const bool once = [] {
        RegisterOGRDXF();
        RegisterOGRCAD();
        return true;
    }();
    Q_UNUSED(once)
}

} // namespace

DrawingRead readDrawing(const QString& path, const DrawingFile& file,
                        const std::shared_ptr<const std::atomic<bool>>& cancelled)
{
    registerDrivers();
    DrawingRead read;
    const Complaints complaints(&read.complaint);
    // Each entity of a block by itself, with its own kind; and as many as there are: their number is known by now.
    const Setting single("DXF_MERGE_BLOCK_GEOMETRIES", "FALSE");
    const Setting all("DXF_FEATURE_LIMIT_PER_BLOCK", "-1");
    // A chord of a circle leaves it by a four-hundredth of its radius.
    const Setting chords("OGR_ARC_STEPSIZE", "8");
    const bool dwg = file.kind == DrawingFile::Dwg;
    const StoppableFile source(path, dwg ? "dwg" : "dxf", cancelled);
    const char* const drivers[] = {dwg ? "CAD" : "DXF", nullptr};
    const GDALDatasetUniquePtr dataset(
        GDALDataset::Open(source.name().c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers, nullptr, nullptr));
    if (!dataset) {
        read.problem = *cancelled ? DrawingProblem::Cancelled : DrawingProblem::Unread;
        return read;
    }
    Reading reading(file.kind, read);
    for (int i = 0; i < dataset->GetLayerCount(); ++i) {
        if (!readLayer(*dataset->GetLayer(i), reading, read, *cancelled))
            break;
    }
    if (*cancelled)
        read.problem = DrawingProblem::Cancelled;
    else if (read.problem == DrawingProblem::None)
        judge(file, reading, read);
    return read;
}

} // namespace Torvik::DXF
