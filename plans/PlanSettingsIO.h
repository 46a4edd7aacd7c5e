#pragma once

#include "plans/PlanSettings.h"
#include "scene/KxView3dExport.h"

namespace Qt3DCore {
class QTransform;
}

namespace Torvik::View3d {

struct PlanPlace;

/** Reads and writes plan.xml, which keeps in a project where its background plan lies. A project's path ends in a
 *  separator. Holds what it has read in the file's coordinates and gives it out in the scene's, by the projector's tie
 * at that moment. Main thread only. */
class KXVIEW3D_EXPORT PlanSettingsIO {
public:
    /** Forgets what was read before. What the file does not tell, or not readably, has its default. */
    void tryToLoadPlanSettings(const QString& projectPath);

    /** What was wrong with the file at the last reading, with its path, for the user; empty when all of it could be
     * read and when there is no file. */
    QString problem() const { return m_problem; }

    /** Empty without a plan. The file need not exist. */
    QString getPathToPlanImage() const;
    Vector3D<double> getPlanReferencePoint() const;
    QVector3D getPlanTranslation() const;
    QVector3D getPlanScale() const;
    QVector3D getPlanRotation() const;
    PlanSettings getPlanSettings() const;

    /** Writes the file whole or leaves the one before as it is. The project's 3D graphics folder must be there. What is
     *  replaced and was damaged is kept beside it as plan.xml.damaged.
     *  @param planFullPath  only its file name is stored: a plan lies in the documentation folder
     *  @param additionalTranslationCorrect  from the plan's origin to its anchor corner, in the plan's own metres; the
     *         position of that corner is what is stored
     *  @returns false when it could not be written, after a line in the log that says why */
    static bool savePlanFile(const QString& projectPath, const Qt3DCore::QTransform& transform,
                             const QString& planFullPath, const QVector3D& additionalTranslationCorrect);

    /** The same, from what is already the place of the anchor corner. */
    static bool savePlanFile(const QString& projectPath, const PlanPlace& place, const QString& planFullPath);

    /** Nothing happens with an empty path or one that does not exist. */
    static void deleteOldPlanFile(const QString& path);

private:
    void resetPreviouslyReadValues();

    // In the file's coordinates, the paths apart.
    PlanSettings m_read;
    Vector3D<double> m_readTranslation;
    double m_readTurn = 0.0;
    QString m_problem;
};

} // namespace Torvik::View3d
