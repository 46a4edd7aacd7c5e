#pragma once

#include <QDateTime>
#include <QString>
#include <QVector3D>

/** Texts of the statements by which a running measurement is read and written. One row of SECMES is a measurement, one
 *  row of SECMP a point of it. Values stand in the text, strings in double quotes. */
namespace Torvik::View3d::MeasurementStatements {

QString findMeasurement(const QString& inspectionId);
QString createMeasurement(const QString& key, const QString& inspectionId, const QDateTime& at);
QString readPoints(const QString& key);
/** Moves the points from this number on up by one. */
QString makeRoom(int sortOrder, const QString& key);
QString addPoint(const QString& pointKey, const QString& key, const QVector3D& point, int sortOrder,
                 const QDateTime& at);
/** `line` is the inside of the line string. */
QString storeLine(const QString& line, const QString& key);
/** The same, put behind a text whose room may serve again. */
void appendStoreLine(QString& statement, const QString& line, const QString& key);
/** The points with numbers from `first` up to, but not including, `last`. */
QString deletePoints(int first, int last, const QString& key);
/** Moves the points from `last` on down by `count`. */
QString closeGap(int count, int last, const QString& key);

} // namespace Torvik::View3d::MeasurementStatements
