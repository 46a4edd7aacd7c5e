#include "host/app/CameraPose.h"

#include <algorithm>
#include <cmath>

namespace Torvik::Viewer {

namespace {

constexpr double fitMargin = 1.06;
constexpr double distanceWithoutContent = 350.0;
constexpr float usualNear = 1.0f;
constexpr float usualFar = 10000.0f;

/** Beyond this distance the usual near plane costs more depth than a pipe's radius. */
constexpr float narrowBeyond = 700.0f;

/** From the point looked at towards the camera. */
QVector3D backwards(StandardView view)
{
    switch (view) {
    case StandardView::Top:
        return {0, 1, 0};
    case StandardView::Front:
        return {0, 0, -1};
    case StandardView::Perspective:
        break;
    }
    return QVector3D(0, 1, -1).normalized();
}

QVector3D upwards(StandardView view)
{
    switch (view) {
    case StandardView::Top:
        return {0, 0, 1};
    case StandardView::Front:
        return {0, 1, 0};
    case StandardView::Perspective:
        break;
    }
    return QVector3D(0, 1, 1).normalized();
}

} // namespace

double tangentOfHalfLens()
{
    return std::tan(lensAngleDeg * M_PI / 360.0);
}

void Bounds::add(const QVector3D& center, float radius)
{
    const QVector3D low = center - QVector3D(radius, radius, radius);
    const QVector3D high = center + QVector3D(radius, radius, radius);
    for (int axis = 0; axis < 3; ++axis) {
        m_lowest[axis] = m_empty ? low[axis] : std::min(m_lowest[axis], low[axis]);
        m_highest[axis] = m_empty ? high[axis] : std::max(m_highest[axis], high[axis]);
    }
    m_empty = false;
}

CameraPose standardPose(StandardView view, const QVector3D& center, double distance)
{
    return {center + backwards(view) * float(distance), center, upwards(view)};
}

CameraPose movedPose(const CameraPose& pose, const QVector3D& center, double distance)
{
    const QVector3D back = (pose.position - pose.center).normalized();
    return {center + back * float(distance), center, pose.up};
}

double distanceToFit(const Bounds& bounds, StandardView view, double aspect)
{
    return distanceToFit(bounds, standardPose(view, {}, 1), aspect);
}

double distanceToFit(const Bounds& bounds, const CameraPose& direction, double aspect)
{
    const QVector3D back = (direction.position - direction.center).normalized();
    const QVector3D up = (direction.up - back * QVector3D::dotProduct(direction.up, back)).normalized();
    const QVector3D right = QVector3D::crossProduct(up, back);
    const QVector3D half = bounds.highest() - bounds.center();
    const double tangent = tangentOfHalfLens();

    double distance = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const QVector3D offset(corner & 1 ? half.x() : -half.x(), corner & 2 ? half.y() : -half.y(),
                               corner & 4 ? half.z() : -half.z());
        const double sideways = std::abs(double(QVector3D::dotProduct(offset, right)));
        const double upward = std::abs(double(QVector3D::dotProduct(offset, up)));
        const double nearer = double(QVector3D::dotProduct(offset, back));
        distance = std::max(
            {distance, upward * fitMargin / tangent + nearer, sideways * fitMargin / (tangent * aspect) + nearer});
    }
    return std::max(distance, closestFit);
}

CameraPose fittingPose(const Bounds& bounds, StandardView view, double aspect)
{
    if (bounds.isEmpty())
        return standardPose(view, {}, distanceWithoutContent);
    return standardPose(view, bounds.center(), distanceToFit(bounds, view, aspect));
}

LensRange lensRange(const CameraPose& pose, const Bounds& bounds)
{
    const float viewed = (pose.center - pose.position).length();
    const float toBounds = (bounds.center() - pose.position).length();
    const float reach = bounds.radius();
    LensRange range {usualNear, usualFar};
    range.farPlane = std::max({range.farPlane, (toBounds + reach) * 1.05f, viewed * 1.5f});
    if (viewed > narrowBeyond)
        range.nearPlane = std::max(range.nearPlane, std::min((toBounds - reach) * 0.95f, viewed * 0.5f));
    return range;
}

} // namespace Torvik::Viewer
