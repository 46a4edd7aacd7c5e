#pragma once

#include "host/drawing/DxfCensus.h"

#include <QString>

#include <map>
#include <string>
#include <vector>

namespace Torvik::DXF {

/** What of a drawing's model did not come through. */
struct DrawingLosses {
    std::map<std::string, int> lost;       ///< entities that should have been drawn, by kind
    std::map<std::string, int> passedOver; ///< kinds that are never drawn, and blocks without contents
    int lostAtLeast = 0;                   ///< also counts what cannot be told by kind
};

/** Holds the features that were read against the entities in the text. Most files number their entities: `seen` are the
 *  numbers (handles) on the features. What has no number can only be counted. */
DrawingLosses findLosses(const DxfCensus& census, std::vector<unsigned long long> seen, int features);

/** "3 RAY, 1 WIPEOUT" */
QString listed(const std::map<std::string, int>& counts);

} // namespace Torvik::DXF
