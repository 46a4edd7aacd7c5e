#include "plans/IBackgroundPlan.h"

#include "plans/PlanSettingsIO.h"
#include "scene/SceneRoot.h"

#include <QFile>
#include <QFileInfo>

namespace Torvik::View3d {

namespace {

const QVector3D up(0.0F, 1.0F, 0.0F);

Qt3DCore::QTransform* cameraTransform()
{
    const Qt3DRender::QCamera* const camera = SceneRoot::camera();
    return camera ? camera->transform() : nullptr;
}

} // namespace

IBackgroundPlan::IBackgroundPlan(SceneRoot* scene)
    : Renderable(scene)
{
}

IBackgroundPlan::~IBackgroundPlan() = default;

void IBackgroundPlan::savePlanTransformationInCamera()
{
    if (const Qt3DCore::QTransform* const camera = cameraTransform())
        m_transformationInCamera = camera->matrix().inverted() * placement()->matrix();
}

void IBackgroundPlan::planTransformUpdate()
{
    const Qt3DCore::QTransform* const camera = cameraTransform();
    if (!camera)
        return;
    QVector4D place = camera->matrix() * m_transformationInCamera.column(3);
    QMatrix4x4 matrix = placement()->matrix();
    place.setY(placement()->translation().y());
    matrix.setColumn(3, place);
    placement()->setMatrix(matrix);
}

Qt3DCore::QTransform* IBackgroundPlan::placement() const
{
    return transform();
}

bool IBackgroundPlan::isLocked() const
{
    return m_locked;
}

void IBackgroundPlan::setLock(bool lock)
{
    if (m_locked == lock)
        return;
    m_locked = lock;
    if (lock) {
        savePlanTransformationInCamera();
        m_followed = cameraTransform();
        if (m_followed)
            connect(m_followed, &Qt3DCore::QTransform::matrixChanged, this, &IBackgroundPlan::planTransformUpdate);
    } else {
        if (m_followed)
            disconnect(m_followed, nullptr, this, nullptr);
        planTransformUpdate();
    }
    emit layerLockChanged(lock);
}

void IBackgroundPlan::setPosRotScaleFromPlanSettings(QVector3D position, QVector3D rotation, QVector3D scale)
{
    const QVector3D anchor = scale * getAdditionalTranslationCorrect();
    QMatrix4x4 matrix;
    matrix.translate(position - anchor);
    matrix *= Qt3DCore::QTransform::rotateAround(anchor, rotation.y(), up);
    matrix.scale(scale);
    transform()->setMatrix(matrix, 0);
}

void IBackgroundPlan::setPlace(const PlanPlace& place)
{
    setPosRotScaleFromPlanSettings(place.position.toQVector3D(), {0.0F, float(place.turnDeg), 0.0F}, place.scale);
}

void IBackgroundPlan::setElevation(float y)
{
    const QVector3D place = placement()->translation();
    placement()->setTranslation(QVector3D(place.x(), y, place.z()));
}

QString IBackgroundPlan::fullPath() const
{
    return m_planFullPath;
}

QString IBackgroundPlan::fileName() const
{
    return QFileInfo(QFile(fullPath())).fileName();
}

void IBackgroundPlan::setFullPath(QString path)
{
    m_planFullPath = std::move(path);
}

bool IBackgroundPlan::savePlanFile(const QString& projectPath)
{
    return PlanSettingsIO::savePlanFile(projectPath, *transform(), fullPath(), getAdditionalTranslationCorrect());
}

bool IBackgroundPlan::isReady()
{
    return true;
}

void IBackgroundPlan::destroyLater()
{
    deleteLater();
}

} // namespace Torvik::View3d
