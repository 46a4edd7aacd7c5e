#pragma once

#include "domain/boundary/CProjectObject.h"
#include "host/domain/SqlConnection.h"

#include <functional>

namespace Torvik::Database {

/** Told now and then how many of how many rows have been read, on the thread that reads. */
using LoadProgress = std::function<void(int done, int total)>;

/** Reads all objects of a project. On any thread; the project that comes out is not yet connected to its database. */
namespace ProjectLoader {

/** Null with an error naming file and cause. `folder` becomes the project's path. */
QSharedPointer<CProjectObject> load(const SqlConnection& connection, const QString& folder, StoreStatus& status,
                                    const LoadProgress& progress);

} // namespace ProjectLoader

} // namespace Torvik::Database
