#include "measurement/ShapeAccess.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CProjectObject.h"
#include "domain/boundary/Vector3D.h"
#include "geo/GdalGeoProjector.h"
#include "measurement/InspDomain.h"
#include "measurement/InspectionDir.h"
#include "measurement/ShapeColumns.h"
#include "measurement/ShapeText.h"
#include "scene/Renderable.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Torvik::View3d {

namespace {

constexpr int savingDelayMs = 700;
constexpr int originOfProjection = -1;

InspectionDir* sectionDirection(InspDomain* object)
{
    return dynamic_cast<InspectionDir*>(object);
}

bool needsPosition(const QString& renderableType)
{
    return renderableType == QLatin1String("section") || renderableType == QLatin1String("node");
}

/** Ties the scene to the earth by the first shape that is read, and has the project remember the coordinate system. */
void ensureProjection(const CDomainObjectPointer& record, const QVector<Database::WktPoint>& points)
{
    GdalGeoProjector* projector = GdalGeoProjector::instance();
    if (projector->initialized() || points.isEmpty())
        return;
    const QSharedPointer<Database::CProjectObject> project = Database::CDomainObject::projectFromObject(record);
    if (!project)
        return;
    QString projection = project->projectionWKT();
    projector->init(points.first(), projection);
    project->setProjectionWKT(projection);
    Database::CDatabaseLibrary::dbAccessManager()->updateObject(project, originOfProjection);
}

QVector<QVector3D> scenePoints(const QVector<Database::WktPoint>& points)
{
    const GdalGeoProjector* projector = GdalGeoProjector::instance();
    const Vector3D<double> origin = projector->origin();
    QVector<QVector3D> polyline;
    polyline.reserve(points.size());
    for (const Database::WktPoint& point : points)
        polyline.append((Vector3D<double>(point, projector->scale()) - origin).toQVector3D());
    return polyline;
}

QString storedText(InspDomain* object, const Renderable* renderable)
{
    InspectionDir* direction = sectionDirection(object);
    int flags = renderable->transformFlags();
    if (direction)
        flags =
            ShapeText::flagsWordOfSection(flags, direction->firstInspectionDirFlag(), direction->inspectionDirection());

    ShapeText::Writer writer(object->wktPrefix());
    const QVector<QVector<QVector3D>> polylines = object->getShapePoints();
    for (const QVector<QVector3D>& polyline : polylines) {
        if (polyline.isEmpty())
            continue;
        QVector<Database::WktPoint> points;
        GdalGeoProjector::instance()->convertToWktPoints(polyline, points);
        if (direction && direction->inspectionDownstream())
            points = ShapeText::reversed(points);
        writer.add(points, flags);
    }
    return writer.text();
}

} // namespace

ShapeAccess::ShapeAccess(QObject* parent)
    : QObject(parent)
    , m_saving(savingDelayMs, [this] { saveToDB(); })
{
}

ShapeAccess::~ShapeAccess() = default;

QVector<QVector<QVector3D>> ShapeAccess::readPoints(InspDomain* object)
{
    const Record record = recordOf(object);
    if (!record)
        return {};
    const QVariant value = record->readValue(shapeColumns().value(record->objectType()));
    if (!value.isValid() || value.toString().trimmed().isEmpty())
        return {};

    QVector<QVector<QVector3D>> polylines;
    const QVector<QString> shapes = Database::WktParser::parseWkt(value.toString());
    for (const QString& shape : shapes) {
        QVector<Database::WktPoint> points;
        QString prefix;
        Database::ShapeWKTHelper::wktStringToWktPoints(shape, points, prefix);
        initializeSectionWithWktPoints(object, points, prefix);
        ensureProjection(record, points);
        polylines.append(scenePoints(points));
    }
    return polylines;
}

void ShapeAccess::writePoints(InspDomain* object)
{
    if (compare(object))
        m_saving.start();
}

void ShapeAccess::writePointsLater(InspDomain* object)
{
    if (!object)
        return;
    if (!m_later.contains(object))
        m_later.append(object);
    m_saving.start();
}

