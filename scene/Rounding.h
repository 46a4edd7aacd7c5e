#pragma once

#include <cmath>

namespace Torvik::View3d {

/** Metres rounded to centimetres, halves away from zero; computed in double. */
inline float roundToCentimetres(float metres)
{
    return static_cast<float>(std::round(static_cast<double>(metres) * 100.0) / 100.0);
}

} // namespace Torvik::View3d
