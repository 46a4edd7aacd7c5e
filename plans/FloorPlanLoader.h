#pragma once

#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CProjectObject.h"
#include "plans/SizeInfo.h"
#include "scene/KxView3dExport.h"

#include <QObject>

#include <memory>

namespace Torvik::View3d {

class IBackgroundPlan;
class Renderable;

/** Loads plans of floors, with the face of a PlanLoader: what that says holds here too. A plan that was loaded for a
 *  floor belongs to FloorNav, which shows it. Main thread only. */
class KXVIEW3D_EXPORT FloorPlanLoader : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool planLoading READ planLoading NOTIFY planLoadingChanged)

public:
    explicit FloorPlanLoader(QObject* parent = nullptr);
    ~FloorPlanLoader() override;

    bool planLoading() const;
    Q_INVOKABLE QString problem() const;

    /** Measured against the plan under the network, and no floor's: its file goes. */
    Q_INVOKABLE void swapPlan(Torvik::View3d::IBackgroundPlan* newPlan);
    /** The plan comes to lie on this floor, in place of the one there, and the floor is shown. */
    Q_INVOKABLE void loadPlan(QString fullPath, int index);
    /** The plan that plan.xml names; it is only told by planLoaded(), and lies on no floor. */
    Q_INVOKABLE void loadPlanFromProject(QSharedPointer<Torvik::Database::CProjectObject> project);
    Q_INVOKABLE void cancel();
    Q_INVOKABLE qlonglong getPlanFileSizeLimit(QString extension);

    /** The scene of the plan goes: what is loading is deleted, and nothing of it comes any more. */
    void abandon();

signals:
    void planLoaded(Torvik::View3d::Renderable* loadedPlan);
    void planLoadingChanged();
    void cancelFinished();
    /** The end of the load follows, from the plan itself. */
    void fileTooLarge(Torvik::View3d::SizeInfo sizeInfo);
    void corruptedPlanFile(Torvik::Base::CErrorCode errorCode);
    void progressPlanLoadChanged(int progress);
    void pdfConverterProblem(Torvik::Base::CErrorCode errorCode);
    void problemArisen();

private:
    class Load;
    std::unique_ptr<Load> m_load;
};

} // namespace Torvik::View3d
