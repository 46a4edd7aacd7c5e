#pragma once

#include "domain/boundary/CProjectObject.h"

#include <QObject>
#include <QTimer>

namespace Torvik::Viewer {

/** Hands an open project to the scene and follows how it fills. The scene may still be on its way when load() is
 * called. Main thread only. */
class SceneLoader : public QObject {
    Q_OBJECT

public:
    explicit SceneLoader(QObject* parent = nullptr);

    /** Makes the project the active one, as soon as there is a scene. finished() comes once, and never from inside this
     *  call. */
    void load(const QSharedPointer<Database::CProjectObject>& project);
    bool isLoading() const { return m_loading; }

signals:
    /** The scene stands, and will hear of the project next. */
    void starting();
    void progress(int done, int total);
    void finished();

private:
    void tryToStart();
    void onSceneFilled();

    QSharedPointer<Database::CProjectObject> m_project;
    QTimer m_waitForScene;
    bool m_connected = false;
    bool m_loading = false;
};

} // namespace Torvik::Viewer
