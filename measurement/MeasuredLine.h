#pragma once

#include <QString>
#include <QVector3D>
#include <QVector>

namespace Torvik::View3d {

/** An ordinate as the database gets it: six significant digits. */
QString ordinateText(float value);

/** The points of a measurement in their order, kept as the text that they are written as: the whole line is written
 *  anew with each point, and putting it together again would cost the caller most of its time. */
class MeasuredLine {
public:
    int count() const { return m_lengths.size(); }
    void clear();
    void reserve(int count) { m_lengths.reserve(count); }

    /** A place behind the end, or before the begin, leaves the line alone. */
    void insert(int index, const QVector3D& point);
    /** Whether a range up to, but not including, `last` may be taken out. One past the end may. */
    bool mayRemove(int last) const { return count() >= last - 1; }
    /** Takes out the points from `first` up to, but not including, `last`, as far as they are there. */
    void remove(int first, int last);

    /** The inside of a WKT line string, "x y z m, x y z m". The m value is that of every measured point. */
    const QString& text() const { return m_text; }

private:
    /** Where a point's text begins; for the one behind the last, where it would. */
    int placeOf(int index) const;

    QString m_text;
    QVector<int> m_lengths; ///< of each point's text
};

} // namespace Torvik::View3d
