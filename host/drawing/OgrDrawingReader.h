#pragma once

#include "host/drawing/Drawing.h"
#include "host/drawing/DrawingFile.h"
#include "host/drawing/DrawingLosses.h"

#include <atomic>
#include <memory>

namespace Torvik::DXF {

/** What GDAL made of a file. */
struct DrawingRead {
    DrawingProblem problem = DrawingProblem::None;
    Drawing drawing;
    DrawingLosses losses;
    int features = 0;
    int hidden = 0;    ///< features on layers that are frozen or off
    int inPaper = 0;   ///< features of sheets, which are no part of the plan
    QString complaint; ///< GDAL's last error
};

/** Reads a file that inspectDrawing() found nothing wrong with. Any thread but one that minds waiting; once `cancelled`
 *  is set it returns as soon as GDAL next reads from the file or hands out a feature. */
DrawingRead readDrawing(const QString& path, const DrawingFile& file,
                        const std::shared_ptr<const std::atomic<bool>>& cancelled);

} // namespace Torvik::DXF
