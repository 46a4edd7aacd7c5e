#pragma once

#include "host/domain/SqlConnection.h"

/** Whether a file is a project's database that this version can work with. Touches nothing on the disk. */
namespace Torvik::Database::DatabaseCheck {

/** From the first bytes of the file alone: that it is a whole SQLite database, a project's, and not newer than us. */
StoreStatus header(const QString& file);
/** That file and folder may be written. A file without any permission to write counts as read-only for everyone. */
StoreStatus writable(const QString& file);
/** Whether the database's pages hang together. */
StoreStatus content(const QString& file);
/** What read-only access the file allows: a folder that cannot be written to gets one that needs no help files. */
SqlConnection::Access readAccess(const QString& file);

} // namespace Torvik::Database::DatabaseCheck
