#include "network/StrokeMath.h"

#include <algorithm>

namespace Torvik::View3d::StrokeMath {

float distanceFromPiece(const QVector3D& point, const QVector3D& begin, const QVector3D& end)
{
    const QVector3D piece = end - begin;
    const float square = piece.lengthSquared();
    const float along = square > 0.0F ? QVector3D::dotProduct(point - begin, piece) / square : 0.0F;
    return point.distanceToPoint(begin + std::clamp(along, 0.0F, 1.0F) * piece);
}

bool looksStraight(const QVector<QVector3D>& points)
{
    const int pieces = points.size() - 1;
    if (pieces < 1 || pieces > mostPieces)
        return false;
    const QVector3D& begin = points.first();
    const QVector3D& end = points.last();
    if (begin.distanceToPoint(end) > longestStroke)
        return false;
    for (int i = 1; i < points.size(); ++i) {
        if (points[i - 1].distanceToPoint(points[i]) > longestPiece ||
            distanceFromPiece(points[i], begin, end) > tolerance)
            return false;
    }
    return true;
}

} // namespace Torvik::View3d::StrokeMath
