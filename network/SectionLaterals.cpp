#include "network/Section.h"

#include "domain/SectionAdapterBase.h"
#include "domain/boundary/CLogger.h"
#include "network/JointMath.h"
#include "network/Node.h"
#include "network/ObservationConnection.h"
#include "network/Pipe.h"
#include "scene/SceneEntities.h"

#include <QScopedValueRollback>

/** The ties between a section and its laterals, from both sides. Fourth part of Section's source. */
namespace Torvik::View3d {

namespace {

/** The crawler is at a lateral within this way, in metres. */
constexpr float proximity = 0.5F;
/** A longer pipe takes the place of the stub at its joint. */
constexpr float stubLength = 0.1F;
/** Behind the short first segment of a pipe that has only begun. */
constexpr float offsetDistance = 0.1F;

void logError(const char* message)
{
    Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("View3d::Section"), QLatin1String(message));
}

ObservationConnection* connectionOf(const QString& lateralId)
{
    return SceneEntities::instance().getLateralConnections().value(lateralId);
}

} // namespace

void Section::addLateralConnection(const QString& ref, ObservationConnection* connection)
{
    m_laterals[ref] = connection->getDistance();
    emit lateralConnectionAdded(ref, connection);
}

void Section::removeLateralConnection(const QString& ref)
{
    if (m_laterals.remove(ref) > 0)
        emit lateralConnectionRemoved(ref);
}

void Section::refreshLateralBy(const QString& ref, void (Section::*follow)())
{
    const ObservationConnection* const connection = connectionOf(ref);
    if (!connection) {
        logError("RefreshLateral: lateral connection observation does not exist among scene entities.");
        return;
    }
    if (!m_laterals.contains(ref))
        m_laterals.insert(ref, connection->getDistance());
    const auto sections = SceneEntities::instance().getPipeEntities().getBySectionId(ref);
    for (Section* section : sections) {
        if (!section)
            return;
        (section->*follow)();
        section->refreshName();
    }
}

void Section::refreshLateral(const QString& ref)
{
    refreshLateralBy(ref, &Section::reposition);
}

void Section::refreshLateralFromObservationConnection(const QString& ref)
{
    refreshLateralBy(ref, &Section::repositionObservationConnection);
}

void Section::testLateralProximity(double distance)
{
    const float here = static_cast<float>(distance);
    for (auto lateral = m_laterals.constBegin(); lateral != m_laterals.constEnd(); ++lateral) {
        if (*lateral < here - proximity || *lateral > here + proximity)
            continue;
        const auto sections = SceneEntities::instance().getPipeEntities().getBySectionId(lateral.key());
        if (!sections.isEmpty() && sections.first()->inspectionUpstream()) {
            m_lateralInProximity = true;
            emit lateralInProximity(lateral.key());
        }
        return;
    }
    // The flag stays, so that every further step out of range says it again.
    if (m_lateralInProximity)
        emit lateralNotInProximity();
}

void Section::reposition()
{
    followConnection(true);
}

void Section::repositionObservationConnection()
{
    followConnection(false);
}

void Section::followConnection(bool keepOffset)
{
    // Records may name each other in a ring.
    if (m_repositioning)
        return;
    const QScopedValueRollback busy(m_repositioning, true);
    if (m_props->isLateral()) {
        ObservationConnection* const connection = connectionToParent();
        if (!connection)
            return;
        if (!keepOffset || !inspectionDownstream())
            repositionToParent(connection, keepOffset);
        recalculateManualRotationOffset();
        if (Node* const node = keepOffset ? downstreamNode() : nullptr)
            node->moveToRenderable(connection);
        refreshConnectionVisibility();
    }
    m_shapeAccess.writePoints(this);
    emit sectionGeometryChanged();
}

ObservationConnection* Section::connectionToParent() const
{
    ObservationConnection* const connection = connectionOf(m_props->sectionId());
    if (!connection)
        logError("refreshGeometry: lateral connection does not exist");
    return connection;
}

void Section::repositionToParent(Renderable* parent, bool keepOffset)
{
    const QMatrix4x4 joint = parent->transformMatrix();
    if (keepOffset) {
        transform()->setTranslation(joint.column(3).toVector3D(), 0);
        transform()->setRotation(QQuaternion::fromRotationMatrix(joint.normalMatrix()) * m_manualRotationOffset, 0);
    } else {
        pointAlong(joint);
    }
}

void Section::pointAlong(const QMatrix4x4& joint)
{
    Qt3DCore::QTransform place;
    place.setMatrix(joint);
    const QVector3D direction = place.rotation().rotatedVector({0.0F, 0.0F, 1.0F});
    transform()->setTranslation(place.translation(), 0);
    transform()->setRotation(QQuaternion::fromDirection(direction, {0.0F, 1.0F, 0.0F}), 0);
}

void Section::recalculateManualRotationOffset()
{
    if (!m_props->isLateral())
        return;
    if (ObservationConnection* const connection = connectionOf(m_props->sectionId()))
        m_manualRotationOffset = computeManualRotationMatrix(connection);
}

QQuaternion Section::computeManualRotationMatrix(ObservationConnection* connection) const
{
    return JointMath::offsetFromJoint(connection->transformMatrix(),
                                      m_pipe->getTransformMatrixAtDistance(offsetDistance));
}

void Section::refreshConnectionVisibility()
{
    ObservationConnection* const connection = connectionOf(m_props->sectionId());
    if (!connection)
        return;
    if (m_pipe->length() > stubLength)
        connection->hideConnection();
    else
        connection->showConnection();
}

void Section::snapLateralToNode(Node* node)
{
    if (!node)
        return;
    if (inspectionDownstream())
        startAtNode(node);
    else
        startAtJoint(node);
    Logging::CLogger::logMessage(Logging::LogInformation, QStringLiteral("View3d::Section"),
                                 QStringLiteral("Lateral %1 snapped to Node %1").arg(name()));
}

void Section::startAtNode(Node* node)
{
    transform()->setTranslation(node->transform()->translation(), 0);
    if (m_endNode)
        rotateToPointDirection(m_endNode->position(), 0);
}

void Section::startAtJoint(Node* node)
{
    ObservationConnection* const connection = connectionOf(m_props->sectionId());
    if (!connection) {
        logError("Lateral connection does not exist");
        return;
    }
    refreshConnectionVisibility();
    pointAlong(connection->transformMatrix());
    transform()->resetFlags(TransformFlags::Observations);
    node->transform()->setRotation(rotation(), 0);
    node->transform()->setTranslation(position(), 0);
    node->transform()->resetFlags(TransformFlags::Observations);
}

} // namespace Torvik::View3d
