#pragma once

#include "domain/boundary/BaseServices.h"
#include "plans/PlanPlace.h"
#include "plans/SizeInfo.h"
#include "scene/KxView3dExport.h"
#include "scene/Renderable.h"

#include <QMatrix4x4>
#include <QPointer>

namespace Torvik::View3d {

class IBackgroundPlan;
class SceneRoot;

} // namespace Torvik::View3d

Q_DECLARE_INTERFACE(Torvik::View3d::IBackgroundPlan, "at.torvik.view3d.IIBackgroundPlan/1.0")

namespace Torvik::View3d {

/** A drawing or picture that lies under the network. What all kinds share: loading that ends in one of the signals, the
 *  path of the file, the place in the scene, and the lock that ties the plan to the camera.
 *
 *  A child of the scene's root, disabled until it has loaded; load() is called once. It ends through deleteLater().
 *  Receivers of the loading signals connect automatically or queued: a kind may emit them from another thread. All else
 *  belongs to the main thread. */
class KXVIEW3D_EXPORT IBackgroundPlan : public Renderable {
    Q_OBJECT
    Q_INTERFACES(Torvik::View3d::IBackgroundPlan)
    Q_PROPERTY(QString planFullPath READ fullPath CONSTANT)

public:
    explicit IBackgroundPlan(SceneRoot* scene);
    ~IBackgroundPlan() override;

    /** From the plan's origin to the corner by which it is anchored, in the plan's own metres. */
    virtual QVector3D getAdditionalTranslationCorrect() const = 0;
    virtual void cancelFileLoading() = 0;
    /** Places the plan as plan.xml tells: its anchor corner at `position`, turned about it.
     *  @param rotation  degrees; only the turn about y counts */
    virtual void setPosRotScaleFromPlanSettings(QVector3D position, QVector3D rotation, QVector3D scale);
    /** The same with all digits, for a kind that has use for them. */
    virtual void setPlace(const PlanPlace& place);
    /** The transform by which the plan is moved, turned and scaled: transform(), unless that tells the place of an
     *  origin too far away for the precision of a float. */
    virtual Qt3DCore::QTransform* placement() const;
    /** Remembers where the plan lies as the camera sees it, for the lock. */
    virtual void savePlanTransformationInCamera();
    virtual bool isLocked() const;
    /** Whether the lock is taken, also of a kind whose isLocked() does not tell. */
    bool followsCamera() const { return m_locked; }
    /** Ties the plan to the camera, or leaves it where the camera has taken it. */
    virtual void setLock(bool lock);
    /** Path of the plan's file; empty until it has loaded. */
    virtual QString fullPath() const;
    virtual QString fileName() const;
    virtual void setFullPath(QString path);
    /** Writes plan.xml into the project's folder, which ends in a separator. */
    virtual bool savePlanFile(const QString& projectPath);
    virtual bool isReady();
    virtual void load() = 0;
    /** Metres of the scene. */
    virtual void setElevation(float y);
    /** It lies under the network or on a floor now: what its file has put aside is needed no more. */
    virtual void onTaken() {}

    Q_INVOKABLE void destroyLater();

public slots:
    /** Follows the camera over the ground; height, turn and scale stay. */
    void planTransformUpdate();

signals:
    void layerLockChanged(bool lock);
    void progressChanged(int progress);
    /** The plan is complete and enabled. */
    void backgroundLoadingFinished(Torvik::View3d::IBackgroundPlan* plan);
    void fileCorrupted(Torvik::Base::CErrorCode errorCode);
    void pdfConverterProblem(Torvik::Base::CErrorCode errorCode);
    void fileTooLarge(Torvik::View3d::SizeInfo sizeInfo);
    /** Loading has ended without a plan. */
    void backgroundLoadingWasCancelled();

private:
    QString m_planFullPath;
    bool m_locked = false;
    QMatrix4x4 m_transformationInCamera;
    QPointer<Qt3DCore::QTransform> m_followed;
};

} // namespace Torvik::View3d
