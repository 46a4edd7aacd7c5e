#pragma once

#include "host/drawing/Drawing.h"

#include <QString>

namespace Torvik::DXF {

/** Where and how large a text stands. */
struct TextPlace {
    DrawingPoint at;
    double height = 1.0; ///< of a capital letter
    double angleDeg = 0.0;
    double widthFactor = 1.0;
    int anchor = 1; ///< as in DrawingStyle
};

/** Draws the text in letters of single strokes, as plotters do: a handful of segments a letter, so that thousands of
 *  names stay light. A letter with a mark that the font lacks loses the mark; what it lacks altogether is a box. */
void addText(Drawing& drawing, const QString& text, const TextPlace& place, DrawingColour colour);

/** With the signs in their places that a DXF tells by their number, as "\U+00FC". */
QString withoutNumbers(const QString& text);

/** Width of a line of text, as a multiple of the letters' height. */
double widthOfText(const QString& line);

} // namespace Torvik::DXF
