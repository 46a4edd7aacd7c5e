#pragma once

#include "plans/IBackgroundPlan.h"
#include "scene/KxView3dExport.h"

#include <QObject>
#include <QPointer>
#include <QVector3D>

namespace Torvik::View3d {

/** Aligns a plan with the network by pairs of points that the user has pointed at: A on the plan, B in the scene, all
 * in scene coordinates. Lines without a length are not caught. Created by QML; the plan is not owned. Main thread only.
 */
class KXVIEW3D_EXPORT BackgroundController : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        Torvik::View3d::IBackgroundPlan* targetPlan READ getTargetPlan WRITE setTargetPlan NOTIFY targetPlanChanged)

public:
    explicit BackgroundController(QObject* parent = nullptr);

    IBackgroundPlan* getTargetPlan() const;
    void setTargetPlan(Torvik::View3d::IBackgroundPlan* plan);

    /** A1-A2 comes to lie on B1-B2 with its length. Only the plane of the plan grows. */
    Q_INVOKABLE void scalePlanFile(QVector3D A1, QVector3D A2, QVector3D B1, QVector3D B2);
    /** The line of the plan gets the direction of the scene's, and its begin the place. */
    Q_INVOKABLE void rotatePlanFile(QVector3D pointStartFrom, QVector3D pointEndFrom, QVector3D pointStartTo,
                                    QVector3D pointEndTo);
    /** The line of the plan points north. */
    Q_INVOKABLE void setPlanNorthDirection(QVector3D pointStartFrom, QVector3D pointEndFrom, QVector3D, QVector3D);
    /** The line of the plan gets a length, and A1 stays.
     *  @param valueVector  metres in x */
    Q_INVOKABLE void setPlanScaleWithSectionAndValue(QVector3D A1, QVector3D A2, QVector3D valueVector, QVector3D);

signals:
    void targetPlanChanged();

private:
    bool hasTarget() const;
    void apply(const QMatrix4x4& rotation);
    void scale(const QVector3D& a1, const QVector3D& a2, const QVector3D& b1, const QVector3D& b2);
    void rememberPlaceInCamera();

    QPointer<IBackgroundPlan> m_target;
};

} // namespace Torvik::View3d
