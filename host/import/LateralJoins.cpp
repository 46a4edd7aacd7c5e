#include "host/import/LateralJoins.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace Torvik::Import::LateralJoins {

namespace {

constexpr double SameDistanceM = 0.1;
constexpr int HoursOnTheDial = 12;
/** What an unknown clock counts: worse than the neighbouring hour, better than the other side. */
constexpr int UnknownClockHours = 2;

struct Pair {
    double apart;
    int hours;
    int connection;
    int join;
};

int hoursApart(const std::optional<int>& a, const std::optional<int>& b)
{
    if (!a || !b)
        return UnknownClockHours;
    const int hours = std::abs(*a - *b) % HoursOnTheDial;
    return std::min(hours, HoursOnTheDial - hours);
}

} // namespace

QVector<int> match(const QVector<Connection>& connections, const QVector<Join>& joins, double tolerance)
{
    QVector<Pair> pairs;
    for (int c = 0; c < connections.size(); ++c) {
        for (int j = 0; j < joins.size(); ++j) {
            const double apart = std::abs(connections[c].distance - joins[j].distance);
            if (apart <= tolerance)
                pairs.append({apart, hoursApart(connections[c].clock, joins[j].clock), c, j});
        }
    }
    const auto rank = [](const Pair& pair) {
        return std::make_tuple(std::lround(pair.apart / SameDistanceM), pair.hours, pair.apart, pair.connection,
                               pair.join);
    };
    std::sort(pairs.begin(), pairs.end(), [&](const Pair& a, const Pair& b) { return rank(a) < rank(b); });
    QVector<int> joinOf(connections.size(), -1);
    QVector<bool> isUsed(joins.size(), false);
    for (const Pair& pair : qAsConst(pairs)) {
        if (joinOf[pair.connection] >= 0 || isUsed[pair.join])
            continue;
        joinOf[pair.connection] = pair.join;
        isUsed[pair.join] = true;
    }
    return joinOf;
}

} // namespace Torvik::Import::LateralJoins
