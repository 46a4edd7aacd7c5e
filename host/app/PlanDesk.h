#pragma once

#include "plans/PlanLoader.h"

#include <QPointF>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>

namespace Torvik::Viewer {

/** A plan that the command line wants under the network. */
struct PlanWish {
    /** Empty without one. */
    QString file;
    double scale = 1.0;
    /** Easting and northing of the plan's middle; without it the middle of the view. */
    std::optional<QPointF> place;
};

/** Lays the plan of the command line: for a look, and stored nowhere. It stands in the scene as one that waits for
 *  confirmation, before the project's own, and the file stays where it is. Main thread only. */
class PlanDesk : public View3d::PlanLoader {
    Q_OBJECT

public:
    explicit PlanDesk(QObject* parent = nullptr);

    /** Waits for the plan of the project, which may still be loading, and lays the one that is wished. Called once the
     *  scene stands.
     *  @param done  gets what went wrong, or an empty text; called once, never from inside this call */
    void lay(const PlanWish& wish, std::function<void(const QString&)> done);

    View3d::IBackgroundPlan* createNewPlan(const QString& path) override;
    void applyTranslationFromPlanFile(View3d::IBackgroundPlan* plan, const View3d::PlanSettings& settings) override;
    void initGeoProjector(const View3d::PlanSettings& settings) override;

private:
    void start();
    /** Of a name that the loader knows; empty, after end(), when it cannot be made. */
    QString copyOf(const QString& path);
    /** The project's own plan stays out of sight as long as this one lies there. */
    static void coverOwn(View3d::IBackgroundPlan* plan);
    void place(View3d::IBackgroundPlan& plan) const;
    void end(const QString& error);

    PlanWish m_wish;
    std::function<void(const QString&)> m_done;
    // A PDF is used up when it becomes a picture: a copy of it is.
    std::unique_ptr<QTemporaryDir> m_scratch;
};

} // namespace Torvik::Viewer
