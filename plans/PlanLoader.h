#pragma once

#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CProjectObject.h"
#include "plans/PlanSettings.h"
#include "plans/SizeInfo.h"
#include "scene/KxView3dExport.h"

#include <QObject>
#include <QPointer>

namespace Torvik::View3d {

class IBackgroundPlan;
class Renderable;

/** The one plan that is being loaded, as QML sees it: checks the file, has the plan made, forwards what it tells, and
 *  cancels it. A plan that has loaded is handed on and no longer the loader's. Main thread only.
 *
 *  The signals end a load: planLoaded() or cancelFinished(), the latter twice after cancel(). What else went wrong, and
 *  what the signals leave unsaid, stands in problem(). */
class KXVIEW3D_EXPORT PlanLoader : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool planLoading READ planLoading NOTIFY planLoadingChanged)

public:
    explicit PlanLoader(QObject* parent);
    ~PlanLoader() override;

    bool planLoading() const;
    /** File and reason of the last failure that no signal of its own tells, for the user; empty without one. */
    Q_INVOKABLE QString problem() const { return m_problem; }

    /** File of the present or last load; empty before the first. */
    Q_INVOKABLE QString planPath() const { return m_path; }

    /** Moves a plan's file that has just been loaded into the active project, and lets the file of the present plan go.
     *  On failure both files are where they were, and problem() says why: the new plan must not become the scene's
     *  then, since it bears the old one's path. */
    Q_INVOKABLE void swapPlan(Torvik::View3d::IBackgroundPlan* newPlan);
    /** Nothing happens for a file that is not there or too large for its kind: see getPlanFileSizeLimit(). A load that
     *  is under way is abandoned. */
    Q_INVOKABLE void loadPlan(QString fullPath);
    /** The plan that plan.xml names, laid as it tells. Nothing without one, with a plan in the scene, or while another
     *  loads. */
    Q_INVOKABLE void loadPlanFromProject(QSharedPointer<Torvik::Database::CProjectObject> project);
    Q_INVOKABLE void cancel();
    /** Bytes; 0 without a limit. The extension comes without a dot. */
    Q_INVOKABLE qlonglong getPlanFileSizeLimit(QString extension);

    /** The scene of the plan goes: what is loading is deleted, and nothing of it comes any more. */
    void abandon();

    /** Null for a file of no kind of plan. */
    virtual IBackgroundPlan* createNewPlan(const QString& path) = 0;
    virtual void applyTranslationFromPlanFile(IBackgroundPlan* plan, const PlanSettings& settings) = 0;
    virtual void initGeoProjector(const PlanSettings& settings) = 0;

signals:
    void planLoaded(Torvik::View3d::Renderable* loadedPlan);
    void planLoadingChanged();
    /** A load has ended without a plan. */
    void cancelFinished();
    void fileTooLarge(Torvik::View3d::SizeInfo sizeInfo);
    void corruptedPlanFile(Torvik::Base::CErrorCode errorCode);
    void progressPlanLoadChanged(int progress);
    void pdfConverterProblem(Torvik::Base::CErrorCode errorCode);
    /** problem() has a text that the user has not read yet. */
    void problemArisen();

protected:
    /** What ends a load whose picture is too large: the loader at once, or only the plan, which ends by itself. */
    enum class TooLarge { EndsAtOnce, EndsByItself };
    PlanLoader(QObject* parent, TooLarge tooLarge);

private:
    bool validFile(const QString& path) const;
    bool begin(const QString& path);
    void connectCommon(IBackgroundPlan* plan);
    void processAfterLoaded(IBackgroundPlan* plan);
    void processsAfterCorrupted(Base::CErrorCode errorCode);
    void processAfterLoadedAndSetTranslation(IBackgroundPlan* plan, const PlanSettings& settings);
    void forceCancel();
    void endUnlessItDoesByItself(const QPointer<IBackgroundPlan>& plan);
    IBackgroundPlan* release();
    void setProblem(const QString& problem);

    QPointer<IBackgroundPlan> m_plan;
    QString m_problem;
    QString m_path;
    const TooLarge m_tooLarge;
};

} // namespace Torvik::View3d
