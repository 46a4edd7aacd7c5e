#pragma once

#include "plans/IBackgroundPlan.h"
#include "plans/PictureReader.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QImage>

#include <atomic>
#include <memory>

namespace Torvik::View3d {

/** A picture as a flat plane under the network. It is decoded on another thread, within fixed limits, and then comes to
 *  lie under the middle of the view. Deleting it while it is decoded ends the decoding and waits for that.
 *
 *  A cancellation only says so; whoever cancels deletes the plan. */
class KXVIEW3D_EXPORT BackgroundImage : public IBackgroundPlan {
    Q_OBJECT

public:
    enum Error { Unreadable = 1 };

    BackgroundImage(const QString& path, SceneRoot* scene);
    ~BackgroundImage() override;

    QString renderableType() const override;
    QVector3D getAdditionalTranslationCorrect() const override;
    void cancelFileLoading() override;
    void load() override;

    static Base::CErrorCode createErrorCode(Error error);
    static float get3dOneMeter() { return 1.0F; }

protected:
    /** Decodes a picture, makes the plane of it and ends loading.
     *  @param fullPath  the plan's path once that is done */
    void createBackground(const QString& picturePath, const QString& fullPath);
    /** After what says why there is no plan. */
    virtual void endAfterFailure(PictureReader::Outcome outcome);
    /** Before fileCorrupted. */
    virtual void logUnreadable(const QString& picturePath, const QString& reason);
    /** The picture is there and the plan about to be told as finished. */
    virtual void onPictureReady();
    void waitForReading();

private:
    using Reading = PictureReader::Reading;

    void onReadingFinished(const QString& picturePath, const QString& fullPath);
    void createBackgroundFromImage();
    void finish(const QString& fullPath);

    QImage m_image;
    float m_planeSide = 100.0F;
    QVector3D m_additionalTranslationCorrect;
    Qt3DCore::QTransform* m_planeTransform = nullptr;
    QFuture<Reading> m_future;
    std::unique_ptr<QFutureWatcher<Reading>> m_watcher;
    std::shared_ptr<std::atomic_bool> m_abandoned;
    QString m_path;
};

} // namespace Torvik::View3d
