#pragma once

#include "host/import/ImportReport.h"

namespace Torvik::Import::HeightCheck {

/** Warns of heights that stand alone: farther from the median of all heights than 50 m and than 20 times the median
 *  deviation. Nothing is changed: a tower in a valley may be right. */
void warn(const QVector<NodeData>& nodes, const QVector<PipeData>& pipes, ImportReport& report);

/** The median of all heights; none where there is no height at all. */
std::optional<double> typicalHeight(const QVector<NodeData>& nodes, const QVector<PipeData>& pipes);

} // namespace Torvik::Import::HeightCheck
