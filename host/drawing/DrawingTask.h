#pragma once

#include "host/drawing/DrawingJournal.h"
#include "host/drawing/DrawingMeshes.h"

#include <atomic>
#include <memory>

namespace Torvik::DXF {

/** A file on its way to meshes: inspected, read, judged and reported. */
struct DrawingResult {
    DrawingReport report;
    DrawingMeshes meshes;
};

/** Does all of the reading on the calling thread, and touches no entity. */
DrawingResult readToMeshes(const QString& path, const std::shared_ptr<const std::atomic<bool>>& cancelled);

} // namespace Torvik::DXF
