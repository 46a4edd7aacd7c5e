#pragma once

#include <QString>

#include <atomic>

/** What a plan's file is called in the project, and how it gets there. No state; any thread. */
namespace Torvik::Viewer::PlanCopy {

/** The file's name with an ending that the loader knows, ".tif" becomes ".tiff", ".PDF" ".pdf", and without what
 *  plan.xml cannot hold. */
QString loadableName(const QString& file);

/** Whether the loader may have the file itself. A PDF is used up when it becomes a picture. */
bool needsCopy(const QString& file);

/** What the project holds of a file with that name: of a PDF its picture. */
QString nameInProject(const QString& name);

/** Loadable, and free in the folder: no other document is written over. The name that the old plan has may be taken,
 *  since that plan goes; not by a PDF, whose picture comes before the plan is sure of its place.
 *  @param oldPlan  path of its file; empty without one */
QString freeName(const QString& file, const QString& folder, const QString& oldPlan);

/** @param cancelled  set from another thread, it ends the copying soon; then there is no copy
 *  @returns why it could not be done; empty when it was, and when it was cancelled */
QString copy(const QString& from, const QString& to, const std::atomic_bool& cancelled);

} // namespace Torvik::Viewer::PlanCopy
