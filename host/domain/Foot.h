#pragma once

namespace Torvik {

/** The international foot, in which imperial projects measure. */
constexpr double metresPerFoot = 0.3048;

} // namespace Torvik
