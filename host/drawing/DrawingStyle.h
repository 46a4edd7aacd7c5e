#pragma once

#include "host/drawing/Drawing.h"

#include <string>

namespace Torvik::DXF {

/** How GDAL wants a feature drawn: the first tool of its style string. */
struct DrawingStyle {
    enum Tool { None, Pen, Brush, Label };

    Tool tool = None;
    DrawingColour colour = colourOf(0, 0, 0);
    bool hidden = false; ///< of no opacity: what lies on a layer that is frozen or off

    // Of a label
    std::string text;
    double height = 0.0;   ///< in the drawing's unit
    double angleDeg = 0.0; ///< counterclockwise
    double width = 100.0;  ///< of a letter, in percent
    double dx = 0.0;
    double dy = 0.0;
    int anchor = 1; ///< 1 to 3 on the base line, from 4 in the middle, from 7 at the top, from 10 at the bottom
};

/** Bad text gives what could be read of it. Null is a style without a tool. */
DrawingStyle parseStyle(const char* text);

} // namespace Torvik::DXF
