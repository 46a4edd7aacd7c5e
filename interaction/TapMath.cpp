#include "interaction/TapMath.h"

#include <QVector2D>
#include <QVector4D>

#include <algorithm>
#include <limits>

namespace Torvik::View3d::TapMath {

namespace {

struct Seen {
    QVector2D position;
    /** Clip-space w: the distance along the view, by which things get smaller. */
    float depth = 0.0F;
};

Seen see(const QVector3D& point, const View& view)
{
    const QVector4D clip = view.viewProjection * QVector4D(point, 1.0F);
    const float w = clip.w();
    if (!(w > 0.0F))
        return {};
    const auto width = static_cast<float>(view.size.width());
    const auto height = static_cast<float>(view.size.height());
    return {{(clip.x() / w + 1.0F) * 0.5F * width, (1.0F - clip.y() / w) * 0.5F * height}, w};
}

float distanceToPiece(const QVector2D& position, const QVector2D& begin, const QVector2D& end)
{
    const QVector2D way = end - begin;
    const float lengthSquared = way.lengthSquared();
    const float share = lengthSquared > 0.0F
                            ? std::clamp(QVector2D::dotProduct(position - begin, way) / lengthSquared, 0.0F, 1.0F)
                            : 0.0F;
    return (begin + way * share - position).length();
}

} // namespace

double distanceTo(const Tube& tube, const QPointF& position, const View& view)
{
    // Pixels that a metre across the view takes at a depth of one.
    const QVector4D vertical = view.viewProjection.row(1);
    const float pixelsPerMetre = 0.5F * static_cast<float>(view.size.height()) * vertical.toVector3D().length();
    const QVector2D finger(position);
    double nearest = std::numeric_limits<double>::infinity();
    Seen before;
    for (int i = 0; i < tube.course.size(); ++i) {
        const Seen here = see(tube.course.at(i), view);
        if (here.depth > 0.0F) {
            const QVector2D& begin = before.depth > 0.0F ? before.position : here.position;
            const float drawn = tube.radius * pixelsPerMetre / here.depth;
            const float away = distanceToPiece(finger, begin, here.position) - drawn;
            nearest = std::min(nearest, std::max(0.0, static_cast<double>(away)));
        }
        before = here;
    }
    return nearest;
}

} // namespace Torvik::View3d::TapMath
