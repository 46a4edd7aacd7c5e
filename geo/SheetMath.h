#pragma once

#include <QMatrix4x4>
#include <QPointF>
#include <QSizeF>
#include <QTransform>
#include <QVector3D>

#include <optional>

/** How a flat sheet of street map, painted in Web Mercator, has to be carried by a projective transform so that it lies
 *  on the ground that a camera sees. All in double precision: a street map is looked at from kilometres with a lens of
 * a few degrees, and float degrees would miss the place by half a metre.
 *
 *  Frames. Scene: y up, x west, z north, metres; ground points are (x, z). World: the Mercator square of the earth, 0
 * to 1, x eastward, y southward. Sheet: pixels of the map item from its upper left corner. Screen: pixels of the view
 * from its upper left corner. */
namespace Torvik::View3d::SheetMath {

/** Length of the equator, in metres of the sphere that street maps are painted on. */
constexpr double equator = 40075016.686;
/** Pixels of the world's edge at zoom level 0. */
constexpr double worldPixels = 256.0;

/** A place on earth in degrees. */
struct Place {
    double longitude = 0;
    double latitude = 0;
};

/** The ground around a place: where the place lies in the scene, and how far and in which direction the world's axes go
 *  there, in metres of the scene for the whole width of the world. */
struct Ground {
    QPointF middle;
    QPointF east;
    QPointF south;
};

/** A camera that looks at the ground; `up` need not be perpendicular to the view. */
struct Lens {
    QVector3D position;
    QVector3D viewCenter;
    QVector3D up;
    /** From the lower to the upper edge of the screen. */
    double fieldOfViewDeg = 0;
    QSizeF screen;
};

/** A flat map: its middle shows the ground's place, its upper edge lies towards the bearing (clockwise from north). */
struct Sheet {
    QSizeF size;
    double zoomLevel = 0;
    double bearingDeg = 0;
};

QPointF worldFromPlace(const Place& place);

/** The ground around a place, where no coordinate system says more: north is +z, a metre is a metre. */
Ground sphericalGround(QPointF middle, double latitude);

/** The ground around `middle`, from the places of the scene points `step` metres beside it: +x, -x, +z, -z. Nothing
 * when those places do not span an area. */
std::optional<Ground> measuredGround(QPointF middle, const Place& plusX, const Place& minusX, const Place& plusZ,
                                     const Place& minusZ, double step);

/** The same ground at another latitude, whose metres are as long there as they were here. */
Ground atLatitude(const Ground& ground, double from, double to);

/** Screen from sheet, scaled such that the sheet's middle has the weight 1. Nothing when the camera cannot see the
 *  middle, has no lens, or looks nowhere. */
std::optional<QTransform> screenFromSheet(const Sheet& sheet, const Ground& ground, const Lens& lens);

/** The size that a sheet needs to cover the whole screen, in whole steps of some pixels so that it seldom changes. The
 *  sheet's own size does not matter. What reaches beyond the horizon is left out, and `largest` is never exceeded. */
QSizeF coveringSize(const Sheet& sheet, const Ground& ground, const Lens& lens, QSizeF largest);

/** As the scene graph takes it; flattens whatever depth it carries. */
QMatrix4x4 itemMatrix(const QTransform& screenFromSheet);

/** Where the middle of the screen lies on the ground, or nothing for a look that does not meet it ahead. */
std::optional<QPointF> groundInTheMiddle(const Lens& lens);

} // namespace Torvik::View3d::SheetMath
