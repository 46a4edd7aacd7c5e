#include "measurement/MeasuredLine.h"

#include <algorithm>

namespace Torvik::View3d {

namespace {

/** Source Geosensor (32) and direction upstream (128). */
const QString flagsOfMeasuredPoint = QStringLiteral("160");

} // namespace

QString ordinateText(float value)
{
    return QString::number(double(value), 'g', 6);
}

void MeasuredLine::insert(int index, const QVector3D& point)
{
    if (index < 0 || index > count())
        return;
    m_points.insert(index, ordinateText(point.x()) + QLatin1Char(' ') + ordinateText(point.y()) + QLatin1Char(' ') +
                               ordinateText(point.z()) + QLatin1Char(' ') + flagsOfMeasuredPoint);
}

void MeasuredLine::remove(int first, int last)
{
    const int begin = std::clamp(first, 0, count());
    const int end = std::clamp(last, begin, count());
    m_points.erase(m_points.begin() + begin, m_points.begin() + end);
}

QString MeasuredLine::text() const
{
    return m_points.join(QStringLiteral(", "));
}

} // namespace Torvik::View3d
