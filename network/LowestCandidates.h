#pragma once

#include <cmath>
#include <limits>
#include <set>
#include <unordered_map>

namespace Torvik::View3d {

/** The lowest of many heights, each of which has an owner and may change or go: every operation costs the logarithm of
 *  their number at most. */
template <typename Owner>
class LowestCandidates {
public:
    /** A height that is no number does not count. */
    void set(Owner owner, float height)
    {
        if (std::isnan(height)) {
            remove(owner);
            return;
        }
        const auto [place, isNew] = m_byOwner.try_emplace(owner);
        if (!isNew) {
            if (*place->second == height)
                return;
            m_heights.erase(place->second);
        }
        place->second = m_heights.insert(height);
    }

    void remove(Owner owner)
    {
        const auto place = m_byOwner.find(owner);
        if (place == m_byOwner.end())
            return;
        m_heights.erase(place->second);
        m_byOwner.erase(place);
    }

    void clear()
    {
        m_heights.clear();
        m_byOwner.clear();
    }

    /** The largest float where there is none. */
    float lowest() const
    {
        constexpr float none = std::numeric_limits<float>::max();
        return m_heights.empty() ? none : std::fmin(*m_heights.begin(), none);
    }

private:
    std::multiset<float> m_heights;
    std::unordered_map<Owner, std::multiset<float>::iterator> m_byOwner;
};

} // namespace Torvik::View3d
