#pragma once

#include <QVector>

#include <optional>

/** Which lateral a connection finding means. Pure functions; all distances are metres from the start of the inspection.
 */
namespace Torvik::Import::LateralJoins {

/** A place at which a lateral joins the inspected pipe. */
struct Join {
    double distance = 0.0;
    std::optional<int> clock; ///< on which side it leaves, where its geometry tells
};

/** A finding that says that something joins. */
struct Connection {
    double distance = 0.0;
    std::optional<int> clock;
};

/** For each connection the index of its join, or -1. The nearest pair within `tolerance` comes first, and neither is
 *  used twice. Pairs that lie equally far apart, to the decimetre, are told apart by their clocks, then by their order.
 */
QVector<int> match(const QVector<Connection>& connections, const QVector<Join>& joins, double tolerance);

} // namespace Torvik::Import::LateralJoins
