#include "network/ChainLengths.h"

#include <algorithm>

namespace Torvik::View3d {

void ChainLengths::append(float length)
{
    m_lengths.append(length);
}

void ChainLengths::insert(int index, float length)
{
    m_lengths.insert(index, length);
    changedFrom(index);
}

void ChainLengths::remove(int index)
{
    m_lengths.remove(index);
    changedFrom(index);
}

void ChainLengths::set(int index, float length)
{
    m_lengths[index] = length;
    changedFrom(index);
}

void ChainLengths::changedFrom(int index)
{
    m_blocks.resize(std::min(m_blocks.size(), index / blockSize));
}

void ChainLengths::refreshBlocks() const
{
    for (int block = m_blocks.size(); (block + 1) * blockSize <= count(); ++block) {
        Block sums;
        // In one go from the begin of the chain: each sum is rounded as if all were added one by one.
        if (block > 0) {
            sums.before = m_blocks[block - 1].before;
            for (int i = (block - 1) * blockSize; i < block * blockSize; ++i)
                sums.before += m_lengths[i];
        }
        for (int i = block * blockSize; i < (block + 1) * blockSize; ++i)
            sums.own += m_lengths[i];
        m_blocks.append(sums);
    }
}

float ChainLengths::before(int index) const
{
    refreshBlocks();
    const int block = std::min(index / blockSize, m_blocks.size() - 1);
    float sum = block < 0 ? 0.0F : m_blocks[block].before;
    for (int i = std::max(block, 0) * blockSize; i < index; ++i)
        sum += m_lengths[i];
    return sum;
}

ChainMath::Place ChainLengths::placeAtDistance(float distance) const
{
    refreshBlocks();
    int index = 0;
    for (const Block& block : qAsConst(m_blocks)) {
        if (block.own > distance || index + blockSize >= count())
            break;
        distance -= block.own;
        index += blockSize;
    }
    for (; index < count(); ++index) {
        if (m_lengths[index] > distance)
            return {index, distance};
        distance -= m_lengths[index];
    }
    return {-1, distance};
}

} // namespace Torvik::View3d
