#pragma once

#include "plans/SizeInfo.h"

#include <QString>

/** What went wrong with a plan, in words that help: the file, what is wrong, and what can be done. */
namespace Torvik::Viewer::PlanMessages {

QString missing(const QString& file);
QString noPlan(const QString& file);
/** The user may not open it. */
QString closed(const QString& file);
/** What the drawings' reader has found out, where it was one.
 *  @param loadedAs  the copy of the file that was loaded; empty when it was the file */
QString unreadable(const QString& file, const QString& loadedAs = {});
/** What of a drawing is not shown although a plan came of it; empty when all is well. */
QString notes(const QString& file, const QString& loadedAs = {});
QString tooLarge(const QString& file, const View3d::SizeInfo& size);
QString fileTooLarge(const QString& file, qint64 limitBytes);
QString converterFailed(const QString& file);
QString notCopied(const QString& file, const QString& reason);
/** The plan lies in the view, and plan.xml cannot be written. */
QString placeNotStored(const QString& file);

} // namespace Torvik::Viewer::PlanMessages
