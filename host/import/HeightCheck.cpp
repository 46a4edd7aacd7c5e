#include "host/import/HeightCheck.h"

#include <algorithm>
#include <cmath>

namespace Torvik::Import::HeightCheck {

namespace {

constexpr double FarM = 50.0;
constexpr double FarDeviations = 20.0;
/** A depth that is stated must agree with the heights to this. */
constexpr double DepthToleranceM = 0.05;

double median(QVector<double> values)
{
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

QVector<double> allHeights(const QVector<NodeData>& nodes, const QVector<PipeData>& pipes)
{
    QVector<double> heights;
    const auto collect = [&heights](const std::optional<double>& height) {
        if (height)
            heights.append(*height);
    };
    for (const NodeData& node : nodes) {
        collect(node.cover);
        collect(node.invert);
    }
    for (const PipeData& pipe : pipes) {
        for (const Point& point : pipe.course)
            collect(point.z);
    }
    return heights;
}

} // namespace

std::optional<double> typicalHeight(const QVector<NodeData>& nodes, const QVector<PipeData>& pipes)
{
    const QVector<double> heights = allHeights(nodes, pipes);
    return heights.isEmpty() ? std::nullopt : std::optional<double>(median(heights));
}

void warn(const QVector<NodeData>& nodes, const QVector<PipeData>& pipes, ImportReport& report)
{
    const QVector<double> heights = allHeights(nodes, pipes);
    if (heights.isEmpty())
        return;
    const double middle = median(heights);
    QVector<double> deviations;
    deviations.reserve(heights.size());
    for (const double height : heights)
        deviations.append(std::abs(height - middle));
    const double limit = std::max(FarM, FarDeviations * median(deviations));
    const auto check = [&](const QString& kind, const QString& key, const SourceRef& source, const QString& what,
                           const std::optional<double>& height) {
        if (height && std::abs(*height - middle) > limit)
            report.warn(kind, key, source,
                        QStringLiteral("%1 %2 m lies far from all other heights (median %3 m)")
                            .arg(what)
                            .arg(*height)
                            .arg(middle));
    };
    for (const NodeData& node : nodes) {
        check(Kinds::Nodes, node.key, node.source, QStringLiteral("the cover height"), node.cover);
        check(Kinds::Nodes, node.key, node.source, QStringLiteral("the invert height"), node.invert);
        if (node.cover && node.invert && node.depth &&
            std::abs(*node.cover - *node.invert - *node.depth) > DepthToleranceM)
            report.warn(
                Kinds::Nodes, node.key, node.source,
                QStringLiteral("cover %1 m and invert %2 m do not fit the stated depth %3 m; the heights are taken")
                    .arg(*node.cover)
                    .arg(*node.invert)
                    .arg(*node.depth));
    }
    for (const PipeData& pipe : pipes) {
        for (const Point& point : pipe.course)
            check(Kinds::ofPipe(pipe.kind), pipe.key, pipe.source, QStringLiteral("the height"), point.z);
    }
}

} // namespace Torvik::Import::HeightCheck
