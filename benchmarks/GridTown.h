#pragma once

#include <QString>

namespace Torvik::Bench {

/** Makes a project of a town on a square grid, in a folder that is not there yet: streets that fall towards a collector
 *  along the first column, a manhole at every crossing, one pipe from each manhole but the last to the next one down,
 *  and one inspection of each pipe whose stored shape has one, two or three segments in turn.
 *  @return why it failed; empty when it went well */
QString makeGridTown(const QString& folder, int pipes);

} // namespace Torvik::Bench
