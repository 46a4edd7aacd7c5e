#pragma once

#include "plans/SizeInfo.h"

#include <QString>

/** What went wrong with a plan, in words that help: the file, what is wrong, and what can be done. */
namespace Torvik::Viewer::PlanMessages {

QString missing(const QString& file);
QString noPlan(const QString& file);
/** The user may not open it. */
QString closed(const QString& file);
/** A text on a copy, as one on the file that the user knows. */
QString named(QString text, const QString& copy, const QString& source);
/** What the drawings' reader has found out, where it was one.
 *  @param loadedAs  the copy of the file that was loaded; empty when it was the file */
QString unreadable(const QString& file, const QString& loadedAs = {});
/** What of a drawing is not shown although a plan came of it, and its units; empty when there is nothing to tell. */
QString notes(const QString& file, const QString& loadedAs = {});
QString tooLarge(const QString& file, const View3d::SizeInfo& size);
QString fileTooLarge(const QString& file, qint64 limitBytes);
QString converterFailed(const QString& file);
QString notCopied(const QString& file, const QString& reason);
/** A file could not be brought to its place; the plan before is still there. */
QString notLaid(const QString& file, const QString& reason);
/** plan.xml cannot be written, so the plan before is still there. */
QString notStored(const QString& file);
/** The plan lies in the view as the user has placed it, and plan.xml cannot be written. */
QString placeNotStored(const QString& file);
/** It lies on its floor, and its file could not be brought into the project. */
QString notKept(const QString& file, const QString& reason);
/** The floors are in the view as the user has made them, and their file cannot be written. */
QString floorsNotStored(const QString& reason);
/** The plan is out of the view, and plan.xml still names it. */
QString notForgotten(const QString& planFile);
/** Of what is copied into the project. */
QString noRoom(const QString& file, qint64 bytes);
/** Only the first page of a PDF is laid. */
QString firstPageOnly(const QString& file, int pages);

} // namespace Torvik::Viewer::PlanMessages
