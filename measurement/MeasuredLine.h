#pragma once

#include <QString>
#include <QStringList>
#include <QVector3D>

namespace Torvik::View3d {

/** An ordinate as the database gets it: six significant digits. */
QString ordinateText(float value);

/** The points of a measurement in their order. They are kept as the texts that they are written as: the whole line is
 *  written anew with each point, and forming all numbers again would cost the caller most of its time. */
class MeasuredLine {
public:
    int count() const { return m_points.size(); }
    void clear() { m_points.clear(); }
    void reserve(int count) { m_points.reserve(count); }

    /** A place behind the end, or before the begin, leaves the line alone. */
    void insert(int index, const QVector3D& point);
    /** Whether a range up to, but not including, `last` may be taken out. One past the end may. */
    bool mayRemove(int last) const { return count() >= last - 1; }
    /** Takes out the points from `first` up to, but not including, `last`, as far as they are there. */
    void remove(int first, int last);

    /** The inside of a WKT line string, "x y z m, x y z m". The m value is that of every measured point. */
    QString text() const;

private:
    QStringList m_points;
};

} // namespace Torvik::View3d
