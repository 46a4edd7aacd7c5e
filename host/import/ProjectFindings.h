#pragma once

#include "host/import/ImportReport.h"

#include <QStringList>

class QTextStream;

namespace Torvik::Import {

/** What `kxviewer findings` was asked to do. */
struct FindingsOptions {
    QString project;   ///< folder of a project that is there
    QStringList files; ///< CSV files of findings
    QString report;    ///< file for the account as JSON; empty for none
};

/** Adds findings to a project in one transaction and tells about it, with the same rules as an import. Where nothing
 * can be taken the project is not touched. Exit status: 0 when all files were read, 1 for an error. */
int runFindings(const FindingsOptions& options, QTextStream& out, QTextStream& err);

/** The same without streams. False when the report has failed; then the project is as it was. */
bool addFindings(const FindingsOptions& options, ImportReport& report);

} // namespace Torvik::Import
