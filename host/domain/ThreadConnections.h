#pragma once

#include "host/domain/SqlConnection.h"

/** Connections for single statements: each thread keeps its own to the databases it uses. They are closed by release()
 *  and with the thread. */
namespace Torvik::Database::ThreadConnections {

/** The calling thread's connection to the file; null with an error. */
const SqlConnection* get(const QString& file, StoreStatus& status);
/** Closes those of the calling thread. */
void release();

} // namespace Torvik::Database::ThreadConnections
