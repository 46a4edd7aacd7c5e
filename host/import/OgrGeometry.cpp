#include "host/import/OgrGeometry.h"

#include "host/import/CourseGeometry.h"

#include <ogr_geometry.h>

#include <memory>

namespace Torvik::Import::OgrShapes {

namespace {

constexpr double ArcStepDeg = 4.0;
constexpr double JoinToleranceM = 0.01;

QVector<Point> pointsOf(const OGRLineString& line)
{
    QVector<Point> points;
    for (int i = 0; i < line.getNumPoints(); ++i) {
        Point point {line.getX(i), line.getY(i), std::nullopt};
        if (line.Is3D())
            point.z = line.getZ(i);
        points.append(point);
    }
    return points;
}

void collectLines(const OGRGeometry& geometry, QVector<QVector<Point>>& lines)
{
    if (wkbFlatten(geometry.getGeometryType()) == wkbLineString) {
        lines.append(pointsOf(*geometry.toLineString()));
    } else if (OGR_GT_IsSubClassOf(geometry.getGeometryType(), wkbGeometryCollection)) {
        for (const OGRGeometry* part : *geometry.toGeometryCollection())
            collectLines(*part, lines);
    }
}

} // namespace

std::optional<Point> pointOf(const OGRGeometry* geometry)
{
    if (!geometry || geometry->IsEmpty())
        return std::nullopt;
    if (wkbFlatten(geometry->getGeometryType()) == wkbPoint) {
        const OGRPoint* point = geometry->toPoint();
        Point result {point->getX(), point->getY(), std::nullopt};
        if (point->Is3D())
            result.z = point->getZ();
        return result;
    }
    OGREnvelope3D box;
    geometry->getEnvelope(&box);
    Point middle {(box.MinX + box.MaxX) / 2.0, (box.MinY + box.MaxY) / 2.0, std::nullopt};
    if (geometry->Is3D())
        middle.z = box.MaxZ;
    return middle;
}

QVector<Point> lineOf(const OGRGeometry* geometry, QString* reason)
{
    if (!geometry || geometry->IsEmpty()) {
        *reason = QStringLiteral("no geometry");
        return {};
    }
    const std::unique_ptr<OGRGeometry> straight(geometry->getLinearGeometry(ArcStepDeg));
    QVector<QVector<Point>> lines;
    if (straight)
        collectLines(*straight, lines);
    if (lines.isEmpty()) {
        *reason = QStringLiteral("the geometry is no line but %1").arg(QString::fromUtf8(geometry->getGeometryName()));
        return {};
    }
    QVector<Point> course;
    if (!Course::joinLines(lines, JoinToleranceM, course)) {
        *reason = QStringLiteral("the parts of the line do not meet");
        return {};
    }
    return Course::withoutRepeats(course);
}

} // namespace Torvik::Import::OgrShapes
