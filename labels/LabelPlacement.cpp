#include "labels/LabelPlacement.h"

namespace Torvik::View3d::LabelPlacement {

namespace {

constexpr float rowsOfAMultilineLabel = 3.0F;
/** From the middle of a pixel to its edge. */
constexpr double halfPixel = 0.5;

double dot(const QVector3D& a, double x, double y, double z)
{
    return static_cast<double>(a.x()) * x + static_cast<double>(a.y()) * y + static_cast<double>(a.z()) * z;
}

double ordinateOf(double pixel, double extent, float first, float last)
{
    return static_cast<double>(first) +
           (pixel + halfPixel) / extent * (static_cast<double>(last) - static_cast<double>(first));
}

double pixelOf(float ordinate, double extent, float first, float last)
{
    return (static_cast<double>(ordinate) - static_cast<double>(first)) /
               (static_cast<double>(last) - static_cast<double>(first)) * extent -
           halfPixel;
}

/** From the upper left corner of a label to its centre; x runs to the left. */
QVector3D toCenter(const QSizeF& size)
{
    return {static_cast<float>(-size.width() / 2), static_cast<float>(-size.height() / 2), 0.0F};
}

} // namespace

View viewOf(const RayMath::Eye& eye, const QSizeF& screen)
{
    View view;
    view.eye = eye.position;
    view.forward = eye.view.normalized();
    view.left = QVector3D::crossProduct(eye.up, view.forward).normalized();
    view.up = QVector3D::crossProduct(view.forward, view.left);
    const float k = planeDistance / eye.nearPlane;
    view.edges = {eye.retina.left * k, eye.retina.right * k, eye.retina.top * k, eye.retina.bottom * k};
    view.screen = screen;
    return view;
}

float metresPerPixel(const View& view)
{
    return (view.edges.top - view.edges.bottom) / static_cast<float>(view.screen.height());
}

std::optional<QVector3D> onPlane(const View& view, const QVector3D& scenePoint)
{
    const double x = static_cast<double>(scenePoint.x()) - static_cast<double>(view.eye.x());
    const double y = static_cast<double>(scenePoint.y()) - static_cast<double>(view.eye.y());
    const double z = static_cast<double>(scenePoint.z()) - static_cast<double>(view.eye.z());
    const double depth = dot(view.forward, x, y, z);
    if (!(depth > 0.0))
        return std::nullopt;
    const double k = static_cast<double>(planeDistance) / depth;
    return QVector3D(static_cast<float>(dot(view.left, x, y, z) * k), static_cast<float>(dot(view.up, x, y, z) * k),
                     planeDistance);
}

QVector3D localOf(const View& view, const QPointF& pixel)
{
    return {static_cast<float>(ordinateOf(pixel.x(), view.screen.width(), view.edges.left, view.edges.right)),
            static_cast<float>(ordinateOf(pixel.y(), view.screen.height(), view.edges.top, view.edges.bottom)),
            planeDistance};
}

QPointF pixelOf(const View& view, const QVector3D& local)
{
    return {pixelOf(local.x(), view.screen.width(), view.edges.left, view.edges.right),
            pixelOf(local.y(), view.screen.height(), view.edges.top, view.edges.bottom)};
}

QVector3D sceneVector(const View& view, const QVector3D& local)
{
    return view.left * local.x() + view.up * local.y() + view.forward * local.z();
}

float heightInPixels(float rowPixels, float lineHeight, bool multiline)
{
    return rowPixels * lineHeight * (multiline ? rowsOfAMultilineLabel : 1.0F);
}

QPointF cornerAbove(const QPointF& anchor, float aspect, float rowPixels, float rows)
{
    const auto row = static_cast<double>(rowPixels);
    return {anchor.x() - static_cast<double>(aspect) * row * 0.5, anchor.y() - static_cast<double>(rows) * row};
}

Placed placedAt(const View& view, const QVector3D& anchor, const QPointF& corner, const QSizeF& size)
{
    const QVector3D center = localOf(view, corner) + toCenter(size);
    return {corner, center, anchor - center};
}

Placed placedByOffset(const View& view, const QVector3D& anchor, const QVector3D& offset, const QSizeF& size)
{
    const QVector3D center = anchor - offset;
    return {pixelOf(view, center - toCenter(size)), center, offset};
}

QQuaternion facing(const View& view)
{
    return QQuaternion::fromAxes(-view.left, -view.forward, -view.up);
}

QQuaternion facingAlong(const View& view, const QVector3D& local)
{
    const QVector3D along = sceneVector(view, QVector3D(local.x(), local.y(), 0.0F)).normalized();
    const QVector3D towards = -view.forward;
    return QQuaternion::fromAxes(QVector3D::crossProduct(towards, along), towards, along);
}

float scaleAtDepth(float depth)
{
    return depth / planeDistance;
}

QRectF coverage(const QPointF& corner, const QSizeF& pixels)
{
    return {corner + QPointF(halfPixel, halfPixel), pixels};
}

} // namespace Torvik::View3d::LabelPlacement
