#pragma once

#include <QString>

namespace Torvik::Viewer {

/** Why this file can be no plan of a project, told by a look at it, for the user; empty if it can. What it looks like
 *  inside, its reader says.
 *  @param project  path of the project, with its separator, to which the file would be copied */
QString whyNoPlan(const QString& file, const QString& project);

/** The same of a file that stays where it is. */
QString whyNoPlan(const QString& file);

} // namespace Torvik::Viewer
