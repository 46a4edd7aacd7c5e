#pragma once

#include "plans/IBackgroundPlan.h"

#include <atomic>
#include <memory>

class QThread;

namespace Torvik::DXF {
class DXFWorker;
}

namespace Torvik::View3d {

/** A DXF or DWG drawing under the network. The host's reader makes its entities on a thread of its own, which this plan
 *  owns while it loads; then the drawing comes to lie under the middle of the view, its units as metres.
 *
 *  Of a drawing whose coordinates are those of a country, transform() tells where their origin lies, as plan.xml does;
 *  what is drawn and moved hangs on placement(), which carries the drawing's middle.
 *
 *  A cancellation goes through the reader and ends loading within moments; whoever cancels deletes the plan. */
class KXVIEW3D_EXPORT BackgroundDxf : public IBackgroundPlan {
    Q_OBJECT

public:
    enum Error { Unreadable = 1 };

    BackgroundDxf(const QString& path, SceneRoot* scene);
    ~BackgroundDxf() override;

    QString renderableType() const override;
    QVector3D getAdditionalTranslationCorrect() const override;
    void cancelFileLoading() override;
    /** Always false: a drawing keeps its place in the camera as it was when the lock was taken. The lock itself works.
     */
    bool isLocked() const override;
    /** The drawing is there. */
    bool isReady() override;
    void load() override;
    using IBackgroundPlan::move;
    void move(QVector3D vector, MeasurementType flags) override;
    void setPlace(const PlanPlace& place) override;
    Qt3DCore::QTransform* placement() const override;
    bool savePlanFile(const QString& projectPath) override;

    void loadFile(const QString& path);
    static Base::CErrorCode createErrorCode(Error error);

    /** Ties the whole drawing, its turn and height too, to where rayToDxfInCameraUpdate() has seen it in the camera. */
    void dxfTransformUpdate();
    void rayToDxfInCameraUpdate();

public slots:
    /** Takes the drawing; null when there is none. */
    void onLoadingFinished(Qt3DCore::QEntity* entity);
    void onLoadingCancelled();

signals:
    // These hide the base's of the same name; a drawing's own are never emitted.
    void progressChanged(int progress);
    void layerLockChanged(bool lock);
    void operationFinished();

private:
    using Arrived = std::atomic<Qt3DCore::QEntity*>;

    void endThread();
    void placeDrawing();
    void placeByMiddle(const Vector3D<double>& crop);
    void placeByOrigin();
    void tellOrigin();
    void takeOrigin();
    void followView();
    void tellViewScale();

    Qt3DCore::QTransform* m_drawingTransform = nullptr;
    QMatrix4x4 m_drawingInCamera;
    bool m_drawingLocked = false;
    Qt3DCore::QEntity* m_drawing = nullptr;
    DXF::DXFWorker* m_worker = nullptr;
    QThread* m_thread = nullptr;
    QString m_path;
    bool m_cancelled = false;
    bool m_cancellationTold = false;
    /** Set while the reader's entity is on its way to this thread. */
    std::shared_ptr<Arrived> m_arrived;

    /** Null unless the origin is far away; then the entity's transform instead of transform(). */
    Qt3DCore::QTransform* m_middle = nullptr;
    /** From the drawing's origin to its middle, before this plan's turn and scale. */
    Vector3D<double> m_originToMiddle;
    bool m_telling = false;
};

} // namespace Torvik::View3d
