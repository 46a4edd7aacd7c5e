#include "geo/MapSheet.h"

#include "geo/GdalGeoProjector.h"
#include "geo/Projection.h"

#include <cmath>

namespace Torvik::View3d {

using SheetMath::Place;

namespace {

/** Metres beside a place at which its surroundings are measured. */
constexpr double measuringStep = 200.0;
/** Metres over which a grid's north turns by less than what a screen shows. */
constexpr double measuredWithin = 1000.0;
/** Of the map's item, in pixels. What a screen of 3,840 pixels needs at the steepest tilt that the map is shown at; the
 *  map reckons the bytes of three such sheets in an int. */
constexpr QSizeF largestSheet(8192, 16384);

Place placeOf(const Vector3D<double>& origin, double x, double z)
{
    const GeoCoord place = GdalGeoProjector::instance()->geoCoords(origin + Vector3D<double>(x, 0, z));
    return {Projection::degrees(place.lon()), Projection::degrees(place.lat())};
}

double distance(QPointF a, QPointF b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

} // namespace

MapSheet::MapSheet(QObject* parent)
    : QObject(parent)
{
    const auto* projector = GdalGeoProjector::instance();
    connect(projector, &GdalGeoProjector::geoLocationChanged, this, &MapSheet::onTieChanged);
    connect(projector, &GdalGeoProjector::initializedFromMap, this, &MapSheet::onTieChanged);
    connect(this, &MapSheet::mapChanged, this, &MapSheet::layLater);
    connect(this, &MapSheet::screenChanged, this, &MapSheet::layLater);
    connect(this, &MapSheet::adriftChanged, this, &MapSheet::layLater);
}

template <typename Value>
bool MapSheet::take(Value& member, const Value& value)
{
    if (member == value)
        return false;
    member = value;
    return true;
}

void MapSheet::setCamera(Qt3DRender::QCamera* camera)
{
    if (m_camera == camera)
        return;
    if (m_camera)
        m_camera->disconnect(this);
    m_camera = camera;
    if (camera) {
        connect(camera, &Qt3DRender::QCamera::viewMatrixChanged, this, &MapSheet::layLater);
        connect(camera, &Qt3DRender::QCamera::fieldOfViewChanged, this, &MapSheet::layLater);
    }
    emit cameraChanged();
    layLater();
}

void MapSheet::setScreenWidth(double width)
{
    if (take(m_screen.rwidth(), width))
        emit screenChanged();
}

void MapSheet::setScreenHeight(double height)
{
    if (take(m_screen.rheight(), height))
        emit screenChanged();
}

void MapSheet::setPlace(QPointF place)
{
    // Not QPointF's own comparison, which lets some metres pass.
    if (m_place.longitude == place.x() && m_place.latitude == place.y())
        return;
    m_place = {place.x(), place.y()};
    if (!m_adrift)
        tieGround();
    emit mapChanged();
}

void MapSheet::setZoomLevel(double level)
{
    if (take(m_sheet.zoomLevel, level))
        emit mapChanged();
}

void MapSheet::setBearing(double degrees)
{
    if (take(m_sheet.bearingDeg, degrees))
        emit mapChanged();
}

void MapSheet::setAdrift(bool adrift)
{
    if (!take(m_adrift, adrift))
        return;
    if (adrift) {
        const auto middle = SheetMath::groundInTheMiddle(lens());
        m_driftOffset = middle ? m_ground.middle - *middle : QPointF();
        m_driftGround = m_ground;
        m_driftLatitude = m_place.latitude;
    } else {
        tieGround();
    }
    emit adriftChanged();
}

SheetMath::Lens MapSheet::lens() const
{
    if (!m_camera)
        return {};
    return {m_camera->position(), m_camera->viewCenter(), m_camera->upVector(), double(m_camera->fieldOfView()),
            m_screen};
}

void MapSheet::onTieChanged()
{
    m_measured = false;
    if (!m_adrift)
        tieGround();
    layLater();
}

void MapSheet::tieGround()
{
    const auto* projector = GdalGeoProjector::instance();
    if (!projector->initialized()) {
        m_ground = SheetMath::sphericalGround(m_ground.middle, m_place.latitude);
        return;
    }
    const Vector3D<double> at =
        projector->cartesianCoords(Projection::radians(m_place.longitude), Projection::radians(m_place.latitude), 0) *
            projector->scale() -
        projector->origin();
    m_ground.middle = QPointF(at.x(), at.z());
    if (!m_measured || distance(m_ground.middle, m_measuredAt) > measuredWithin)
        measureGround();
}

void MapSheet::measureGround()
{
    const Vector3D<double> origin = GdalGeoProjector::instance()->origin();
    const QPointF at = m_ground.middle;
    const auto measured = SheetMath::measuredGround(at, placeOf(origin, at.x() + measuringStep, at.y()),
                                                    placeOf(origin, at.x() - measuringStep, at.y()),
                                                    placeOf(origin, at.x(), at.y() + measuringStep),
                                                    placeOf(origin, at.x(), at.y() - measuringStep), measuringStep);
    m_ground = measured.value_or(SheetMath::sphericalGround(at, m_place.latitude));
    m_measuredAt = at;
    m_measured = true;
}

void MapSheet::driftGround()
{
    m_ground = SheetMath::atLatitude(m_driftGround, m_driftLatitude, m_place.latitude);
    if (const auto middle = SheetMath::groundInTheMiddle(lens()))
        m_ground.middle = *middle + m_driftOffset;
}

void MapSheet::layLater()
{
    // A camera and its map change in several steps, between which they do not fit each other; and a map that is telling
    // of a change does not bear a new size.
    if (m_layScheduled)
        return;
    m_layScheduled = true;
    QMetaObject::invokeMethod(this, &MapSheet::lay, Qt::QueuedConnection);
}

void MapSheet::lay()
{
    m_layScheduled = false;
    const SheetMath::Lens seen = lens();
    if (m_adrift)
        driftGround();
    const QSizeF size = SheetMath::coveringSize(m_sheet, m_ground, seen, largestSheet);
    // A map that is out of sight keeps its last place.
    if (size.isEmpty())
        return;
    SheetMath::Sheet sheet = m_sheet;
    sheet.size = size;
    const auto carried = SheetMath::screenFromSheet(sheet, m_ground, seen);
    if (!carried)
        return;
    const QMatrix4x4 matrix = SheetMath::itemMatrix(*carried);
    if (size == m_sheet.size && matrix == m_matrix)
        return;
    m_sheet.size = size;
    m_matrix = matrix;
    emit changed();
}

} // namespace Torvik::View3d
