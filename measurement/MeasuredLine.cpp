#include "measurement/MeasuredLine.h"

#include <algorithm>

namespace Torvik::View3d {

namespace {

/** Source Geosensor (32) and direction upstream (128). */
const QString flagsOfMeasuredPoint = QStringLiteral("160");
const QString separator = QStringLiteral(", ");

} // namespace

QString ordinateText(float value)
{
    return QString::number(double(value), 'g', 6);
}

void MeasuredLine::clear()
{
    m_text.clear();
    m_lengths.clear();
}

void MeasuredLine::insert(int index, const QVector3D& point)
{
    if (index < 0 || index > count())
        return;
    const QString text = ordinateText(point.x()) + QLatin1Char(' ') + ordinateText(point.y()) + QLatin1Char(' ') +
                         ordinateText(point.z()) + QLatin1Char(' ') + flagsOfMeasuredPoint;
    if (index < count())
        m_text.insert(placeOf(index), text + separator);
    else
        m_text.append(m_lengths.isEmpty() ? text : separator + text);
    m_lengths.insert(index, text.size());
}

void MeasuredLine::remove(int first, int last)
{
    const int begin = std::clamp(first, 0, count());
    const int end = std::clamp(last, begin, count());
    if (begin == end)
        return;
    const int place = placeOf(begin);
    m_text.remove(place, placeOf(end) - place);
    if (end == count())
        m_text.chop(separator.size());
    m_lengths.erase(m_lengths.begin() + begin, m_lengths.begin() + end);
}

int MeasuredLine::placeOf(int index) const
{
    int place = 0;
    for (int i = 0; i < index; ++i)
        place += m_lengths[i] + separator.size();
    return place;
}

} // namespace Torvik::View3d
