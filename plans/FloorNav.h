#pragma once

#include "plans/IBackgroundPlan.h"
#include "scene/KxView3dExport.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <QVector3D>

namespace Torvik::View3d {

/** Floors of a building, each with a plan of its own, of which one is shown at a time. One for the process; QML has it
 *  under this name. It outlives projects: a plan stays until another takes its floor or its scene goes. Heights are
 *  metres above the floor below, the first above the scene's zero. Main thread only. */
class KXVIEW3D_EXPORT FloorNav : public QObject {
    Q_OBJECT
    Q_PROPERTY(int current READ getCurrentFloorIndex WRITE setCurrentFloorIndex NOTIFY currentFloorChanged)
    Q_PROPERTY(QVariantList floorValues READ floorValues WRITE setFloorValues NOTIFY floorValuesChanged)

public:
    static FloorNav& instance();

    /** -1 when none is shown. */
    int getCurrentFloorIndex() const { return m_current; }
    void setCurrentFloorIndex(int index);
    QVariantList floorValues() const { return m_values; }
    /** Takes every plan to its height; what is no number counts as 0. */
    void setFloorValues(const QList<QVariant>& values);

    /** Null for a floor without one; stays the view's own, whoever asks. */
    Q_INVOKABLE Torvik::View3d::IBackgroundPlan* getFloorPlan(int floorIndex);
    Q_INVOKABLE bool hasFloorPlan(int floorIndex);
    /** The plan that was there is destroyed. Its height comes with the next floorValues. */
    Q_INVOKABLE void setFloorPlan(int floorIndex, Torvik::View3d::IBackgroundPlan* floorPlan);
    /** The scene's origin has moved by `position`: the plans stay where they are on earth. */
    Q_INVOKABLE void resetPosition(QVector3D position);

signals:
    void currentFloorChanged();
    void floorValuesChanged();
    void floorSet();

private:
    FloorNav() = default;

    void convertFloorPlansY();
    void updateFloorPlansY(const QList<double>& values);

    QHash<int, QPointer<IBackgroundPlan>> m_plans;
    int m_current = -1;
    QVariantList m_values;
};

} // namespace Torvik::View3d
