#pragma once

#include <QByteArray>
#include <QString>

namespace Torvik::Database::WholeFile {

/** Writes a file whole, or leaves what was there before. What is no file, such as a pipe or a device, is written to as
 * it is. Gives the error as a line for the user, empty when all of it has been written. */
QString write(const QString& path, const QByteArray& content);

} // namespace Torvik::Database::WholeFile
