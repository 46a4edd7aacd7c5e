#pragma once

#include "host/drawing/Drawing.h"

class OGRGeometry;

namespace Torvik::DXF {

/** Adds a geometry's lines, fills and points. Curves become chords. `fill` also fills polygons, otherwise they are
 *  drawn by their rings; faces of a surface in space always are. Null adds nothing. */
void addGeometry(Drawing& drawing, const OGRGeometry* geometry, DrawingColour colour, bool fill);

} // namespace Torvik::DXF
