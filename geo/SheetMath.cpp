#include "geo/SheetMath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Torvik::View3d::SheetMath {

namespace {

constexpr double pi = 3.14159265358979323846;
/** Pixels. */
constexpr double sizeStep = 64.0;

struct Vector {
    double x = 0;
    double y = 0;
    double z = 0;
};

Vector vector(const QVector3D& v)
{
    return {double(v.x()), double(v.y()), double(v.z())};
}

Vector minus(const Vector& a, const Vector& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Vector cross(const Vector& a, const Vector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double length(const Vector& v)
{
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

Vector over(const Vector& v, double divisor)
{
    return {v.x / divisor, v.y / divisor, v.z / divisor};
}

/** The camera's own axes, of unit length. */
struct Axes {
    Vector right;
    Vector up;
    Vector ahead;
};

std::optional<Axes> axesOf(const Lens& lens)
{
    const Vector view = minus(vector(lens.viewCenter), vector(lens.position));
    const double distance = length(view);
    const Vector side = cross(view, vector(lens.up));
    const double span = length(side);
    if (distance <= 0 || span <= 0 || !std::isfinite(distance) || !std::isfinite(span))
        return std::nullopt;
    const Vector ahead = over(view, distance);
    const Vector right = over(side, span);
    return Axes {right, cross(right, ahead), ahead};
}

double radians(double degrees)
{
    return degrees * pi / 180.0;
}

/** A matrix that maps (u, v, 1): columns first, so that products read as usual. */
using Rows = std::array<std::array<double, 3>, 3>;

/** Screen pixels, with their weight, from metres of the ground beside the ground's middle. */
std::optional<Rows> screenFromGround(const Ground& ground, const Lens& lens)
{
    const auto axes = axesOf(lens);
    const double half = std::tan(radians(lens.fieldOfViewDeg) / 2);
    if (!axes || lens.screen.isEmpty() || !(half > 0))
        return std::nullopt;
    const double pixels = lens.screen.height() / 2 / half;
    const Vector origin =
        minus({ground.middle.x(), 0, ground.middle.y()}, {lens.position.x(), lens.position.y(), lens.position.z()});
    const auto row = [&origin](const Vector& axis) -> std::array<double, 3> {
        return {axis.x, axis.z, axis.x * origin.x + axis.y * origin.y + axis.z * origin.z};
    };
    const auto right = row(axes->right);
    const auto up = row(axes->up);
    const auto weight = row(axes->ahead);
    Rows rows {};
    for (std::size_t i = 0; i < 3; ++i) {
        rows[0][i] = lens.screen.width() / 2 * weight[i] + pixels * right[i];
        rows[1][i] = lens.screen.height() / 2 * weight[i] - pixels * up[i];
        rows[2][i] = weight[i];
    }
    return rows;
}

/** Metres of the ground beside its middle, from pixels of the sheet beside its middle; the third column is 0. */
Rows groundFromSheet(const Sheet& sheet, const Ground& ground)
{
    const double scale = 1.0 / (worldPixels * std::exp2(sheet.zoomLevel));
    const double c = scale * std::cos(radians(sheet.bearingDeg));
    const double s = scale * std::sin(radians(sheet.bearingDeg));
    // East and south of a pixel to the right, and of one down.
    Rows rows {};
    rows[0] = {c * ground.east.x() + s * ground.south.x(), -s * ground.east.x() + c * ground.south.x(), 0};
    rows[1] = {c * ground.east.y() + s * ground.south.y(), -s * ground.east.y() + c * ground.south.y(), 0};
    rows[2] = {0, 0, 1};
    return rows;
}

Rows product(const Rows& a, const Rows& b)
{
    Rows rows {};
    for (std::size_t r = 0; r < 3; ++r) {
        for (std::size_t c = 0; c < 3; ++c)
            rows[r][c] = a[r][0] * b[0][c] + a[r][1] * b[1][c] + a[r][2] * b[2][c];
    }
    return rows;
}

/** Screen from the sheet's pixels beside its middle. */
std::optional<QTransform> screenFromMiddle(const Sheet& sheet, const Ground& ground, const Lens& lens)
{
    const auto projection = screenFromGround(ground, lens);
    if (!projection)
        return std::nullopt;
    const Rows rows = product(*projection, groundFromSheet(sheet, ground));
    const double weight = rows[2][2];
    if (!(weight > 0))
        return std::nullopt;
    // QTransform multiplies from the left: its rows are the columns here.
    return QTransform(rows[0][0] / weight, rows[1][0] / weight, rows[2][0] / weight, rows[0][1] / weight,
                      rows[1][1] / weight, rows[2][1] / weight, rows[0][2] / weight, rows[1][2] / weight, 1.0);
}

} // namespace

QPointF worldFromPlace(const Place& place)
{
    const double latitude = radians(place.latitude);
    return {(place.longitude + 180.0) / 360.0, 0.5 - std::log(std::tan(pi / 4 + latitude / 2)) / (2 * pi)};
}

Ground sphericalGround(QPointF middle, double latitude)
{
    const double metres = equator * std::cos(radians(latitude));
    return {middle, {-metres, 0}, {0, -metres}};
}

std::optional<Ground> measuredGround(QPointF middle, const Place& plusX, const Place& minusX, const Place& plusZ,
                                     const Place& minusZ, double step)
{
    const QPointF x = (worldFromPlace(plusX) - worldFromPlace(minusX)) / (2 * step);
    const QPointF z = (worldFromPlace(plusZ) - worldFromPlace(minusZ)) / (2 * step);
    const double area = x.x() * z.y() - z.x() * x.y();
    // The inverse of the matrix that takes scene metres to the world.
    const Ground ground {middle, QPointF(z.y(), -x.y()) / area, QPointF(-z.x(), x.x()) / area};
    const bool usable = area != 0 && std::isfinite(ground.east.x()) && std::isfinite(ground.east.y()) &&
                        std::isfinite(ground.south.x()) && std::isfinite(ground.south.y());
    return usable ? std::optional<Ground>(ground) : std::nullopt;
}

Ground atLatitude(const Ground& ground, double from, double to)
{
    const double factor = std::cos(radians(to)) / std::cos(radians(from));
    return {ground.middle, ground.east * factor, ground.south * factor};
}

std::optional<QTransform> screenFromSheet(const Sheet& sheet, const Ground& ground, const Lens& lens)
{
    const auto fromMiddle = screenFromMiddle(sheet, ground, lens);
    if (!fromMiddle)
        return std::nullopt;
    return QTransform::fromTranslate(-sheet.size.width() / 2, -sheet.size.height() / 2) * *fromMiddle;
}

QSizeF coveringSize(const Sheet& sheet, const Ground& ground, const Lens& lens, QSizeF largest)
{
    const auto fromMiddle = screenFromMiddle(sheet, ground, lens);
    bool invertible = false;
    const QTransform back = fromMiddle ? fromMiddle->inverted(&invertible) : QTransform();
    if (!invertible)
        return {};
    const double w = lens.screen.width();
    const double h = lens.screen.height();
    double x = 0;
    double y = 0;
    for (const QPointF& corner : {QPointF(0, 0), QPointF(w, 0), QPointF(0, h), QPointF(w, h)}) {
        // The weight turns negative beyond the horizon.
        const double weight = back.m13() * corner.x() + back.m23() * corner.y() + back.m33();
        const QPointF at = back.map(corner);
        x = std::max(x, weight > 0 ? std::abs(at.x()) : largest.width());
        y = std::max(y, weight > 0 ? std::abs(at.y()) : largest.height());
    }
    const auto rounded = [](double halfLength, double most) {
        return std::min(most, (std::floor(2 * halfLength / sizeStep) + 2) * sizeStep);
    };
    return {rounded(x, largest.width()), rounded(y, largest.height())};
}

QMatrix4x4 itemMatrix(const QTransform& screenFromSheet)
{
    const QTransform& t = screenFromSheet;
    QMatrix4x4 matrix;
    matrix.setRow(0, {float(t.m11()), float(t.m21()), 0, float(t.m31())});
    matrix.setRow(1, {float(t.m12()), float(t.m22()), 0, float(t.m32())});
    // No depth. Tiles bring one from the map's own camera, which fills the room between two neighbours in the order of
    // painting; divided by a weight below 1 it would exceed it, and the map's ground would hide the tile above it.
    matrix.setRow(2, {0, 0, 0, 0});
    matrix.setRow(3, {float(t.m13()), float(t.m23()), 0, float(t.m33())});
    return matrix;
}

std::optional<QPointF> groundInTheMiddle(const Lens& lens)
{
    const Vector from = vector(lens.position);
    const Vector view = minus(vector(lens.viewCenter), from);
    if (!(from.y * view.y < 0))
        return std::nullopt;
    const double times = -from.y / view.y;
    return QPointF(from.x + times * view.x, from.z + times * view.z);
}

} // namespace Torvik::View3d::SheetMath
