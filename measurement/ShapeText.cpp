#include "measurement/ShapeText.h"

#include <algorithm>
#include <limits>

namespace Torvik::View3d::ShapeText {

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
