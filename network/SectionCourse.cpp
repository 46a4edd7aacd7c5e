#include "network/Section.h"

#include "domain/SectionAdapterBase.h"
#include "measurement/InspectionCommands.h"
#include "network/EntitySegment.h"
#include "network/Node.h"
#include "network/OutletMath.h"
#include "network/Pipe.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"

#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QMesh>

#include <QUrl>

/** The course of a section: turning, bending, growing, and the arrow that tells whither. Third part of Section's
 * source.
 */
namespace Torvik::View3d {

namespace {

constexpr float arrowScale = 1.5F;

bool realTime()
{
    return GlobalNav::instance()->realTimeEnabled();
}

} // namespace

QVector3D Section::pointAtFirstSegmentEnd() const
{
    const EntitySegment* const first = m_pipe->firstSegment();
    return m_pipe->getTransformMatrixAtDistance(first ? first->length() : 0.0F).column(3).toVector3D();
}

QVector3D Section::direction() const
{
    return (position() - pointAtFirstSegmentEnd()).normalized();
}

void Section::rotateToTarget(const QVector3D& target, int flags)
{
    const QVector3D up = m_pipe->firstSegment()->upDirection();
    setRotation(QQuaternion::fromDirection(target - position(), up), flags);
    emit sectionGeometryChanged();
}

void Section::rotateToEndNodeDirection()
{
    if (!m_autorotation || !m_startNode || !m_endNode || transform()->positionBound())
        return;
    if (m_endNode->isVirtual() || !m_endNode->transform()->positionBound() || m_startNode->isVirtual())
        return;
    rotateToTarget(getOutletPosition(m_endNode), 0);
}

void Section::rotateToPointDirection(QVector3D pointEndTo, int flags)
{
    const QVector3D end = m_pipe->getTransformMatrixAtDistance(m_pipe->length()).column(3).toVector3D();
    const QMatrix4x4 turn = OutletMath::turnTowardsPoint(position(), end, pointEndTo);
    transform()->setMatrix(turn * transform()->matrix(), flags);
    recalculateManualRotationOffset();
    emit sectionGeometryChanged();
}

void Section::rotateToTargetAngleY(float angle, int flags)
{
    transform()->setRotationY(angle, flags);
    recalculateManualRotationOffset();
    emit sectionGeometryChanged();
}

void Section::rotateToTargetInclination(float angle, int flags)
{
    m_inspection->rotateToTargetInclination(angle, flags);
    recalculateManualRotationOffset();
    emit sectionGeometryChanged();
}

float Section::inclination() const
{
    return m_inspection->inclination();
}

float Section::northRotation() const
{
    return OutletMath::northRotation(position(), pointAtFirstSegmentEnd());
}

QMatrix4x4 Section::pipeTransMatrixAtDistance(float distance) const
{
    if (!m_secondPipe)
        return m_pipe->getTransformMatrixAtDistance(distance);
    const QMatrix4x4 onMainPipe = m_pipe->getTransformMatrixAtDistanceOrZero(distance);
    if (!onMainPipe.isIdentity())
        return onMainPipe;
    const float fromFarEnd = m_props->sectionLength().toFloat() - distance;
    return m_secondPipe->getTransformMatrixAtDistance(m_secondPipe->length() - fromFarEnd);
}

QMatrix4x4 Section::pipeTransMatrixAtEndNodeObs() const
{
    return m_pipe->getTransformMatrixAtDistance(m_endDistance);
}

void Section::addBend(float clock, float angle, float distance)
{
    if (!realTime()) {
        m_inspection->addBend(clock, angle, distance);
        setTransformFlags(TransformFlags::Manual);
        m_shapeAccess.writePoints(this);
    }
    emit sectionGeometryChanged();
}

void Section::modifyBend(float clock, float angle, float distance)
{
    if (!realTime()) {
        m_inspection->modifyBend(clock, angle, distance);
        m_shapeAccess.writePoints(this);
    }
    emit sectionGeometryChanged();
}

void Section::removeBend(float distance)
{
    if (!realTime()) {
        m_inspection->removeBend(distance);
        m_shapeAccess.writePoints(this);
    }
    emit sectionGeometryChanged();
}

void Section::onDistanceCounterChanged(double distance)
{
    if (hasMultipipe())
        return;
    m_inspection->setDistance(static_cast<float>(distance), !realTime());
    if (!realTime()) {
        m_shapeAccess.writePoints(this);
        testLateralProximity(distance);
    }
    if (m_startNode && !needsDirectionArrow())
        hideDirectionArrow();
    if (m_props->isLateral())
        refreshConnectionVisibility();
    emit sectionGeometryChanged();
}

void Section::onTransformFlagsChanged()
{
    if (m_startNode && transform()->positionBound()) {
        // A section with a fixed place no longer follows its start node.
        disconnectNodeSignals(m_startNode);
        return;
    }
    if (!transform()->hasPosition())
        m_shapeAccess.clearPoints(this);
}

void Section::createDirectionArrow()
{
    if (m_directionArrow)
        return;
    m_directionArrow = new Qt3DCore::QEntity(this);
    m_directionArrow->setEnabled(false);
    auto* const mesh = new Qt3DRender::QMesh(m_directionArrow);
    mesh->setSource(QUrl(QStringLiteral("qrc:/models/dirArrow.obj")));
    auto* const place = new Qt3DCore::QTransform(m_directionArrow);
    place->setRotationY(180.0F);
    place->setScale(arrowScale);
    m_directionArrowMesh = mesh;
    m_directionArrow->addComponent(place);
    if (const SceneRoot* const root = SceneRoot::instance(); root && root->materialSelected())
        m_directionArrow->addComponent(root->materialSelected());
}

void Section::showDirectionArrow()
{
    if (m_startNode && m_startNode->isVirtual())
        return;
    createDirectionArrow();
    if (isDirectionArrowShown())
        return;
    m_directionArrow->setEnabled(true);
    m_directionArrow->addComponent(m_directionArrowMesh);
}

void Section::hideDirectionArrow()
{
    if (!isDirectionArrowShown())
        return;
    m_directionArrow->setEnabled(false);
    // Picking would hit it, hidden or not.
    m_directionArrow->removeComponent(m_directionArrowMesh);
}

bool Section::isDirectionArrowShown() const
{
    return m_directionArrow && m_directionArrow->isEnabled();
}

bool Section::needsDirectionArrow() const
{
    return hasUpstreamNode() && OutletMath::tooShortToShowDirection(m_pipe->length());
}

bool Section::hasDirectionArrow() const
{
    return hasUpstreamNode() && m_props->isSection();
}

} // namespace Torvik::View3d
