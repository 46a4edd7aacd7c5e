#include "host/drawing/DrawingLosses.h"

#include <QStringList>

#include <algorithm>
#include <numeric>

namespace Torvik::DXF {

namespace {

int sumOf(const std::map<std::string, int>& counts)
{
    return std::accumulate(counts.begin(), counts.end(), 0,
                           [](int sum, const auto& entry) { return sum + entry.second; });
}

void findByHandle(const DxfCensus& census, std::vector<unsigned long long>& seen, DrawingLosses& losses)
{
    std::sort(seen.begin(), seen.end());
    for (const auto& [handle, index] : census.handles) {
        if (std::binary_search(seen.begin(), seen.end(), handle))
            continue;
        const std::string& kind = census.kinds[std::size_t(index)].name;
        ++(isDrawn(kind) ? losses.lost : losses.passedOver)[kind];
    }
    losses.lostAtLeast = sumOf(losses.lost);
}

void findByCount(const DxfCensus& census, int features, DrawingLosses& losses)
{
    int expected = 0;
    for (const auto& kind : census.kinds) {
        if (isDrawn(kind.name))
            expected += kind.inModel;
        else if (kind.inModel > 0 && kind.name != "INSERT" && kind.name != "DIMENSION")
            losses.passedOver[kind.name] = kind.inModel;
    }
    losses.lostAtLeast = std::max(0, expected - features);
}

} // namespace

DrawingLosses findLosses(const DxfCensus& census, std::vector<unsigned long long> seen, int features)
{
    DrawingLosses losses;
    if (int(census.handles.size()) == census.inModel)
        findByHandle(census, seen, losses);
    else
        findByCount(census, features, losses);
    return losses;
}

QString listed(const std::map<std::string, int>& counts)
{
    QStringList parts;
    for (const auto& [kind, count] : counts)
        parts << QStringLiteral("%1 %2").arg(count).arg(QString::fromLatin1(kind.c_str()));
    return parts.join(QStringLiteral(", "));
}

} // namespace Torvik::DXF
