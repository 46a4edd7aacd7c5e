#include "plans/BackgroundDxf.h"

#include "domain/boundary/CLogger.h"
#include "domain/boundary/DXFWorker.h"
#include "geo/GdalGeoProjector.h"
#include "plans/PlanSettingsIO.h"
#include "scene/ReadableEffect.h"
#include "scene/SceneRoot.h"

#include <QScopedValueRollback>
#include <QThread>

#include <cmath>

namespace Torvik::View3d {

namespace {

constexpr unsigned drawingErrors = 0x150100;

bool isFar(const Vector3D<double>& offset)
{
    return std::hypot(offset.x(), offset.z()) > PlanPlaces::farAway;
}

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
    m_cancelled = false;
    m_cancellationTold = false;
    m_thread = new QThread;
    m_worker = new DXF::DXFWorker(nullptr, QThread::currentThread());
    m_worker->moveToThread(m_thread);
    m_arrived = std::make_shared<Arrived>(nullptr);
    const auto load = m_arrived;
    connect(m_thread, &QThread::started, m_worker, &DXF::DXFWorker::loadFile);
    // From its signal on the entity is this plan's, which may end before it hears of it.
    connect(
        m_worker, &DXF::DXFWorker::loadingFinished, m_worker, [load](Qt3DCore::QEntity* entity) { *load = entity; },
        Qt::DirectConnection);
    connect(m_worker, &DXF::DXFWorker::loadingFinished, this, [this, load](Qt3DCore::QEntity* entity) {
        if (load == m_arrived)
            onLoadingFinished(entity);
    });
    connect(m_worker, &DXF::DXFWorker::loadingCancelled, this, [this, load] {
        if (load == m_arrived)
            onLoadingCancelled();
    });
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
    delete m_arrived->exchange(nullptr);
    m_arrived.reset();
}

void BackgroundDxf::onLoadingCancelled()
{
    m_cancellationTold = true;
    emit backgroundLoadingWasCancelled();
}

void BackgroundDxf::onLoadingFinished(Qt3DCore::QEntity* entity)
{
    if (m_arrived)
        *m_arrived = nullptr;
    endThread();
    if (m_cancelled) {
        delete entity;
        // The reader had already ended when the cancellation came.
        if (!m_cancellationTold)
            onLoadingCancelled();
        return;
    }
    if (!entity) {
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
    const Vector3D<double> crop(double(cropOffset.x()) * double(scale), double(cropOffset.y()),
                                double(cropOffset.z()) * double(scale));
    QMatrix4x4 matrix;
    matrix.scale(scale, 1.0F, scale);
    if (isFar(crop))
        placeByMiddle(crop);
    else {
        placeByOrigin();
        matrix.translate(cropOffset);
    }
    m_drawingTransform->setMatrix(matrix);
    const Qt3DRender::QCamera* const camera = SceneRoot::camera();
    const QVector3D centre = camera ? camera->viewCenter() : QVector3D();
    if (m_middle)
        m_middle->setTranslation(centre);
    else
        setPosition(centre - cropOffset * scale, 0);
}

void BackgroundDxf::placeByOrigin()
{
    if (!m_middle)
        return;
    delete m_middle;
    m_middle = nullptr;
    addComponent(transform());
}

void BackgroundDxf::placeByMiddle(const Vector3D<double>& crop)
{
    m_originToMiddle = crop;
    if (m_middle) {
        takeOrigin();
        return;
    }
    removeComponent(transform());
    m_middle = new Qt3DCore::QTransform(this);
    takeOrigin();
    addComponent(m_middle);
    connect(m_middle, &Qt3DCore::QTransform::matrixChanged, this, &BackgroundDxf::tellOrigin);
    connect(transform(), &Qt3DCore::QTransform::matrixChanged, this, &BackgroundDxf::takeOrigin);
}

void BackgroundDxf::tellOrigin()
{
    if (m_telling)
        return;
    const QScopedValueRollback<bool> telling(m_telling, true);
    transform()->setMatrix(PlanPlaces::shifted(m_middle->matrix(), m_originToMiddle * -1.0), 0);
    // What moves the middle may be too small to move the origin.
    tellChange();
}

void BackgroundDxf::takeOrigin()
{
    if (m_telling || !m_middle)
        return;
    const QScopedValueRollback<bool> telling(m_telling, true);
    m_middle->setMatrix(PlanPlaces::shifted(transform()->matrix(), m_originToMiddle));
}

Qt3DCore::QTransform* BackgroundDxf::placement() const
{
    return m_middle ? m_middle : IBackgroundPlan::placement();
}

void BackgroundDxf::move(QVector3D vector, MeasurementType flags)
{
    transform()->resetFlagsIfKnown(flags);
    placement()->setTranslation(placement()->translation() + vector);
}

void BackgroundDxf::setPlace(const PlanPlace& place)
{
    if (m_middle)
        m_middle->setMatrix(PlanPlaces::matrixAt(place, m_originToMiddle));
    else
        IBackgroundPlan::setPlace(place);
}

bool BackgroundDxf::savePlanFile(const QString& projectPath)
{
    if (!m_middle)
        return IBackgroundPlan::savePlanFile(projectPath);
    return PlanSettingsIO::savePlanFile(projectPath, PlanPlaces::originOf(m_middle->matrix(), m_originToMiddle),
                                        fullPath());
}

void BackgroundDxf::followView()
{
    // A reader's entity may draw less from afar; one that doesn't is never told.
    if (m_drawing->metaObject()->indexOfMethod("setUnitsPerPixel(float)") < 0)
        return;
    SceneRoot* const root = SceneRoot::instance();
    connect(root, &SceneRoot::sceneHeightChanged, m_drawing, [this] { tellViewScale(); });
    connect(placement(), &Qt3DCore::QTransform::matrixChanged, m_drawing, [this] { tellViewScale(); });
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
    const float metresPerUnit = (placement()->matrix() * m_drawingTransform->matrix()).column(0).length();
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
        placement()->setMatrix(camera->transform()->matrix() * m_drawingInCamera);
}

void BackgroundDxf::rayToDxfInCameraUpdate()
{
    if (const Qt3DRender::QCamera* const camera = SceneRoot::camera())
        m_drawingInCamera = camera->transform()->matrix().inverted() * placement()->matrix();
}

} // namespace Torvik::View3d
