#include "network/ChainMath.h"

#include <cmath>

namespace Torvik::View3d::ChainMath {

namespace {

constexpr float verticalTolerance = 0.01F;

} // namespace

float totalLength(const QVector<float>& lengths)
{
    float sum = 0.0F;
    for (const float length : lengths)
        sum += length;
    return sum;
}

Place placeAtDistance(const QVector<float>& lengths, float distance)
{
    for (int i = 0; i < lengths.size(); ++i) {
        if (lengths[i] > distance)
            return {i, distance};
        distance -= lengths[i];
    }
    return {-1, distance};
}

SegmentAction nearestSegmentAction(const QVector<float>& lengths, float distance, float tolerance)
{
    auto left = static_cast<double>(distance);
    for (int i = 0; i < lengths.size(); ++i) {
        const double before = left;
        left -= static_cast<double>(lengths[i]);
        const bool onJoint = std::abs(left) <= static_cast<double>(tolerance);
        if (onJoint && i == lengths.size() - 1)
            return {SegmentAction::AddAtChainEnd, -1, static_cast<float>(before), distance};
        if (onJoint)
            return {SegmentAction::UseNextSegment, i, static_cast<float>(before), distance};
        if (left < 0.0)
            return {SegmentAction::SplitSegment, i, static_cast<float>(before), distance};
    }
    return {SegmentAction::AddAtChainEnd, -1, static_cast<float>(left), distance};
}

bool isVertical(const QVector3D& direction)
{
    return std::abs(direction.x()) < verticalTolerance && std::abs(direction.z()) < verticalTolerance &&
           std::abs(std::abs(direction.y()) - 1.0F) < verticalTolerance;
}

QVector3D upVector(const QVector3D& direction, const Frame& previous, const QVector3D& worldUp)
{
    if (!isVertical(direction))
        return worldUp;
    return QVector3D::crossProduct(QVector3D::crossProduct(previous.direction, previous.up), direction);
}

QMatrix4x4 pivot(const QVector3D& begin, const QQuaternion& rotation)
{
    QMatrix4x4 matrix;
    matrix.translate(begin);
    matrix.rotate(rotation);
    return matrix;
}

QMatrix4x4 inversePivot(const QVector3D& begin, const QQuaternion& rotation)
{
    QMatrix4x4 matrix;
    matrix.rotate(rotation.inverted());
    matrix.translate(-begin);
    return matrix;
}

} // namespace Torvik::View3d::ChainMath
