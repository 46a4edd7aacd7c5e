#pragma once

#include "plans/IBackgroundPlan.h"

class QThread;

namespace Torvik::DXF {
class DXFWorker;
}

namespace Torvik::View3d {

/** A DXF or DWG drawing under the network. The host's reader makes its entities on a thread of its own, which this plan
 *  owns while it loads; then the drawing comes to lie under the middle of the view, its units as metres.
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
    void endThread();
    void placeDrawing();
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
};

} // namespace Torvik::View3d
