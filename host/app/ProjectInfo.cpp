#include "host/app/ProjectInfo.h"

#include "domain/boundary/ColumnNames.h"
#include "domain/boundary/WktPoint.h"

#include <QLocale>
#include <QTextStream>

#include <ogr_spatialref.h>

#include <algorithm>

namespace Torvik::Viewer {

using namespace Torvik::Database;

namespace {

void widen(std::optional<ProjectInfo::Extent>& extent, const WktPoint& point)
{
    bool hasX = false;
    bool hasY = false;
    const double x = point.x().toDouble(&hasX);
    const double y = point.y().toDouble(&hasY);
    const double z = point.z().toDouble();
    if (!hasX || !hasY)
        return;
    if (!extent)
        extent = ProjectInfo::Extent {x, y, z, x, y, z};
    *extent = {std::min(extent->minX, x), std::min(extent->minY, y), std::min(extent->minZ, z),
               std::max(extent->maxX, x), std::max(extent->maxY, y), std::max(extent->maxZ, z)};
}

void widen(std::optional<ProjectInfo::Extent>& extent, const CDomainObject& object, const QString& column)
{
    const QString text = object.readValue(column).toString();
    if (text.isEmpty())
        return;
    for (const QString& part : WktParser::parseWkt(text)) {
        QVector<WktPoint> points;
        QString prefix;
        ShapeWKTHelper::wktStringToWktPoints(part, points, prefix);
        for (const WktPoint& point : points)
            widen(extent, point);
    }
}

void addPipe(ProjectInfo& info, const CGenericPipeObject& pipe)
{
    widen(info.extent, pipe, SECTION_SHAPE_WKT_COLUMN);
    for (int i = 0; i < pipe.inspectionCount(); ++i) {
        const auto inspection = pipe.inspection(i);
        ++info.inspections;
        info.observations += inspection->observationCount();
        widen(info.extent, *inspection, SECINSP_SHAPE_WKT_COLUMN);
    }
}

QString metres(double value)
{
    return QLocale::c().toString(value, 'f', 2);
}

} // namespace

ProjectInfo collectInfo(const CProjectObject& project)
{
    ProjectInfo info;
    info.nodes = project.nodeCount();
    for (int i = 0; i < info.nodes; ++i) {
        const auto node = project.node(i);
        ++info.nodeTypes[node->readValue(QStringLiteral("OBJ_Type")).toString()];
        widen(info.extent, *node, NODE_SHAPE_WKT_COLUMN);
    }
    info.sections = project.sectionCount();
    for (int i = 0; i < info.sections; ++i)
        addPipe(info, *project.section(i));
    info.laterals = project.lateralCount();
    for (int i = 0; i < info.laterals; ++i)
        addPipe(info, *project.lateral(i));
    info.crs = crsName(project.projectionWKT());
    return info;
}

QJsonObject toJson(const ProjectInfo& info)
{
    QJsonObject types;
    for (auto type = info.nodeTypes.begin(); type != info.nodeTypes.end(); ++type)
        types.insert(type.key(), type.value());
    QJsonValue extent;
    if (info.extent) {
        extent = QJsonObject {{QStringLiteral("minX"), info.extent->minX}, {QStringLiteral("minY"), info.extent->minY},
                              {QStringLiteral("minZ"), info.extent->minZ}, {QStringLiteral("maxX"), info.extent->maxX},
                              {QStringLiteral("maxY"), info.extent->maxY}, {QStringLiteral("maxZ"), info.extent->maxZ}};
    }
    return {{QStringLiteral("nodes"), info.nodes},
            {QStringLiteral("sections"), info.sections},
            {QStringLiteral("laterals"), info.laterals},
            {QStringLiteral("inspections"), info.inspections},
            {QStringLiteral("observations"), info.observations},
            {QStringLiteral("nodeTypes"), types},
            {QStringLiteral("crs"), info.crs.isEmpty() ? QJsonValue() : QJsonValue(info.crs)},
            {QStringLiteral("extent"), extent}};
}

QString toText(const ProjectInfo& info)
{
    QString text;
    QTextStream out(&text);
    out << "nodes         " << info.nodes << '\n';
    for (auto type = info.nodeTypes.begin(); type != info.nodeTypes.end(); ++type)
        out << "  " << (type.key().isEmpty() ? QStringLiteral("(no type)") : type.key()).leftJustified(12)
            << type.value() << '\n';
    out << "sections      " << info.sections << '\n';
    out << "laterals      " << info.laterals << '\n';
    out << "inspections   " << info.inspections << '\n';
    out << "observations  " << info.observations << '\n';
    out << "crs           " << (info.crs.isEmpty() ? QStringLiteral("none") : info.crs) << '\n';
    if (info.extent) {
        out << "extent        x " << metres(info.extent->minX) << " to " << metres(info.extent->maxX) << '\n';
        out << "              y " << metres(info.extent->minY) << " to " << metres(info.extent->maxY) << '\n';
        out << "              z " << metres(info.extent->minZ) << " to " << metres(info.extent->maxZ) << '\n';
    } else {
        out << "extent        none\n";
    }
    return text;
}

QString crsName(const QString& wkt)
{
    const QString prefix = QStringLiteral("WKT:");
    const QString text = wkt.startsWith(prefix) ? wkt.mid(prefix.size()) : wkt;
    OGRSpatialReference system;
    if (text.isEmpty() || system.SetFromUserInput(text.toUtf8().constData()) != OGRERR_NONE)
        return {};
    const char* authority = system.GetAuthorityName(nullptr);
    const char* code = system.GetAuthorityCode(nullptr);
    if (authority && code)
        return QStringLiteral("%1:%2").arg(QString::fromUtf8(authority), QString::fromUtf8(code));
    return QString::fromUtf8(system.GetName());
}

} // namespace Torvik::Viewer
