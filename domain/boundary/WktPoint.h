#pragma once

#include <QString>
#include <QVector>

namespace Torvik::Database {

/** A point of a stored shape: four ordinates as text, in the project's coordinate system.
 *  x is the easting, y the northing, z the height, m a set of flags that tells where the position comes from. */
class WktPoint {
public:
    /** Bits of TransformFlags. */
    using MeasurementType = int;

    WktPoint() = default;
    /** Takes the first point out of a WKT text: "POINT ZM(1 2 3 4)", but also a line string or a bare "1 2 3 4".
     *  What is not there stays an empty text. */
    explicit WktPoint(const QString& wkt);
    WktPoint(const QString& x, const QString& y, const QString& z, const QString& m);

    QString x() const { return m_x; }
    QString y() const { return m_y; }
    QString z() const { return m_z; }
    QString m() const { return m_m; }
    void setM(const QString& m) { m_m = m; }

    /** The point as WKT text, "POINT ZM(x y z m)"; an ordinate without a value is written as 0. */
    QString toWktString() const;

private:
    QString m_x;
    QString m_y;
    QString m_z;
    QString m_m;
};

/** Single shapes as text. */
class ShapeWKTHelper {
public:
    static const QString WKT_POINT_PREFIX;      ///< "POINT ZM"
    static const QString WKT_LINESTRING_PREFIX; ///< "LINESTRING ZM"

    /** True when the text holds a first point with a horizontal position (x and y are numbers). */
    static bool hasPosition(const QString& wkt);
    /** Appends the points of one shape to `points` and puts its keyword into `prefix`. */
    static void wktStringToWktPoints(const QString& wkt, QVector<WktPoint>& points, QString& prefix);
    /** "PREFIX(x y z m,x y z m)"; without points the text "EMPTY". */
    static QString toWktShape(const QVector<WktPoint>& points, const QString& prefix);
};

/** Shapes made of several single shapes. */
class WktParser {
public:
    /** Parts of a stored text: the members of a GEOMETRYCOLLECTION, or the text itself as the only part. */
    static QVector<QString> parseWkt(const QString& wkt);
    /** Reverse of parseWkt: one part stands by itself, none gives an empty text. */
    static QString toMultiWkt(const QVector<QString>& parts);
};

} // namespace Torvik::Database
