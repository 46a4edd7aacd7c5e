#pragma once

#include <QString>

/** The plan's file as plan.xml names it, and as this machine does. `documentation` is the name of the documentation
 * folder in the project, with its separator. No disk is looked at. */
namespace Torvik::View3d::PlanPath {

/** Windows form, relative to the project: the documentation folder and the file's name, wherever the file is. Empty for
 * a path that names no file. */
QString stored(const QString& fullPath, const QString& documentation);

/** Full path of a file that any machine has named. A text that begins with the documentation folder is relative to the
 *  project. Otherwise it counts from the component that is called like the project's folder, preferably one with the
 *  documentation folder in it. An absolute path that does not lead there, and any with a step up in it, is the file of
 *  that name in the documentation folder; any other text is relative to the project. Case counts only where something
 *  fits exactly.
 *  @param projectPath  ends in a separator; the result begins with it
 *  @returns empty for a text that names no file, and for a project path without a folder */
QString resolved(const QString& stored, const QString& projectPath, const QString& documentation);

} // namespace Torvik::View3d::PlanPath
