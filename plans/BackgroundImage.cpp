#include "plans/BackgroundImage.h"

#include "domain/boundary/CLogger.h"
#include "geo/GdalGeoProjector.h"
#include "network/LowestManholeTracker.h"
#include "plans/PaintedTextureImage.h"
#include "scene/SceneRoot.h"

#include <QPointer>
#include <QThreadPool>
#include <Qt3DExtras/QPlaneMesh>
#include <Qt3DExtras/QTextureMaterial>
#include <Qt3DRender/QTexture>
#include <QtConcurrent>

namespace Torvik::View3d {

namespace {

constexpr unsigned errorGroup = 0x150200U;

/** A picture that is seen smaller than it is needs levels of detail, or thin lines come and go. They take a third of
 *  its memory, and only pictures that stay within the limit with them get them. */
bool levelsOfDetailFit(const QImage& image)
{
    return image.sizeInBytes() / 3 * 4 <= PictureReader::maxSize;
}

Qt3DRender::QMaterial* pictureMaterial(const QImage& image, Qt3DCore::QNode* parent)
{
    auto* const material = new Qt3DExtras::QTextureMaterial(parent);
    auto* const texture = new Qt3DRender::QTexture2D(material);
    auto* const pixels = new PaintedTextureImage(image);
    pixels->setSize(image.size());
    texture->addTextureImage(pixels);
    texture->setMagnificationFilter(Qt3DRender::QAbstractTexture::Linear);
    const bool levels = levelsOfDetailFit(image);
    texture->setGenerateMipMaps(levels);
    texture->setMinificationFilter(levels ? Qt3DRender::QAbstractTexture::LinearMipMapLinear
                                          : Qt3DRender::QAbstractTexture::Linear);
    material->setTexture(texture);
    return material;
}

} // namespace

BackgroundImage::BackgroundImage(const QString& path, SceneRoot* scene)
    : IBackgroundPlan(scene)
    , m_abandoned(std::make_shared<std::atomic_bool>(false))
    , m_path(path)
{
    setEnabled(false);
    setObjectName(QStringLiteral("Background Plan - Image"));
    setFullPath(QString());
}

BackgroundImage::~BackgroundImage()
{
    waitForReading();
}

void BackgroundImage::waitForReading()
{
    *m_abandoned = true;
    m_future.waitForFinished();
}

QString BackgroundImage::renderableType() const
{
    return QStringLiteral("imagebackground");
}

QVector3D BackgroundImage::getAdditionalTranslationCorrect() const
{
    return m_additionalTranslationCorrect;
}

void BackgroundImage::cancelFileLoading()
{
    emit backgroundLoadingWasCancelled();
}

void BackgroundImage::load()
{
    createBackground(m_path, m_path);
}

Base::CErrorCode BackgroundImage::createErrorCode(Error error)
{
    return Base::CErrorCode(unsigned(error) | errorGroup);
}

void BackgroundImage::createBackground(const QString& picturePath, const QString& fullPath)
{
    setFullPath(QString());
    m_watcher = std::make_unique<QFutureWatcher<Reading>>();
    connect(m_watcher.get(), &QFutureWatcher<Reading>::finished, this,
            [this, picturePath, fullPath] { onReadingFinished(picturePath, fullPath); });
    m_future = QtConcurrent::run(QThreadPool::globalInstance(), [picturePath, abandoned = m_abandoned] {
        return PictureReader::read(picturePath, *abandoned);
    });
    m_watcher->setFuture(m_future);
}

void BackgroundImage::onReadingFinished(const QString& picturePath, const QString& fullPath)
{
    const Reading reading = m_future.result();
    m_future = {};
    // It is calling us.
    m_watcher.release()->deleteLater();
    const QPointer<BackgroundImage> self(this);
    switch (reading.outcome) {
    case PictureReader::Outcome::Read:
        m_image = reading.image;
        finish(fullPath);
        return;
    case PictureReader::Outcome::TooLarge:
        emit fileTooLarge(reading.size);
        break;
    case PictureReader::Outcome::Unreadable:
        logUnreadable(picturePath, reading.reason);
        emit fileCorrupted(createErrorCode(Unreadable));
        break;
    }
    if (self)
        endAfterFailure(reading.outcome);
}

void BackgroundImage::endAfterFailure(PictureReader::Outcome)
{
    cancelFileLoading();
}

void BackgroundImage::logUnreadable(const QString& picturePath, const QString& reason)
{
    const QString category = QStringLiteral("Torvik::BackgroundImage");
    Logging::CLogger::logMessage(Logging::LogError, category,
                                 QStringLiteral("Failed to load image from path: ") + picturePath);
    Logging::CLogger::logMessage(Logging::LogTrace, category, reason);
}

void BackgroundImage::onPictureReady() {}

void BackgroundImage::finish(const QString& fullPath)
{
    setFullPath(fullPath);
    createBackgroundFromImage();
    onPictureReady();
    setEnabled(true);
    if (const Qt3DRender::QCamera* const camera = SceneRoot::camera())
        setPosition(camera->viewCenter(), 0);
    savePlanTransformationInCamera();
    emit backgroundLoadingFinished(this);
}

void BackgroundImage::createBackgroundFromImage()
{
    if (m_image.isNull())
        return;
    const float lowestY = LowestManholeTracker::instance()->getCurrentLowestY();
    auto* const plane = new Qt3DCore::QEntity;
    m_planeTransform = new Qt3DCore::QTransform(plane);
    m_planeTransform->setRotationY(180.0F);

    auto* const mesh = new Qt3DExtras::QPlaneMesh(plane);
    const float longer = float(GdalGeoProjector::instance()->scale()) * m_planeSide;
    const float width = float(m_image.width());
    const float height = float(m_image.height());
    mesh->setWidth(width > height ? longer : longer * width / height);
    mesh->setHeight(width > height ? longer * height / width : longer);
    m_additionalTranslationCorrect = QVector3D(mesh->width() * 0.5F, 0.0F, -(mesh->height() * 0.5F));

    plane->addComponent(mesh);
    plane->addComponent(pictureMaterial(m_image, plane));
    plane->addComponent(m_planeTransform);
    m_image = {};
    setElevation(lowestY * get3dOneMeter());
    plane->setParent(this);
}

} // namespace Torvik::View3d
