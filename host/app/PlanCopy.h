#pragma once

#include <QString>

/** What a plan's file is called in the project. Ground only; any thread. */
namespace Torvik::Viewer::PlanCopy {

/** The file's name with an ending that the loader knows: ".tif" becomes ".tiff", ".PDF" ".pdf". */
QString loadableName(const QString& file);

/** Whether the loader may have the file itself. A PDF is used up when it becomes a picture. */
bool needsCopy(const QString& file);

/** Loadable, and free in the folder: no other document is written over. The name that the old plan has may be taken,
 *  since that plan goes.
 *  @param oldPlan  path of its file; empty without one */
QString freeName(const QString& file, const QString& folder, const QString& oldPlan);

/** @returns why it could not be done; empty when it was */
QString copy(const QString& from, const QString& to);

} // namespace Torvik::Viewer::PlanCopy
