#pragma once

#include "scene/KxView3dExport.h"

#include <QString>

/** The files of plans: which are small enough, and how a new one takes the old one's place. No state; any thread. */
namespace Torvik::View3d::PlanFiles {

/** Bytes; 0 where there is no limit.
 *  @param extension  without a dot, in any case */
KXVIEW3D_EXPORT qlonglong sizeLimit(const QString& extension);

/** Whether the file is there and within the limit of its extension. */
KXVIEW3D_EXPORT bool isValid(const QString& path);

/** Also from one disk to another. Never over a file that is there, and never half: either both names are as before, or
 *  the whole file stands at `to`. What cannot be removed from another disk stays there as well.
 *  @returns why it could not be done, for the user; empty when it was */
KXVIEW3D_EXPORT QString move(const QString& from, const QString& to);

struct Swapped {
    /** The path that the new plan has now. */
    QString newPath;
    /** What went wrong, for the user; then the old file stands where it stood. Empty otherwise. */
    QString problem;
};

/** Brings `source` to `target` and lets the old plan's file go, or leaves everything where it was.
 *  @param oldPath  empty without an old plan */
KXVIEW3D_EXPORT Swapped swap(const QString& oldPath, const QString& source, const QString& target);

/** A name beside that of the file, by which there is none yet. */
KXVIEW3D_EXPORT QString freeName(const QString& path, const QString& addition = QStringLiteral("-"));

/** Where the file of an old plan waits until the new one is in its place. */
KXVIEW3D_EXPORT QString backupOf(const QString& path);

/** Where a picture waits while a PDF of its name is converted, until the plan of that is taken. */
KXVIEW3D_EXPORT QString asideForConversion(const QString& path);

/** What stood at that path is there again when the program ended in the midst of a swap, or before the plan of a PDF of
 *  that name was taken; what came of the PDF stays under a name of its own. */
KXVIEW3D_EXPORT void recover(const QString& path);

} // namespace Torvik::View3d::PlanFiles
