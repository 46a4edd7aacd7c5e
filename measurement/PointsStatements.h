#pragma once

#include <QDateTime>
#include <QString>
#include <QVector3D>

/** Texts of the statements by which a whole shape is moved into the tables of measurements and inspections, and back.
 *  They differ from those of a running measurement where a name suggests the same: y is stored as a text here, and type
 *  and method of a measurement stand the other way round. */
namespace Torvik::View3d::PointsStatements {

QString readLine(const QString& inspectionId);
QString writeLine(const QString& text, const QString& key);
QString findMeasurement(const QString& inspectionId);
QString createMeasurement(const QString& key, const QString& jobId, const QString& inspectionId, const QDateTime& at);
QString addPoint(const QString& pointKey, const QString& key, const QVector3D& point, int sortOrder,
                 const QDateTime& at);
QString removePoints(const QString& key);
QString readShape(const QString& inspectionId);
QString writeShape(const QString& text, const QString& inspectionId);

} // namespace Torvik::View3d::PointsStatements
