#pragma once

#include "network/ChainMath.h"

#include <QVector>

namespace Torvik::View3d {

/** The lengths of a chain's segments, with what it takes to find a distance in a chain of thousands: while a sensor
 *  measures, everything that stands on the pipe asks for its place with each reading.
 *
 *  Sums are those of ChainMath, float by float. The lengths are kept in blocks, and a distance is reduced by whole
 * blocks first; a chain within one block gives what ChainMath::placeAtDistance() gives, a longer one the same but for
 *  rounding. */
class ChainLengths {
public:
    int count() const { return m_lengths.size(); }
    void append(float length);
    void insert(int index, float length);
    void remove(int index);
    void set(int index, float length);

    float total() const { return before(count()); }
    /** Sum of the lengths before the segment. */
    float before(int index) const;
    ChainMath::Place placeAtDistance(float distance) const;

    static constexpr int blockSize = 128;

private:
    struct Block {
        float before = 0.0F; ///< sum of all that lies before it
        float own = 0.0F;    ///< sum of its own
    };

    void changedFrom(int index);
    /** Makes the blocks that are whole and have changed. */
    void refreshBlocks() const;

    QVector<float> m_lengths;
    mutable QVector<Block> m_blocks; ///< the first of those that are whole
};

} // namespace Torvik::View3d
