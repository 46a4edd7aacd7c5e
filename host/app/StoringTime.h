#pragma once

namespace Torvik::Viewer {

/** A change on the screen is stored 750 ms after its end at the latest is known, and 700 ms later written. */
constexpr int untilEverythingIsStoredMs = 750 + 700 + 150;

} // namespace Torvik::Viewer
