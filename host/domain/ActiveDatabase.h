#pragma once

#include <QString>

/** The database file of the active project, for statements of their own. Any thread. */
namespace Torvik::Database::ActiveDatabase {

/** Empty without an active project. */
QString file();
void setFile(const QString& file);

} // namespace Torvik::Database::ActiveDatabase
