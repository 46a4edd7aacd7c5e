#pragma once

#include "host/domain/BulkWriter.h"
#include "host/import/AssembledProject.h"

namespace Torvik::Import {

/** Writes an assembled network as a new project. */
class ProjectWriter {
public:
    /** Makes the project's folder, which must not exist or be empty. It is built aside and moved into place at the end:
     * a failure leaves nothing behind. Returns the error, empty when all went well.
     *  @param name  of the project, as the user sees it */
    static QString write(const AssembledProject& project, const QString& folder, const QString& name);
    /** Adds one observation to an inspection that is there or has just been written. */
    static Database::StoreStatus insert(Database::BulkWriter& writer, const ObservationRow& row);
};

} // namespace Torvik::Import
