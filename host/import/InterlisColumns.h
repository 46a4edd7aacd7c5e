#pragma once

#include <QByteArray>
#include <QString>

/** INTERLIS 2 transfer files without their model. GDAL then learns the columns of a class from its first object alone,
 * and what only later objects have is lost. The remedy is a first object that has them all. */
namespace Torvik::Import::InterlisColumns {

/** TID of the objects that were put in front; they are no data. */
inline const QString PatternTid = QStringLiteral("columns-of-the-class");

/** The transfer with a pattern object in front of the first object of every class, made of the first occurrence of each
 * of the class's attributes. Empty for what is no INTERLIS 2 transfer. */
QByteArray withAllColumns(const QByteArray& transfer);

} // namespace Torvik::Import::InterlisColumns
