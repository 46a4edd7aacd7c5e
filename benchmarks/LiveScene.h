#pragma once

#include "benchmarks/Stage.h"
#include "domain/boundary/CProjectObject.h"

#include <QSharedPointer>
#include <QString>
#include <QVector3D>

namespace Torvik::View3d {
class SceneRoot;
}

namespace Torvik::Bench {

/** The product's scene on a stage, with a project in it that others write to. Is never taken down: the process ends. */
class LiveScene {
public:
    explicit LiveScene(Stage::Kind kind);

    const Stage& stage() const { return m_stage; }
    View3d::SceneRoot& root() const { return *m_root; }
    /** Opens the project and waits until all of it stands in the scene. */
    QSharedPointer<Database::CProjectObject> open(const QString& folder) const;
    void close(const QSharedPointer<Database::CProjectObject>& project) const;
    /** From straight above, so many metres over the point. */
    void lookDown(const QVector3D& point, float height) const;

private:
    Stage m_stage;
    View3d::SceneRoot* m_root; ///< owned by the stage's root
};

} // namespace Torvik::Bench
