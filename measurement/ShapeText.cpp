#include "measurement/ShapeText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Torvik::View3d::ShapeText {

namespace {

/** What the scene's floats may change in an ordinate, a few kilometres from the scene's origin. */
constexpr double sameOrdinate = 0.0005;
/** A chain keeps its lengths in whole centimetres, so its points come back up to half of one away. */
constexpr double sameOrdinateOfChain = 0.005 + sameOrdinate;

bool samePoint(const Database::WktPoint& a, const Database::WktPoint& b, double tolerance)
{
    const auto close = [tolerance](const QString& one, const QString& other) {
        bool oneIsNumber = false;
        bool otherIsNumber = false;
        const double distance = std::abs(one.toDouble(&oneIsNumber) - other.toDouble(&otherIsNumber));
        return oneIsNumber && otherIsNumber && distance <= tolerance;
    };
    return close(a.x(), b.x()) && close(a.y(), b.y()) && close(a.z(), b.z());
}

bool samePolyline(const QString& a, const QString& b)
{
    QVector<Database::WktPoint> pointsA;
    QVector<Database::WktPoint> pointsB;
    QString prefixA;
    QString prefixB;
    Database::ShapeWKTHelper::wktStringToWktPoints(a, pointsA, prefixA);
    Database::ShapeWKTHelper::wktStringToWktPoints(b, pointsB, prefixB);
    const double tolerance = pointsA.size() > 1 ? sameOrdinateOfChain : sameOrdinate;
    return !pointsA.isEmpty() && flagsWord(pointsA) == flagsWord(pointsB) &&
           std::equal(pointsA.begin(), pointsA.end(), pointsB.begin(), pointsB.end(),
                      [tolerance](const auto& one, const auto& other) { return samePoint(one, other, tolerance); });
}

} // namespace

int flagsWord(const QVector<Database::WktPoint>& points)
{
    if (points.isEmpty())
        return 0;
    const double value = points.first().m().toDouble();
    // A stored text may hold any number; only those of an int can be cut off to one.
    const bool fits =
        value > double(std::numeric_limits<int>::min()) - 1.0 && value < double(std::numeric_limits<int>::max()) + 1.0;
    return fits ? static_cast<int>(value) : 0;
}

int flagsWordOfSection(int transformFlags, int firstDirection, int direction)
{
    return transformFlags | (firstDirection != 0 ? firstDirection : direction);
}

QVector<Database::WktPoint> reversed(QVector<Database::WktPoint> points)
{
    std::reverse(points.begin(), points.end());
    return points;
}

bool sameShape(const QString& stored, const QString& text)
{
    const auto storedParts = Database::WktParser::parseWkt(stored);
    const auto parts = Database::WktParser::parseWkt(text);
    return !parts.isEmpty() &&
           std::equal(storedParts.begin(), storedParts.end(), parts.begin(), parts.end(), samePolyline);
}

Writer::Writer(const QString& prefix)
    : m_prefix(prefix)
{
}

void Writer::add(QVector<Database::WktPoint> points, int flags)
{
    if (!points.isEmpty())
        points.first().setM(QString::number(flags));
    const QString shape = Database::ShapeWKTHelper::toWktShape(points, m_prefix);
    if (shape.trimmed() != QLatin1String("EMPTY"))
        m_shapes.append(shape);
}

QString Writer::text() const
{
    return Database::WktParser::toMultiWkt(m_shapes);
}

} // namespace Torvik::View3d::ShapeText
