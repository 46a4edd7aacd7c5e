#include "plans/BackgroundController.h"

#include "interaction/Utils3d.h"
#include "plans/PlanAlignment.h"

namespace Torvik::View3d {

namespace {

/** An aligned plan's place comes from what was seen in the scene. */
constexpr IBackgroundPlan::MeasurementType sourceOfPlace = TransformFlags::Observations;
const QVector3D north(0.0F, 0.0F, 1.0F);

} // namespace

BackgroundController::BackgroundController(QObject* parent)
    : QObject(parent)
{
}

IBackgroundPlan* BackgroundController::getTargetPlan() const
{
    return m_target;
}

void BackgroundController::setTargetPlan(IBackgroundPlan* plan)
{
    if (m_target == plan)
        return;
    m_target = plan;
    emit targetPlanChanged();
}

bool BackgroundController::hasTarget() const
{
    if (!m_target)
        qCritical("target plan of type IBackground must be set");
    return m_target;
}

void BackgroundController::apply(const QMatrix4x4& rotation)
{
    Qt3DCore::QTransform* const transform = m_target->placement();
    transform->setMatrix(rotation * transform->matrix());
}

void BackgroundController::rememberPlaceInCamera()
{
    if (m_target->isLocked())
        m_target->savePlanTransformationInCamera();
}

void BackgroundController::scale(const QVector3D& a1, const QVector3D& a2, const QVector3D& b1, const QVector3D& b2)
{
    const float factor = PlanAlignment::stretch(a1, a2, b1, b2);
    Qt3DCore::QTransform* const transform = m_target->placement();
    const QMatrix4x4 rotation = PlanAlignment::rotationFromFourPoints(a1, a2, b1, b2);
    transform->setScale3D(transform->scale3D() * QVector3D(factor, 1.0F, factor));
    apply(rotation);
    m_target->move(PlanAlignment::moveAfterScaling(a1, b1, factor, transform->translation()), sourceOfPlace);
    rememberPlaceInCamera();
}

void BackgroundController::scalePlanFile(QVector3D A1, QVector3D A2, QVector3D B1, QVector3D B2)
{
    if (hasTarget())
        scale(A1, A2, B1, B2);
}

void BackgroundController::setPlanScaleWithSectionAndValue(QVector3D A1, QVector3D A2, QVector3D valueVector, QVector3D)
{
    if (hasTarget())
        scale(A1, A2, A1, PlanAlignment::endAtLength(A1, A2, valueVector.x()));
}

void BackgroundController::rotatePlanFile(QVector3D pointStartFrom, QVector3D pointEndFrom, QVector3D pointStartTo,
                                          QVector3D pointEndTo)
{
    if (!hasTarget())
        return;
    apply(PlanAlignment::rotationFromFourPoints(pointStartFrom, pointEndFrom, pointStartTo, pointEndTo));
    m_target->move(pointStartTo - pointStartFrom, sourceOfPlace);
    rememberPlaceInCamera();
}

void BackgroundController::setPlanNorthDirection(QVector3D pointStartFrom, QVector3D pointEndFrom, QVector3D, QVector3D)
{
    if (!hasTarget())
        return;
    QVector3D axis;
    float angleDeg = 0.0F;
    Utils3d::getAxisAndAngle(PlanAlignment::turn(pointEndFrom - pointStartFrom, north), axis, angleDeg);
    apply(PlanAlignment::rotationAround(pointStartFrom, angleDeg, axis));
    rememberPlaceInCamera();
}

} // namespace Torvik::View3d
