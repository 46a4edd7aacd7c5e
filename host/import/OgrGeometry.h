#pragma once

#include "host/import/NetworkModel.h"

class OGRGeometry;

/** Points out of GDAL's geometries. */
namespace Torvik::Import::OgrShapes {

/** A point, or the middle of anything else; none for an empty geometry. */
std::optional<Point> pointOf(const OGRGeometry* geometry);
/** The line of a line string or curve; parts of a multi line string are joined where they meet. Empty, with a reason,
 * for what is no line. */
QVector<Point> lineOf(const OGRGeometry* geometry, QString* reason);

} // namespace Torvik::Import::OgrShapes
