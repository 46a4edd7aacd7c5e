#pragma once

#include "plans/SizeInfo.h"

#include <QString>

/** What went wrong with a plan, in words that help: the file, what is wrong, and what can be done. */
namespace Torvik::Viewer::PlanMessages {

QString missing(const QString& file);
QString unreadable(const QString& file);
QString tooLarge(const QString& file, const View3d::SizeInfo& size);
QString fileTooLarge(const QString& file, qint64 limitBytes);
QString converterFailed(const QString& file);

} // namespace Torvik::Viewer::PlanMessages
