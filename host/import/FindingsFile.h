#pragma once

#include "host/import/ImportReport.h"

namespace Torvik::Import {

/** A finding that names its pipe, and perhaps a lateral, by key. */
struct FindingRecord {
    QString pipeKey;
    FindingData finding;
};

/** Findings in a CSV file: the columns pipe, distance, code, and where there is something to say clock, angle, quantity
 * and lateral, in any order and case. A record that makes no sense by itself is left out with its line; whether it fits
 * the network is another's question. */
namespace FindingsFile {

/** Nothing, and a failed report, for a file that cannot be read or has no such header. Counts what is read. */
QVector<FindingRecord> read(const QByteArray& content, const QString& fileName, ImportReport& report);

} // namespace FindingsFile

} // namespace Torvik::Import
