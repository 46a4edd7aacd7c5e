#include "benchmarks/GridTown.h"

#include "host/domain/ProjectStore.h"

#include <QVector>

#include <cmath>

namespace Torvik::Bench {

using namespace Torvik::Database;

namespace {

constexpr double spacingM = 42.0;
constexpr double eastM = 400000.0;
constexpr double northM = 5600000.0;
constexpr double groundM = 120.0;
constexpr double fallPerCrossingM = 0.2;
constexpr double leastDepthM = 1.6;
constexpr double diameterMm = 300.0;
/** Sources and kinds of a stored shape, in the m of its first point. */
constexpr int fromGis = 16;
constexpr int pipeShape = 64;
constexpr int downstream = 256;

struct Place {
    double east;
    double north;
    double height;
};

/** Where the manholes stand and which follows which. */
class Grid {
public:
    explicit Grid(int pipes)
        : m_side(static_cast<int>(std::ceil(std::sqrt(pipes + 1.0))))
    {
    }

    /** The next manhole downstream; -1 at the outfall. */
    int next(int node) const
    {
        if (node % m_side > 0)
            return node - 1;
        return node >= m_side ? node - m_side : -1;
    }
    Place cover(int node) const
    {
        const int column = node % m_side;
        const int row = node / m_side;
        return {eastM + column * spacingM, northM + row * spacingM, groundM + (column + row) * fallPerCrossingM};
    }
    double depth(int node) const { return leastDepthM + 0.1 * (node % 7); }

private:
    int m_side;
};

QString number(double value)
{
    return QString::number(value, 'f', 3);
}

QString text(const Place& place, int m)
{
    return QStringLiteral("%1 %2 %3 %4").arg(number(place.east), number(place.north), number(place.height)).arg(m);
}

QString pointWkt(const Place& place)
{
    return QStringLiteral("POINT ZM(%1)").arg(text(place, fromGis));
}

/** Stored from the downstream end to the upstream one. */
QString courseWkt(const Place& upper, const Place& lower, int segments)
{
    QStringList points;
    for (int i = 0; i <= segments; ++i) {
        const double share = static_cast<double>(i) / segments;
        // Inner points stand off the line, so that the pipe bends there.
        const double aside = i == 0 || i == segments ? 0.0 : 1.5;
        const Place place {lower.east + (upper.east - lower.east) * share + aside,
                           lower.north + (upper.north - lower.north) * share + aside,
                           lower.height + (upper.height - lower.height) * share};
        points.append(text(place, i == 0 ? pipeShape | downstream : 0));
    }
    return QStringLiteral("LINESTRING ZM(%1)").arg(points.join(QStringLiteral(", ")));
}

StoreStatus writeNode(BulkWriter& writer, const Grid& grid, int node, QString& id)
{
    return writer.insert(NodeObjectType, {},
                         {{QStringLiteral("OBJ_Key"), QStringLiteral("M%1").arg(node)},
                          {QStringLiteral("OBJ_Type"), QStringLiteral("MH")},
                          {QStringLiteral("OBJ_Size1"), 1000.0},
                          {QStringLiteral("OBJ_DepthToInvert"), grid.depth(node)},
                          {QStringLiteral("OBJ_Shape_WKT"), pointWkt(grid.cover(node))}},
                         &id);
}

StoreStatus writePipe(BulkWriter& writer, const Grid& grid, const QVector<QString>& ids, int from)
{
    const int to = grid.next(from);
    QString pipe;
    const auto written = writer.insert(SectionObjectType, {},
                                       {{QStringLiteral("OBJ_Key"), QStringLiteral("M%1-M%2").arg(from).arg(to)},
                                        {QStringLiteral("OBJ_FromNode_REF"), ids[from]},
                                        {QStringLiteral("OBJ_ToNode_REF"), ids[to]},
                                        {QStringLiteral("OBJ_FromNodeDepth"), grid.depth(from)},
                                        {QStringLiteral("OBJ_ToNodeDepth"), grid.depth(to)},
                                        {QStringLiteral("OBJ_Size1"), diameterMm},
                                        {QStringLiteral("OBJ_Length"), spacingM}},
                                       &pipe);
    if (!written)
        return written;
    Place upper = grid.cover(from);
    Place lower = grid.cover(to);
    upper.height -= grid.depth(from);
    lower.height -= grid.depth(to);
    return writer.insert(PipeInspectionObjectType, pipe,
                         {{QStringLiteral("INS_InspectionDir"), 1},
                          {QStringLiteral("INS_StartNode_REF"), ids[from]},
                          {QStringLiteral("INS_EndNode_REF"), ids[to]},
                          {QStringLiteral("INS_Shape_WKT"), courseWkt(upper, lower, 1 + from % 3)}});
}

StoreStatus writeTown(BulkWriter& writer, int pipes)
{
    const Grid grid(pipes);
    QVector<QString> ids(pipes + 1);
    for (int node = 0; node <= pipes; ++node) {
        if (const auto written = writeNode(writer, grid, node, ids[node]); !written)
            return written;
    }
    for (int node = 1; node <= pipes; ++node) {
        if (const auto written = writePipe(writer, grid, ids, node); !written)
            return written;
    }
    return {};
}

} // namespace

QString makeGridTown(const QString& folder, int pipes)
{
    const auto made = ProjectStore::create(folder,
                                           {{QStringLiteral("PRJ_Name"), QStringLiteral("Town of %1 pipes").arg(pipes)},
                                            {QStringLiteral("PRJ_ProjectionWKT"), QStringLiteral("EPSG:25832")}},
                                           [pipes](BulkWriter& writer) { return writeTown(writer, pipes); });
    return made ? QString() : made.error;
}

} // namespace Torvik::Bench
