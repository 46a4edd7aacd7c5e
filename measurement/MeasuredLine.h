#pragma once

#include <QString>
#include <QVector3D>
#include <QVector>

/** The points of a measurement in their order, as functions of values. */
namespace Torvik::View3d::MeasuredLine {

/** An ordinate as the database gets it: six significant digits. */
QString ordinateText(float value);

/** The points as the inside of a WKT line string, "x y z m, x y z m". The m value is that of every measured point. */
QString text(const QVector<QVector3D>& points);

/** A place behind the end of the list, or before its begin, leaves it alone. */
void insert(QVector<QVector3D>& points, int index, const QVector3D& point);

/** Whether a range up to, but not including, `last` may be taken out of `count` points. One past the end may. */
bool mayRemove(int count, int last);

/** Takes out the points from `first` up to, but not including, `last`, as far as they are there. */
void remove(QVector<QVector3D>& points, int first, int last);

} // namespace Torvik::View3d::MeasuredLine
