#pragma once

#include "domain/boundary/BaseServices.h"
#include "host/app/FloorKeeper.h"
#include "plans/BackgroundController.h"
#include "plans/IBackgroundPlan.h"
#include "plans/SizeInfo.h"

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QVariant>
#include <QVector3D>

namespace Torvik::Viewer {

class PlanLoad;

/** What the user does with plans: loads one, aligns it, locks it to the view, takes it away. It works on the plan under
 *  the network or on that of a floor. QML has it as `viewer.plans`; a PlanLoadingScreen takes it for the loader, since
 *  it also cancels and reports what comes before and after the loader's own work. Main thread only.
 *
 *  The user's file stays as it is: what goes into the project is a copy. */
class PlanWork : public QObject {
    Q_OBJECT
    /** -1 for the plan under the network, else the floor's index; the floor that the view shows. */
    Q_PROPERTY(int floor READ floor WRITE setFloor NOTIFY changed)
    Q_PROPERTY(bool hasPlan READ hasPlan NOTIFY changed)
    /** The name of the plan's file. */
    Q_PROPERTY(QString planName READ planName NOTIFY changed)
    /** It was laid by the command line, and the project does not know of it. */
    Q_PROPERTY(bool forALook READ forALook NOTIFY changed)
    Q_PROPERTY(bool locked READ locked WRITE setLocked NOTIFY changed)
    Q_PROPERTY(bool loading READ loading NOTIFY changed)
    Q_PROPERTY(QVariantList heights READ heights WRITE setHeights NOTIFY changed)
    Q_PROPERTY(QObject* controller READ controller CONSTANT)

public:
    static constexpr int underNetwork = -1;
    static constexpr int floorCount = FloorFile::floorCount;

    /** As in TwoSectionMode. */
    enum Way { TwoLines = 1, NorthLine = 2, LineAndLength = 4 };
    Q_ENUM(Way)

    explicit PlanWork(QObject* parent = nullptr);
    ~PlanWork() override;

    /** The project is still on its way into the scene; its own plan comes after it. */
    void setProjectFilling(bool filling) { m_filling = filling; }
    /** The project stands in the scene: the floors that it has come, one after the other. */
    void layFloors(const QString& project) { m_keeper.open(project); }
    bool floorsComing() const { return m_keeper.laying(); }
    /** The project is about to close: what the user has done with its floors is stored. */
    void storeFloors() { m_keeper.close(); }
    int floor() const { return m_floor; }
    /** A floor that is chosen is shown; with -1 no floor is. */
    void setFloor(int floor);
    bool hasPlan() const { return plan() != nullptr; }
    QString planName() const;
    bool forALook() const;
    bool locked() const;
    void setLocked(bool locked);
    bool loading() const { return m_load != nullptr; }
    /** Of the floors, in metres, each above the one below. */
    QVariantList heights() const;
    void setHeights(const QVariantList& heights);
    QObject* controller() { return &m_controller; }

    /** Why this file can be no plan, for the user; empty if it can. */
    Q_INVOKABLE QString refusal(const QUrl& file) const;
    /** What the user is to be asked before another plan takes the chosen place; empty where none goes. */
    Q_INVOKABLE QString questionBeforeLoad() const;
    /** Loads it for the place that is chosen; the plan that lies there goes once the new one stands. */
    Q_INVOKABLE void load(const QUrl& file);
    Q_INVOKABLE void cancel();
    /** What MessageBoxUtils.explain wants: of the load that failed last. */
    Q_INVOKABLE QString explanation(const QString& kind) const;
    /** Takes points on the ground, as TwoSectionInterface gives them; of one line and its length, that is c.x.
     *  @returns why it was not done, for the user; empty if it was */
    Q_INVOKABLE QString align(int way, QVector3D a, QVector3D b, QVector3D c, QVector3D d);
    /** The plan is no longer the project's or floor's. Its file stays. */
    Q_INVOKABLE void remove();
    /** The project is another one now, or none. */
    void reset();

signals:
    void changed();
    /** A load has ended without a word to the user. */
    void ended();
    /** A load came to nothing, or what was done could not be stored. */
    void failed(const QString& text);
    /** What was done to a plan that lies in the view could not be stored. Told once, until it can be again. */
    void notStored(const QString& text);
    /** A floor that the project has did not come with it. */
    void floorMissing(const QString& text);
    /** It was done, and not all is well with it. */
    void noted(const QString& text);

    // The face of a loader.
    void progressPlanLoadChanged(int progress);
    void planLoadedChanged();
    void corruptedPlanFile(Torvik::Base::CErrorCode errorCode);
    void fileTooLarge(Torvik::View3d::SizeInfo sizeInfo);
    void pdfConverterProblem(Torvik::Base::CErrorCode errorCode);

private:
    View3d::IBackgroundPlan* plan() const;
    void watchPlan();
    void follow();
    void onFloorShown();
    void hearLoad();
    void onLoaded(View3d::IBackgroundPlan* plan);
    bool lay(View3d::IBackgroundPlan* plan);
    void layOnFloor(View3d::IBackgroundPlan* plan);
    bool canStayWhereItIs(const QString& file) const;
    void finish();
    void store();
    void tellUnlessStored();

    int m_floor = underNetwork;
    FloorKeeper m_keeper;
    View3d::BackgroundController m_controller {nullptr};
    QPointer<View3d::IBackgroundPlan> m_watched;
    bool m_following = false;
    bool m_filling = false;
    bool m_toldNotStored = false;

    PlanLoad* m_load = nullptr;
    /** Of the load that is under way or was last. */
    QString m_source;
    QString m_loadPath;
    bool m_told = false;
    View3d::SizeInfo m_size;
};

} // namespace Torvik::Viewer
