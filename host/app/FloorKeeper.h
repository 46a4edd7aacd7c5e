#pragma once

#include "host/app/FloorFile.h"
#include "plans/IBackgroundPlan.h"

#include <QMatrix4x4>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariantList>

namespace Torvik::Viewer {

class PlanLoad;

/** Keeps the plans of the floors and their heights in the project: lays what floors.json tells when it opens, one after
 *  the other, and writes each change. A plan is kept if its file lies among the project's documents; one that could not
 *  be laid stays in the file until another takes its floor. What nobody has changed is not written. Main thread only.
 */
class FloorKeeper : public QObject {
    Q_OBJECT

public:
    /** Of a building of which nobody has told any. */
    static QVariantList usualHeights();

    explicit FloorKeeper(QObject* parent = nullptr);
    ~FloorKeeper() override;

    /** The project stands in the scene. The floors come when its plan under the network is there. */
    void open(const QString& project);
    /** The project is about to close: what has changed is stored, and what comes now is no change of its floors. */
    void close();
    /** The same without storing; the project may be gone. */
    void forget();

    /** The floors of the project are still coming. */
    bool laying() const { return m_laying; }
    /** Name of a file that the project has for this floor, and that could not be laid; else empty. */
    QString notLaid(int floor) const;
    /** A plan of a floor may lie elsewhere. */
    void saveSoon();

signals:
    /** Something of the floors did not come with the project; told once. */
    void trouble(const QString& text);
    /** Told once, until it can be stored again. */
    void notStored(const QString& text);

private:
    struct Kept {
        FloorPlan plan;
        /** Null until it has been laid, and when its scene has gone. */
        QPointer<View3d::IBackgroundPlan> laid;
        /** Where it lay when `plan` was written down, without its height. */
        QMatrix4x4 matrix;
        bool wasLaid = false;
    };

    void waitForOwnPlan();
    void layNext();
    void hearLoad(int floor, const QString& file);
    void onLaid(int floor, View3d::IBackgroundPlan* plan);
    void endLaying();
    void onFloorSet();
    /** Takes over what stands in the scene. */
    void takeChanges();
    void takePlan(int floor, View3d::IBackgroundPlan* plan);
    void save();
    QString documents() const;

    QString m_project;
    QMap<int, Kept> m_floors;
    QVariantList m_heights;
    /** The file holds something that could not be read. */
    bool m_damaged = false;
    bool m_changed = false;
    bool m_toldNotStored = false;

    bool m_laying = false;
    QList<int> m_waiting;
    QMetaObject::Connection m_ownPlan;
    PlanLoad* m_load = nullptr;
    /** The floor that the user sees while others are laid. */
    int m_shown = -1;
    QTimer m_next;
    QTimer m_saving;
};

} // namespace Torvik::Viewer
