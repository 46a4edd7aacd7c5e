#pragma once

#include "plans/PlanLoader.h"

#include <QStringList>

namespace Torvik::View3d {

/** Loads the one plan of a project. Main thread only. */
class KXVIEW3D_EXPORT BackgroundLoader : public PlanLoader {
    Q_OBJECT

public:
    explicit BackgroundLoader(QObject* parent = nullptr);

    IBackgroundPlan* createNewPlan(const QString& path) override;
    /** Where it was stored, whatever the scene's origin is now; it becomes the scene's plan. */
    void applyTranslationFromPlanFile(IBackgroundPlan* plan, const PlanSettings& settings) override;
    /** Ties a scene without placed nodes to the earth by the point that the plan is relative to. */
    void initGeoProjector(const PlanSettings& settings) override;

signals:
    /** A plan lies under the network now, or none does any more. */
    void planLoadedChanged();

protected:
    explicit BackgroundLoader(TooLarge tooLarge);

private:
    bool pathEndsWithExtention(const QString& path, const QStringList& extensions) const;
    QString getProjectPathOrEmptyString() const;
};

} // namespace Torvik::View3d
