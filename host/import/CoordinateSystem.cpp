#include "host/import/CoordinateSystem.h"

#include "host/import/ImportReport.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <ogr_spatialref.h>

#include <cmath>

namespace Torvik::Import {

namespace {

/** GDAL reports failures as return values here; its own lines on stderr would only repeat them. */
class QuietGdal {
public:
    QuietGdal() { CPLPushErrorHandler(CPLQuietErrorHandler); }
    ~QuietGdal() { CPLPopErrorHandler(); }
    QuietGdal(const QuietGdal&) = delete;
    QuietGdal& operator=(const QuietGdal&) = delete;
};

template <typename Change>
void changePoints(NetworkModel& model, const Change& change)
{
    for (NodeData& node : model.nodes) {
        if (node.position)
            change(*node.position);
    }
    for (PipeData& pipe : model.pipes) {
        for (Point& point : pipe.course)
            change(point);
    }
}

std::optional<Point> middleOf(NetworkModel& model)
{
    double sumX = 0.0;
    double sumY = 0.0;
    int count = 0;
    changePoints(model, [&](Point& point) {
        sumX += point.x;
        sumY += point.y;
        ++count;
    });
    if (count == 0)
        return std::nullopt;
    return Point {sumX / count, sumY / count, std::nullopt};
}

} // namespace

CoordinateSystem::CoordinateSystem()
    : m_reference(std::make_shared<OGRSpatialReference>())
{
    m_reference->SetLocalCS("Local, metres");
    m_reference->SetLinearUnits("metre", 1.0);
}

CoordinateSystem::CoordinateSystem(const OGRSpatialReference& reference)
    : m_reference(std::make_shared<OGRSpatialReference>(reference))
{
    m_reference->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
}

std::optional<CoordinateSystem> CoordinateSystem::fromText(const QString& text, QString* error)
{
    const QuietGdal quiet;
    OGRSpatialReference reference;
    if (text.trimmed().isEmpty() || reference.SetFromUserInput(text.trimmed().toUtf8().constData()) != OGRERR_NONE) {
        if (error)
            *error = QStringLiteral("unknown coordinate system \"%1\"").arg(text);
        return std::nullopt;
    }
    return CoordinateSystem(reference);
}

CoordinateSystem CoordinateSystem::utmAt(double longitude, double latitude)
{
    const int zone = qBound(1, int(std::floor((longitude + 180.0) / 6.0)) + 1, 60);
    OGRSpatialReference reference;
    reference.importFromEPSG((latitude < 0.0 ? 32700 : 32600) + zone);
    return CoordinateSystem(reference);
}

bool CoordinateSystem::isGeographic() const
{
    return m_reference->IsGeographic();
}

bool CoordinateSystem::isLocal() const
{
    return m_reference->IsLocal();
}

double CoordinateSystem::metresPerUnit() const
{
    return m_reference->IsGeographic() ? 1.0 : m_reference->GetLinearUnits();
}

CoordinateSystem CoordinateSystem::inMetres() const
{
    CoordinateSystem metric(*m_reference);
    if (m_reference->IsProjected() && std::abs(metresPerUnit() - 1.0) > 1e-9)
        metric.m_reference->SetLinearUnitsAndUpdateParameters("metre", 1.0);
    return metric;
}

QString CoordinateSystem::label() const
{
    const char* authority = m_reference->GetAuthorityName(nullptr);
    const char* code = m_reference->GetAuthorityCode(nullptr);
    if (authority && code)
        return QStringLiteral("%1:%2").arg(QString::fromUtf8(authority), QString::fromUtf8(code));
    return QString::fromUtf8(m_reference->GetName());
}

QString CoordinateSystem::wkt() const
{
    char* text = nullptr;
    m_reference->exportToWkt(&text);
    const QString result = QString::fromUtf8(text);
    CPLFree(text);
    return result;
}

QString CoordinateSystem::complaintAbout(double x, double y) const
{
    double west = 0.0;
    double south = 0.0;
    double east = 0.0;
    double north = 0.0;
    const char* area = nullptr;
    if (isLocal() || !m_reference->GetAreaOfUse(&west, &south, &east, &north, &area) || west > east)
        return {};
    OGRSpatialReference world;
    world.importFromEPSG(4326);
    Point place {x, y, std::nullopt};
    const bool isFound = CoordinateTransform(*this, CoordinateSystem(world)).apply(place);
    constexpr double MarginDeg = 1.0;
    if (isFound && place.x >= west - MarginDeg && place.x <= east + MarginDeg && place.y >= south - MarginDeg &&
        place.y <= north + MarginDeg)
        return {};
    return QStringLiteral("the coordinates lie outside the area of use of %1").arg(label());
}

CoordinateTransform::CoordinateTransform(const CoordinateSystem& from, const CoordinateSystem& to)
{
    const QuietGdal quiet;
    m_transformation.reset(OGRCreateCoordinateTransformation(&from.reference(), &to.reference()));
}

CoordinateTransform::~CoordinateTransform() = default;

bool CoordinateTransform::apply(Point& point) const
{
    if (!m_transformation)
        return false;
    const QuietGdal quiet;
    double x = point.x;
    double y = point.y;
    if (!m_transformation->Transform(1, &x, &y) || !std::isfinite(x) || !std::isfinite(y))
        return false;
    point.x = x;
    point.y = y;
    return true;
}

CoordinateSystem settleCoordinates(NetworkModel& model, const CoordinateSystem& system, ImportReport& report)
{
    const std::optional<Point> middle = middleOf(model);
    if (!middle)
        return system;
    const SourceRef everywhere;
    const QString complaint = system.complaintAbout(middle->x, middle->y);
    if (!complaint.isEmpty())
        report.warn({}, {}, everywhere, complaint);
    if (system.isGeographic()) {
        const CoordinateSystem utm = CoordinateSystem::utmAt(middle->x, middle->y);
        const CoordinateTransform transform(system, utm);
        int failed = 0;
        changePoints(model, [&](Point& point) { failed += transform.apply(point) ? 0 : 1; });
        if (failed > 0)
            report.fail(
                everywhere,
                QStringLiteral("%1 points of %2 have no place in %3").arg(failed).arg(system.label(), utm.label()));
        return utm;
    }
    const double factor = system.metresPerUnit();
    if (system.isLocal() || std::abs(factor - 1.0) < 1e-9)
        return system;
    changePoints(model, [factor](Point& point) {
        point.x *= factor;
        point.y *= factor;
    });
    return system.inMetres();
}

} // namespace Torvik::Import
