#pragma once

#include "domain/boundary/WktPoint.h"

#include <QVector>

namespace Torvik::Database {

/** One single shape out of a WKT text. */
struct WktShape {
    QString keyword; ///< in capitals and without dimensions: "POINT", "LINESTRING"
    QVector<WktPoint> points;
};

/** Reads WKT as it comes from users and other programs: any case, blanks anywhere, with or without Z and M, an
 *  "SRID=...;" in front, single and multiple shapes, nested collections, a missing closing bracket.
 *  Pure functions; any thread. */
namespace WktShapeReader {

/** The single shapes of a text as texts, in order. Members of a collection stay as they are written, members of a
 *  multiple shape get the keyword of the single one. A blank text and an empty collection have none; a text that is no
 *  WKT is its own only part. */
QVector<QString> parts(const QString& wkt);

/** The points of all shapes of a text; a polygon counts as its rings. A vertex needs numbers for x and y to count;
 *  ordinates that are not there stay empty. */
WktShape read(const QString& wkt);

/** The first vertex as it is written, also out of a bare "1 2 3 4". */
WktPoint firstPoint(const QString& wkt);

} // namespace WktShapeReader

} // namespace Torvik::Database
