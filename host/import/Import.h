#pragma once

#include "host/import/ImportReport.h"

#include <QStringList>

class QTextStream;

namespace Torvik::Import {

/** What `kxviewer import` was asked to do. */
struct ImportOptions {
    QString source;
    QString project;      ///< folder that is to be made
    QString crs;          ///< "EPSG:N"; empty when the source says its own
    QString mapping;      ///< mapping file, needed for sources of GDAL/OGR
    QStringList with;     ///< further ISYBAU files: inspections, parts of the network
    QStringList findings; ///< CSV files of findings
    QString report;       ///< file for the account as JSON; empty for none
};

/** Imports a source into a new project and tells about it. Nothing is left of a project when it fails, and an existing
 * one is never touched. The report is written in both cases.
 *  @param out  summary of what was read, taken and left out
 *  @param err  problems with their places; one line "error: ..." when it fails
 *  @return exit status: 0 for a project, 1 for none */
int runImport(const ImportOptions& options, QTextStream& out, QTextStream& err);

/** The same without streams, for callers that show the report themselves. False when there is no project. */
bool importProject(const ImportOptions& options, ImportReport& report);

} // namespace Torvik::Import
