#pragma once

#include "domain/boundary/CProjectObject.h"

#include <QJsonObject>
#include <QMap>

#include <optional>

namespace Torvik::Viewer {

/** What a project holds, counted from its objects. */
struct ProjectInfo {
    /** Smallest box around all stored shapes, in the project's coordinate system. */
    struct Extent {
        double minX, minY, minZ, maxX, maxY, maxZ;
    };

    int nodes = 0;
    int sections = 0;
    int laterals = 0;
    int inspections = 0;
    int observations = 0;
    /** OBJ_Type to the number of nodes that bear it. */
    QMap<QString, int> nodeTypes;
    /** "EPSG:25832", or the system's name where it has no code; empty without a system. */
    QString crs;
    std::optional<Extent> extent;
};

ProjectInfo collectInfo(const Database::CProjectObject& project);

/** Keys nodes, sections, laterals, inspections, observations, nodeTypes, crs, extent (minX to maxZ); null for what the
 *  project does not tell. */
QJsonObject toJson(const ProjectInfo& info);
/** Lines for people. */
QString toText(const ProjectInfo& info);

/** Authority and code of a coordinate system given as WKT (with or without "WKT:" in front), else its name. */
QString crsName(const QString& wkt);

} // namespace Torvik::Viewer
