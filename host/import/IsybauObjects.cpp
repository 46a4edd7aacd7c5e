#include "host/import/IsybauObjects.h"

#include "host/import/CourseGeometry.h"
#include "host/import/IsybauReader.h"

#include <algorithm>
#include <initializer_list>

namespace Torvik::Import {

namespace {

/** Pieces of one course that lie closer than this belong together. */
constexpr double JoinToleranceM = 0.01;

QString profileName(const QString& code)
{
    static const QHash<QString, QString> names {{QStringLiteral("0"), QStringLiteral("CIRCULAR")},
                                                {QStringLiteral("1"), QStringLiteral("EGG")},
                                                {QStringLiteral("2"), QStringLiteral("MOUTH")},
                                                {QStringLiteral("3"), QStringLiteral("RECT_CLOSED")},
                                                {QStringLiteral("4"), QStringLiteral("CIRCULAR_DOUBLE_WALL")},
                                                {QStringLiteral("5"), QStringLiteral("RECT_OPEN")},
                                                {QStringLiteral("8"), QStringLiteral("TRAPEZOIDAL")}};
    if (code.isEmpty())
        return {};
    return names.value(code, QStringLiteral("ISYBAU %1").arg(code));
}

Details detailsOf(const XmlElement& object)
{
    return {object.value(QStringLiteral("Lage/Strassenname")), object.value(QStringLiteral("Lage/Ortsteilname")),
            object.value(QStringLiteral("Baujahr")),           object.value(QStringLiteral("Kante/Material")),
            object.value(QStringLiteral("Entwaesserungsart")), object.value(QStringLiteral("Status")),
            object.value(QStringLiteral("Kommentar"))};
}

} // namespace

IsybauObjects::IsybauObjects(NetworkModel& model, ImportReport& report, const QString& fileName)
    : m_model(model)
    , m_report(report)
    , m_fileName(fileName)
{
}

std::optional<NodeKind> IsybauObjects::nodeKind(const QString& code)
{
    if (code == QLatin1String("0"))
        return NodeKind::Manhole;
    if (code == QLatin1String("1"))
        return NodeKind::Connection;
    if (code == QLatin1String("2"))
        return NodeKind::Building;
    return std::nullopt;
}

std::optional<double> IsybauObjects::number(const XmlElement& object, const QString& path, const QString& kind,
                                            const QString& key)
{
    const XmlElement* element = object.find(path);
    if (!element || element->text.isEmpty())
        return std::nullopt;
    bool ok = false;
    QString text = element->text;
    const double value = text.replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    if (ok && qIsFinite(value))
        return value;
    m_report.warn(kind, key, sourceOf(*element),
                  QStringLiteral("%1 is not a number: \"%2\"").arg(element->name, element->text));
    return std::nullopt;
}

void IsybauObjects::add(const XmlElement& object)
{
    const QString key = object.value(QStringLiteral("Objektbezeichnung"));
    const bool isNode = object.child(QStringLiteral("Knoten"));
    const bool isPipe = object.child(QStringLiteral("Kante"));
    if (!isNode && !isPipe) {
        m_report.read(Kinds::Objects);
        m_report.leaveOut(Kinds::Objects, key, sourceOf(object), QStringLiteral("neither a node nor a pipe"));
    } else if (isNode) {
        addNode(object, key);
    } else {
        addPipe(object, key);
    }
}

void IsybauObjects::noteCrs(const XmlElement& object, double easting)
{
    const QString name = object.value(QStringLiteral("Geometrie/CRSLage"));
    if (name.isEmpty())
        return;
    const QString epsg = IsybauReader::epsgOf(name, easting);
    if (epsg.isEmpty())
        ++m_unknownCrs[name];
    else
        ++m_crs[epsg];
}

IsybauObjects::GeometryPoint IsybauObjects::geometryPoint(const XmlElement& point, const QString& kind,
                                                          const QString& key)
{
    return {
        point.value(QStringLiteral("PunktattributAbwasser")), number(point, QStringLiteral("Rechtswert"), kind, key),
        number(point, QStringLiteral("Hochwert"), kind, key), number(point, QStringLiteral("Punkthoehe"), kind, key)};
}

void IsybauObjects::addNode(const XmlElement& object, const QString& key)
{
    m_report.read(Kinds::Nodes);
    if (key.isEmpty()) {
        m_report.leaveOut(Kinds::Nodes, key, sourceOf(object), QStringLiteral("no Objektbezeichnung"));
        return;
    }
    NodeData node;
    node.key = key;
    node.source = sourceOf(object);
    node.details = detailsOf(object);
    node.attributes.insert(QStringLiteral("isybau"), object.toJson());
    const XmlElement* data = object.child(QStringLiteral("Knoten"));
    const std::optional<NodeKind> kind = nodeKind(data->value(QStringLiteral("KnotenTyp")));
    if (kind)
        node.kind = *kind;
    else if (data->child(QStringLiteral("Bauwerk")))
        node.kind = NodeKind::Building;
    else if (data->child(QStringLiteral("Anschlusspunkt")))
        node.kind = NodeKind::Connection;
    node.depth = number(*data, QStringLiteral("Schacht/Schachttiefe"), Kinds::Nodes, key);
    for (const QString& path :
         {QStringLiteral("Schacht/Unterteil/LaengeUnterteil"), QStringLiteral("Schacht/Aufbau/LaengeAufbau")}) {
        const std::optional<double> metres = number(*data, path, Kinds::Nodes, key);
        if (metres && *metres > 0.0 && !node.diameterMm)
            node.diameterMm = *metres * 1000.0;
    }
    setNodeGeometry(object, node);
    if (node.position)
        noteCrs(object, node.position->x);
    m_model.nodes.append(node);
}

void IsybauObjects::setNodeGeometry(const XmlElement& object, NodeData& node)
{
    QVector<GeometryPoint> points;
    for (const XmlElement* element : object.findAll(QStringLiteral("Geometrie/Geometriedaten/Knoten/Punkt")))
        points.append(geometryPoint(*element, Kinds::Nodes, node.key));
    const auto placed = [&](const QString& attribute) -> const GeometryPoint* {
        const auto it = std::find_if(points.cbegin(), points.cend(), [&](const GeometryPoint& point) {
            return (attribute.isEmpty() || point.attribute == attribute) && point.x && point.y;
        });
        return it == points.cend() ? nullptr : &*it;
    };
    const auto heightOf = [&](std::initializer_list<const char*> attributes) -> std::optional<double> {
        for (const char* attribute : attributes) {
            for (const GeometryPoint& point : qAsConst(points)) {
                if (point.attribute == QLatin1String(attribute) && point.z)
                    return point.z;
            }
        }
        return std::nullopt;
    };
    const GeometryPoint* at = nullptr;
    const QStringList order = node.kind == NodeKind::Building
                                  ? QStringList {QStringLiteral("SBD"), QStringLiteral("KOP"), QString()}
                                  : QStringList {QStringLiteral("SMP"), QStringLiteral("DMP"), QString()};
    for (int i = 0; !at && i < order.size(); ++i)
        at = placed(order[i]);
    if (at)
        node.position = Point {*at->x, *at->y, at->z};
    node.invert = heightOf({"SMP", "KOP"});
    node.cover = heightOf({"DMP", "SBD", "GOK"});
    if (!node.cover && at)
        node.cover = at->z;
    if (node.kind == NodeKind::Connection && at)
        node.invert = at->z;
}

void IsybauObjects::addPipe(const XmlElement& object, const QString& key)
{
    const XmlElement* data = object.child(QStringLiteral("Kante"));
    const QString type = data->value(QStringLiteral("KantenTyp"));
    const bool isLateral =
        type == QLatin1String("1") || (type.isEmpty() && data->child(QStringLiteral("Leitung")) != nullptr);
    PipeData pipe;
    pipe.kind = isLateral ? PipeKind::Lateral : PipeKind::Section;
    const QString kind = Kinds::ofPipe(pipe.kind);
    m_report.read(kind);
    if (key.isEmpty()) {
        m_report.leaveOut(kind, key, sourceOf(object), QStringLiteral("no Objektbezeichnung"));
        return;
    }
    pipe.key = key;
    pipe.source = sourceOf(object);
    pipe.details = detailsOf(object);
    pipe.attributes.insert(QStringLiteral("isybau"), object.toJson());
    pipe.fromKey = data->value(QStringLiteral("KnotenZulauf"));
    pipe.toKey = data->value(QStringLiteral("KnotenAblauf"));
    pipe.fromKind = nodeKind(data->value(QStringLiteral("KnotenZulaufTyp")));
    pipe.toKind = nodeKind(data->value(QStringLiteral("KnotenAblaufTyp")));
    pipe.fromInvert = number(*data, QStringLiteral("SohlhoeheZulauf"), kind, key);
    pipe.toInvert = number(*data, QStringLiteral("SohlhoeheAblauf"), kind, key);
    pipe.length = number(*data, QStringLiteral("Laenge"), kind, key);
    pipe.heightMm = number(*data, QStringLiteral("Profil/Profilhoehe"), kind, key);
    pipe.widthMm = number(*data, QStringLiteral("Profil/Profilbreite"), kind, key);
    pipe.profile = profileName(data->value(QStringLiteral("Profil/Profilart")));
    if (data->value(QStringLiteral("Leitung/Anschlussdaten/Kantentyp")) != QLatin1String("1"))
        pipe.sectionKey = data->value(QStringLiteral("Leitung/Anschlussdaten/Objektbezeichnung"));
    pipe.joinDistance = number(*data, QStringLiteral("Leitung/Anschlussdaten/Entfernung"), kind, key);
    pipe.course = course(object, kind, key);
    if (!pipe.course.isEmpty())
        noteCrs(object, pipe.course.first().x);
    m_model.pipes.append(pipe);
}

QVector<Point> IsybauObjects::course(const XmlElement& object, const QString& kind, const QString& key)
{
    QVector<const XmlElement*> edges = object.findAll(QStringLiteral("Geometrie/Geometriedaten/Kanten/Kante"));
    if (edges.isEmpty())
        edges = object.findAll(QStringLiteral("Geometrie/Geometriedaten/Polygone/Polygon/Kante"));
    QVector<QVector<Point>> lines;
    for (const XmlElement* edge : qAsConst(edges)) {
        const auto pointOf = [&](const QString& name) -> std::optional<Point> {
            const XmlElement* element = edge->child(name);
            if (!element)
                return std::nullopt;
            const GeometryPoint point = geometryPoint(*element, kind, key);
            if (!point.x || !point.y)
                return std::nullopt;
            return Point {*point.x, *point.y, point.z};
        };
        const std::optional<Point> start = pointOf(QStringLiteral("Start"));
        const std::optional<Point> end = pointOf(QStringLiteral("Ende"));
        if (!start || !end) {
            m_report.warn(kind, key, sourceOf(*edge),
                          QStringLiteral("an edge of the course has no start or no end; the course is not used"));
            return {};
        }
        const std::optional<Point> centre = pointOf(QStringLiteral("Mitte"));
        lines.append(QVector<Point> {*start} +
                     (centre ? Course::arcPoints(*start, *end, *centre) : QVector<Point> {*end}));
    }
    if (lines.isEmpty())
        return {};
    QVector<Point> joined;
    if (!Course::joinLines(lines, JoinToleranceM, joined)) {
        m_report.warn(kind, key, sourceOf(object),
                      QStringLiteral("the edges of the course do not meet; they are joined in the order of the file"));
        joined.clear();
        for (const QVector<Point>& line : qAsConst(lines))
            joined += line;
    }
    return Course::withoutRepeats(joined);
}

void IsybauObjects::finish()
{
    for (auto it = m_unknownCrs.cbegin(); it != m_unknownCrs.cend(); ++it) {
        m_report.warn(Kinds::Objects, it.key(), {m_fileName, 0, {}},
                      QStringLiteral("unknown name of a coordinate system, at %1 objects").arg(it.value()));
    }
    if (m_crs.isEmpty())
        return;
    const auto most = std::max_element(m_crs.cbegin(), m_crs.cend());
    if (m_crs.size() > 1) {
        m_report.warn(
            Kinds::Objects, {}, {m_fileName, 0, {}},
            QStringLiteral("the objects name %1 coordinate systems; %2 is used").arg(m_crs.size()).arg(most.key()));
    }
    if (m_model.crs.isEmpty())
        m_model.crs = most.key();
    else if (m_model.crs != most.key())
        m_report.warn(Kinds::Objects, {}, {m_fileName, 0, {}},
                      QStringLiteral("in %1, but the network is in %2").arg(most.key(), m_model.crs));
}

} // namespace Torvik::Import
