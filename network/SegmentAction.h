#pragma once

namespace Torvik::View3d {

/** What has to happen to a chain so that a segment begins at a distance. */
struct SegmentAction {
    enum Action : int {
        AddAtChainEnd = 0,  ///< the distance lies at or behind the end; index -1, remaining what is left there
        UseNextSegment = 1, ///< it falls on the joint behind segment `index`, which is not the last
        SplitSegment = 2    ///< it falls inside segment `index`
    };

    int action = AddAtChainEnd;
    int index = -1;
    float remaining = 0.0F; ///< metres from the begin of segment `index`
    float distance = 0.0F;  ///< the distance that was asked for
};

} // namespace Torvik::View3d
