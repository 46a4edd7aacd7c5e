#pragma once

#include "scene/KxView3dExport.h"

#include <QString>

namespace Torvik::View3d {

/** Brings a new plan's file to its place in the project in two steps: until the second the old plan's file is there
 *  under another name, so that what follows from the new one may still fail. No scene; any thread. */
class KXVIEW3D_EXPORT PlanSwap {
public:
    /** @param oldPath  empty without an old plan
     *  @param target   may be `source`, for a file that is in its place already */
    PlanSwap(const QString& oldPath, const QString& source, const QString& target);

    /** @returns why it could not be done, for the user; then all is as before. Empty when the new file is in its place.
     */
    QString begin();
    /** The old plan's file goes. */
    void commit();
    /** After begin() all becomes as it was before.
     *  @returns what could not be taken back, for the user */
    QString takeBack();

private:
    QString putOldAside();

    QString m_old;
    QString m_source;
    QString m_target;
    bool m_moved = false;
    QString m_backup; ///< of the old file, once it is there
    QString m_aside;  ///< of another file that had the new one's name
};

} // namespace Torvik::View3d
