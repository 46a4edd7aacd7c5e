#include "host/import/IsybauInspections.h"

#include "host/domain/ObservationCodes.h"
#include "host/import/IsybauFindings.h"
#include "host/import/IsybauObjects.h"

namespace Torvik::Import {

namespace {

/** Kinds of inspected objects in the format. */
bool isPipeType(const QString& type)
{
    return type == QLatin1String("1") || type == QLatin1String("2");
}

/** An inspection with a start code and without one of the codes that end or abandon it goes on. */
bool isUnderWay(const QVector<const XmlElement*>& findings)
{
    bool started = false;
    for (const XmlElement* finding : findings) {
        const QString code = finding->value(QStringLiteral("InspektionsKode"));
        if (Database::ObservationCodes::flags(code) & Database::ObservationCodes::endOfInspection)
            return false;
        started = started || code.startsWith(QLatin1String("BCD"));
    }
    return started;
}

} // namespace

IsybauInspections::IsybauInspections(NetworkModel& model, ImportReport& report, const QString& fileName)
    : m_model(model)
    , m_report(report)
    , m_fileName(fileName)
{
}

Direction IsybauInspections::direction(const QString& code)
{
    if (code == QLatin1String("O"))
        return Direction::Downstream;
    if (code == QLatin1String("U"))
        return Direction::Upstream;
    return Direction::Unknown;
}

void IsybauInspections::addOrder(const XmlElement& order)
{
    m_orders.insert(order.value(QStringLiteral("Auftragskennung")), order.toJson().toObject());
}

QJsonObject IsybauInspections::withOrder(const XmlElement& inspection) const
{
    QJsonObject object = inspection.toJson().toObject();
    const auto order = m_orders.constFind(inspection.value(QStringLiteral("Auftragskennung")));
    if (order != m_orders.cend())
        object.insert(QStringLiteral("Auftrag"), *order);
    return object;
}

void IsybauInspections::add(const XmlElement& object)
{
    bool used = false;
    for (const XmlElement& child : object.children) {
        if (child.name == QLatin1String("OptischeInspektion")) {
            used = true;
            const XmlElement* pipe = child.child(QStringLiteral("Rohrleitung"));
            if (pipe) {
                addPipeInspection(object, child, *pipe);
            } else {
                const int findings = child.findAll(QStringLiteral("Knoten/Inspektionsdaten/KZustand")).size() +
                                     child.findAll(QStringLiteral("Bauwerk/Inspektionsdaten/BZustand")).size();
                addRecord(object, child, Kinds::NodeInspections, findings);
            }
        } else if (child.name == QLatin1String("Dichtheitspruefungen")) {
            used = true;
            for (const XmlElement* test : child.findAll(QStringLiteral("Pruefung")))
                addRecord(object, *test, Kinds::TightnessTests, 0);
        }
    }
    if (!used) {
        m_report.read(Kinds::Objects);
        m_report.leaveOut(Kinds::Objects, object.value(QStringLiteral("Objektbezeichnung")), sourceOf(object),
                          QStringLiteral("an inspected object without an inspection"));
    }
}

void IsybauInspections::addPipeInspection(const XmlElement& object, const XmlElement& inspection,
                                          const XmlElement& pipe)
{
    InspectionData data;
    data.source = sourceOf(object);
    data.pipeKey = object.value(QStringLiteral("Objektbezeichnung"));
    const QString type = object.value(QStringLiteral("Anlagentyp"));
    const bool isLateral = type.isEmpty() ? pipe.value(QStringLiteral("Rohrleitungstyp")) == QLatin1String("1")
                                          : type == QLatin1String("2");
    data.pipeKind = isLateral ? PipeKind::Lateral : PipeKind::Section;
    data.direction = direction(pipe.value(QStringLiteral("Inspektionsrichtung")));
    data.fromKey = pipe.value(QStringLiteral("RGrunddaten/KnotenZulauf"));
    data.toKey = pipe.value(QStringLiteral("RGrunddaten/KnotenAblauf"));
    data.date = inspection.value(QStringLiteral("Inspektionsdatum"));
    data.time = inspection.value(QStringLiteral("Uhrzeit"));
    data.inspector = inspection.value(QStringLiteral("NameUntersucher"));
    data.remarks = inspection.value(QStringLiteral("Bemerkung"));

    const QVector<const XmlElement*> findings = pipe.findAll(QStringLiteral("Inspektionsdaten/RZustand"));
    m_report.read(Kinds::Inspections);
    m_report.read(Kinds::Observations, findings.size());
    IsybauObjects numbers(m_model, m_report, m_fileName);
    data.inspectedLength = numbers.number(pipe, QStringLiteral("Inspektionslaenge"), Kinds::Inspections, data.pipeKey);
    data.underWay = isUnderWay(findings);
    data.findings = IsybauFindings(m_report, m_fileName, data.pipeKey).read(findings);

    QJsonObject attributes = withOrder(inspection);
    QJsonObject rest = attributes.value(QStringLiteral("Rohrleitung")).toObject();
    rest.remove(QStringLiteral("Inspektionsdaten"));
    attributes.insert(QStringLiteral("Rohrleitung"), rest);
    data.attributes.insert(QStringLiteral("isybau"), attributes);
    m_model.inspections.append(data);
}

void IsybauInspections::addRecord(const XmlElement& object, const XmlElement& content, const QString& reportKind,
                                  int observations)
{
    AttachedRecord record;
    record.reportKind = reportKind;
    record.source = sourceOf(content);
    record.key = object.value(QStringLiteral("Objektbezeichnung"));
    record.observations = observations;
    record.attributes = withOrder(content);
    const QString type = object.value(QStringLiteral("Anlagentyp"));
    record.toPipe = isPipeType(type);
    record.pipeKind = type == QLatin1String("2") ? PipeKind::Lateral : PipeKind::Section;
    if (type == QLatin1String("3"))
        record.nodeKind = NodeKind::Manhole;
    else if (type == QLatin1String("4"))
        record.nodeKind = NodeKind::Building;
    m_report.read(reportKind);
    if (observations > 0)
        m_report.read(Kinds::NodeObservations, observations);
    m_model.attached.append(record);
}

} // namespace Torvik::Import
