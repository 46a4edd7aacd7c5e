#pragma once

#include <QByteArray>

namespace Torvik::Bench {

/** A town's plan in DXF of about so many bytes and never more: buildings, streets, texts, points and trees as blocks,
 * in map coordinates. The same bytes at each call. */
QByteArray generatedPlan(int bytes);
/** So many straight segments of 2 to 12 m in 20 colours, spread over a square of 2 km around the origin. */
QByteArray generatedSegments(int count);

} // namespace Torvik::Bench
