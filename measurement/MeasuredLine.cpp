#include "measurement/MeasuredLine.h"

#include <algorithm>

namespace Torvik::View3d::MeasuredLine {

namespace {

/** Source Geosensor (32) and direction upstream (128). */
const QString flagsOfMeasuredPoint = QStringLiteral("160");
const QString separator = QStringLiteral(", ");

} // namespace

QString ordinateText(float value)
{
    return QString::number(double(value), 'g', 6);
}

QString text(const QVector<QVector3D>& points)
{
    QString line;
    for (const QVector3D& point : points)
        line += ordinateText(point.x()) + QLatin1Char(' ') + ordinateText(point.y()) + QLatin1Char(' ') +
                ordinateText(point.z()) + QLatin1Char(' ') + flagsOfMeasuredPoint + separator;
    line.chop(separator.size());
    return line;
}

void insert(QVector<QVector3D>& points, int index, const QVector3D& point)
{
    if (index >= 0 && index <= points.size())
        points.insert(index, point);
}

bool mayRemove(int count, int last)
{
    return count >= last - 1;
}

void remove(QVector<QVector3D>& points, int first, int last)
{
    const int begin = std::clamp(first, 0, points.size());
    const int end = std::clamp(last, begin, points.size());
    points.remove(begin, end - begin);
}

} // namespace Torvik::View3d::MeasuredLine
