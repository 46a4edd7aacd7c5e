#include "domain/boundary/WktPoint.h"

#include "host/domain/WktShapeReader.h"

#include <QStringList>

#include <cmath>

namespace Torvik::Database {

namespace {

QString ordinateOrZero(const QString& ordinate)
{
    return ordinate.trimmed().isEmpty() ? QStringLiteral("0") : ordinate;
}

QString vertexText(const WktPoint& point)
{
    return ordinateOrZero(point.x()) + QLatin1Char(' ') + ordinateOrZero(point.y()) + QLatin1Char(' ') +
           ordinateOrZero(point.z()) + QLatin1Char(' ') + ordinateOrZero(point.m());
}

bool isFiniteNumber(const QString& text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok && std::isfinite(value);
}

} // namespace

const QString ShapeWKTHelper::WKT_POINT_PREFIX = QStringLiteral("POINT ZM");
const QString ShapeWKTHelper::WKT_LINESTRING_PREFIX = QStringLiteral("LINESTRING ZM");

WktPoint::WktPoint(const QString& wkt)
    : WktPoint(WktShapeReader::firstPoint(wkt))
{
}

WktPoint::WktPoint(const QString& x, const QString& y, const QString& z, const QString& m)
    : m_x(x)
    , m_y(y)
    , m_z(z)
    , m_m(m)
{
}

QString WktPoint::toWktString() const
{
    return QStringLiteral("POINT ZM(") + vertexText(*this) + QLatin1Char(')');
}

bool ShapeWKTHelper::hasPosition(const QString& wkt)
{
    const WktPoint point(wkt);
    return isFiniteNumber(point.x()) && isFiniteNumber(point.y());
}

void ShapeWKTHelper::wktStringToWktPoints(const QString& wkt, QVector<WktPoint>& points, QString& prefix)
{
    const WktShape shape = WktShapeReader::read(wkt);
    points += shape.points;
    prefix = shape.keyword.isEmpty() ? QString() : shape.keyword + QStringLiteral(" ZM");
}

QString ShapeWKTHelper::toWktShape(const QVector<WktPoint>& points, const QString& prefix)
{
    if (points.isEmpty()) {
        return QStringLiteral("EMPTY");
    }
    QStringList vertices;
    vertices.reserve(points.size());
    for (const WktPoint& point : points) {
        vertices.append(vertexText(point));
    }
    return prefix + QLatin1Char('(') + vertices.join(QLatin1Char(',')) + QLatin1Char(')');
}

QVector<QString> WktParser::parseWkt(const QString& wkt)
{
    return WktShapeReader::parts(wkt);
}

QString WktParser::toMultiWkt(const QVector<QString>& parts)
{
    if (parts.isEmpty()) {
        return {};
    }
    if (parts.size() == 1) {
        return parts.first();
    }
    return QStringLiteral("GEOMETRYCOLLECTION ZM(") + QStringList(parts.toList()).join(QLatin1Char(',')) +
           QLatin1Char(')');
}

} // namespace Torvik::Database
