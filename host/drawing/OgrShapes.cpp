#include "host/drawing/OgrShapes.h"

#include <ogr_geometry.h>

#include <memory>

namespace Torvik::DXF {

namespace {

/** Angle of a chord, as the reader has it for the arcs that GDAL makes straight. */
constexpr double degreesAChord = 8.0;

DrawingCourse courseOf(const OGRSimpleCurve& curve)
{
    DrawingCourse course;
    course.reserve(std::size_t(curve.getNumPoints()));
    for (int i = 0; i < curve.getNumPoints(); ++i)
        course.push_back({curve.getX(i), curve.getY(i), curve.getZ(i)});
    return course;
}

void addPolygon(Drawing& drawing, const OGRPolygon& polygon, DrawingColour colour, bool fill)
{
    std::vector<DrawingCourse> rings;
    for (const OGRLinearRing* ring : polygon) {
        rings.push_back(courseOf(*ring));
        if (!fill)
            addCourse(drawing, rings.back(), colour);
    }
    if (fill)
        addFill(drawing, rings, colour);
}

void addStraight(Drawing& drawing, const OGRGeometry& geometry, DrawingColour colour, bool fill)
{
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint: {
        const OGRPoint* const point = geometry.toPoint();
        if (!point->IsEmpty())
            addPoint(drawing, {point->getX(), point->getY(), point->getZ()}, colour);
        break;
    }
    case wkbLineString:
        addCourse(drawing, courseOf(*geometry.toLineString()), colour);
        break;
    case wkbPolygon:
    case wkbTriangle:
        addPolygon(drawing, *geometry.toPolygon(), colour, fill);
        break;
    case wkbPolyhedralSurface:
    case wkbTIN:
        for (const OGRPolygon* face : *geometry.toPolyhedralSurface())
            addPolygon(drawing, *face, colour, false);
        break;
    case wkbMultiPoint:
    case wkbMultiLineString:
    case wkbMultiPolygon:
    case wkbGeometryCollection:
        for (const OGRGeometry* part : *geometry.toGeometryCollection())
            addGeometry(drawing, part, colour, fill);
        break;
    default:
        break;
    }
}

} // namespace

void addGeometry(Drawing& drawing, const OGRGeometry* geometry, DrawingColour colour, bool fill)
{
    if (!geometry || drawing.vertexCount() > mostVertices)
        return;
    if (geometry->hasCurveGeometry(FALSE)) {
        const std::unique_ptr<OGRGeometry> straight(geometry->getLinearGeometry(degreesAChord));
        if (straight)
            addStraight(drawing, *straight, colour, fill);
        return;
    }
    addStraight(drawing, *geometry, colour, fill);
}

} // namespace Torvik::DXF