void ShapeAccess::takeLeave(const QObject* object)
{
    const auto isObject = [object](InspDomain* one) { return dynamic_cast<const QObject*>(one) == object; };
    const auto place = std::find_if(m_later.begin(), m_later.end(), isObject);
    if (place == m_later.end())
        return;
    InspDomain* const going = *place;
    m_later.erase(place);
    compare(going);
}

bool ShapeAccess::compare(InspDomain* object)
{
    const Record record = recordOf(object);
    const auto* renderable = dynamic_cast<const Renderable*>(object);
    if (!record || !renderable)
        return false;
    if (needsPosition(renderable->renderableType()) && !renderable->transform()->hasPosition())
        return false;

    const QString column = shapeColumns().value(record->objectType());
    const QString text = storedText(object, renderable);
    const QString stored = record->readValue(column).toString();
    if (stored == text || ShapeText::sameShape(stored, text))
        return false;
    m_pending[{record, getDomainObject(object->getInspectionObjectId()), column}] = text;
    return true;
}

void ShapeAccess::clearPoints(InspDomain* object)
{
    const Record record = recordOf(object);
    if (!record)
        return;
    scheduleSaveToDB(record, getDomainObject(object->getInspectionObjectId()),
                     shapeColumns().value(record->objectType()), QVariant());
}

ShapeAccess::Record ShapeAccess::recordOf(const InspDomain* object) const
{
    if (!object)
        return {};
    const QString id = object->getDomainObjectId();
    const Record record = id.isEmpty() ? Record() : getDomainObject(id);
    const bool holdsShape = record && record->isValid() && shapeColumns().contains(record->objectType());
    return holdsShape ? record : Record();
}

ShapeAccess::Record ShapeAccess::getDomainObject(const QString& id) const
{
    const Record active = AppState::instance().getActiveProject();
    if (!active || active->objectType() != Database::ProjectObjectType)
        return {};
    return qSharedPointerCast<Database::CProjectObject>(active)->lookupObject(id);
}

void ShapeAccess::initializeSectionWithWktPoints(InspDomain* object, QVector<Database::WktPoint>& points,
                                                 QString& /*prefix*/)
{
    InspectionDir* direction = sectionDirection(object);
    if (points.isEmpty() || !direction)
        return;

    const int flags = ShapeText::flagsWord(points);
    direction->setFirstInspectionDirFlag(
        static_cast<InspectionDir::InspDirFlags>(flags & InspectionDir::allInspectionDirFlags()));
    if (auto* renderable = dynamic_cast<Renderable*>(object))
        renderable->setTransformFlags(flags & TransformFlags::allTransformFlags());
    if (direction->inspectionDirUnknown())
        direction->setInspectionDir(static_cast<InspectionDir::InspDirFlags>(direction->firstInspectionDirFlag()));
    if (direction->inspectionDirUnknown())
        direction->setInspectionUpstream();
    if (direction->inspectionDownstream())
        points = ShapeText::reversed(points);
}

void ShapeAccess::scheduleSaveToDB(const Record& object, const Record& inspection, const QString& column,
                                   const QVariant& value)
{
    m_pending[{object, inspection, column}] = value;
    m_saving.start();
}

void ShapeAccess::saveToDB()
{
    for (InspDomain* object : std::exchange(m_later, {}))
        compare(object);
    std::set<std::pair<Record, Record>> changed;
    for (const auto& [key, value] : std::exchange(m_pending, {})) {
        const auto& [record, inspection, column] = key;
        // Its project was closed, or it was deleted, while the change waited.
        if (!record->isValid())
            continue;
        changed.emplace(record, inspection);
        record->updateValue(column, value);
        // The mirror has one column, whatever the object's own.
        if (inspection)
            inspection->updateValue(QStringLiteral("INS_Shape_WKT"), value);
    }

    Database::CProjectDBAccessManager* access = Database::CDatabaseLibrary::dbAccessManager();
    for (const auto& [record, inspection] : changed) {
        access->updateObject(record, originOfShapes);
        if (inspection)
            access->updateObject(inspection, originOfShapes);
    }
}

} // namespace Torvik::View3d
