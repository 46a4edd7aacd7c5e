#include "plans/BackgroundDxf.h"

#include "domain/boundary/CLogger.h"
#include "domain/boundary/DXFWorker.h"
#include "geo/GdalGeoProjector.h"
#include "scene/ReadableEffect.h"
#include "scene/SceneRoot.h"

#include <QThread>

namespace Torvik::View3d {

namespace {

constexpr unsigned drawingErrors = 0x150100;

} // namespace

BackgroundDxf::BackgroundDxf(const QString& path, SceneRoot* scene)
    : IBackgroundPlan(scene)
    , m_path(path)
{
    setEnabled(false);
    setObjectName(QStringLiteral("Background Plan - Dxf"));
    setFullPath(QString());
}

BackgroundDxf::~BackgroundDxf()
{
    if (m_worker)
        m_worker->cancelLoading();
    endThread();
}

QString BackgroundDxf::renderableType() const
{
    return QStringLiteral("dxfbackground");
}

QVector3D BackgroundDxf::getAdditionalTranslationCorrect() const
{
    return {};
}

void BackgroundDxf::cancelFileLoading()
{
    m_cancelled = true;
    if (m_worker)
        m_worker->cancelLoading();
}

bool BackgroundDxf::isLocked() const
{
    return m_drawingLocked;
}

bool BackgroundDxf::isReady()
{
    return m_drawing != nullptr;
}

void BackgroundDxf::load()
{
    loadFile(m_path);
}

void BackgroundDxf::loadFile(const QString& path)
{
    endThread();
    m_path = path;
    m_thread = new QThread;
    m_worker = new DXF::DXFWorker(nullptr, QThread::currentThread());
    m_worker->moveToThread(m_thread);
    connect(m_thread, &QThread::started, m_worker, &DXF::DXFWorker::loadFile);
    connect(m_worker, &DXF::DXFWorker::loadingFinished, this, &BackgroundDxf::onLoadingFinished);
    connect(m_worker, &DXF::DXFWorker::loadingCancelled, this, &BackgroundDxf::onLoadingCancelled);
    m_worker->setLoadedFilePath(path);
    m_thread->start();
}

void BackgroundDxf::endThread()
{
    if (!m_thread)
        return;
    m_thread->quit();
    m_thread->wait();
    delete m_worker;
    delete m_thread;
    m_worker = nullptr;
    m_thread = nullptr;
}

void BackgroundDxf::onLoadingCancelled()
{
    emit backgroundLoadingWasCancelled();
}

void BackgroundDxf::onLoadingFinished(Qt3DCore::QEntity* entity)
{
    endThread();
    if (!entity) {
        if (m_cancelled)
            return;
        Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::DXF_3d"),
                                     QStringLiteral("Failed to load image from path: ") + m_path);
        emit fileCorrupted(createErrorCode(Unreadable));
        return;
    }
    delete m_drawing;
    m_drawing = entity;
    m_drawing->setParent(this);
    m_drawingTransform = new Qt3DCore::QTransform(m_drawing);
    m_drawing->addComponent(m_drawingTransform);
    setFullPath(m_path);
    setEnabled(true);
    placeDrawing();
    followView();
    savePlanTransformationInCamera();
    emit backgroundLoadingFinished(this);
}

void BackgroundDxf::placeDrawing()
{
    const QVector3D cropOffset = m_drawing->property("dxfCropOffset").value<QVector3D>();
    const float scale = float(GdalGeoProjector::instance()->scale());
    QMatrix4x4 matrix;
    matrix.scale(scale, 1.0F, scale);
    matrix.translate(cropOffset);
    m_drawingTransform->setMatrix(matrix);
    const Qt3DRender::QCamera* const camera = SceneRoot::camera();
    const QVector3D centre = camera ? camera->viewCenter() : QVector3D();
    setPosition(centre - cropOffset * scale, 0);
}

void BackgroundDxf::followView()
{
    // A reader's entity may draw less from afar; one that doesn't is never told.
    if (m_drawing->metaObject()->indexOfMethod("setUnitsPerPixel(float)") < 0)
        return;
    SceneRoot* const root = SceneRoot::instance();
    connect(root, &SceneRoot::sceneHeightChanged, m_drawing, [this] { tellViewScale(); });
    connect(transform(), &Qt3DCore::QTransform::matrixChanged, m_drawing, [this] { tellViewScale(); });
    if (const Qt3DRender::QCamera* const camera = SceneRoot::camera()) {
        connect(camera, &Qt3DRender::QCamera::viewVectorChanged, m_drawing, [this] { tellViewScale(); });
        connect(camera, &Qt3DRender::QCamera::fieldOfViewChanged, m_drawing, [this] { tellViewScale(); });
    }
    tellViewScale();
}

void BackgroundDxf::tellViewScale()
{
    const Qt3DRender::QCamera* const camera = SceneRoot::camera();
    const SceneRoot* const root = SceneRoot::instance();
    if (!camera || !root)
        return;
    const float metres =
        Readable::metresPerPixel(camera->viewVector().length(), camera->fieldOfView(), float(root->sceneHeight()));
    const float metresPerUnit = (transform()->matrix() * m_drawingTransform->matrix()).column(0).length();
    if (metresPerUnit > 0.0F)
        QMetaObject::invokeMethod(m_drawing, "setUnitsPerPixel", Q_ARG(float, metres / metresPerUnit));
}

Base::CErrorCode BackgroundDxf::createErrorCode(Error error)
{
    return Base::CErrorCode(drawingErrors | unsigned(error));
}

void BackgroundDxf::dxfTransformUpdate()
{
    if (const Qt3DRender::QCamera* const camera = SceneRoot::camera())
        transform()->setMatrix(camera->transform()->matrix() * m_drawingInCamera, 0);
}

void BackgroundDxf::rayToDxfInCameraUpdate()
{
    if (const Qt3DRender::QCamera* const camera = SceneRoot::camera())
        m_drawingInCamera = camera->transform()->matrix().inverted() * transform()->matrix();
}

} // namespace Torvik::View3d
