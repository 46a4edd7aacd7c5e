#include "host/import/IsybauReader.h"

#include "host/import/IsybauInspections.h"
#include "host/import/IsybauObjects.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

namespace Torvik::Import {

IsybauReader::IsybauReader(NetworkModel& model, ImportReport& report)
    : m_model(model)
    , m_report(report)
{
}

bool IsybauReader::isIsybauNamespace(const QString& uri)
{
    return uri == QLatin1String("http://www.ofd-hannover.la/Identifikation") ||
           uri == QLatin1String("http://www.bfr-abwasser.de") ||
           uri == QLatin1String("http://www.bfr-abwasser.de/Identifikation");
}

QString IsybauReader::epsgOf(const QString& crsName, double easting)
{
    static const QRegularExpression utm(QStringLiteral("^ETRS89_UTM(31|32|33)"));
    static const QRegularExpression gk(QStringLiteral("^DE_(DHDN|RD/83|42/83|PD/83)_3GK([2345])"));
    const QRegularExpressionMatch utmMatch = utm.match(crsName);
    if (utmMatch.hasMatch()) {
        const int zone = utmMatch.captured(1).toInt();
        if (easting < 1e6)
            return QStringLiteral("EPSG:%1").arg(25800 + zone);
        return QStringLiteral("EPSG:%1").arg(zone == 31 ? 5649 : zone == 32 ? 4647 : 5650);
    }
    const QRegularExpressionMatch match = gk.match(crsName);
    if (!match.hasMatch())
        return {};
    const int zone = match.captured(2).toInt();
    const QString datum = match.captured(1);
    int code = 0;
    if (datum == QLatin1String("DHDN"))
        code = 31464 + zone;
    else if (datum == QLatin1String("42/83") && zone >= 3)
        code = zone == 3 ? 2397 : zone == 4 ? 2398 : 2399;
    else if (datum == QLatin1String("RD/83") && zone >= 4)
        code = zone == 4 ? 3398 : 3399;
    else if (datum == QLatin1String("PD/83") && zone <= 4 && zone >= 3)
        code = zone == 3 ? 3396 : 3397;
    return code > 0 ? QStringLiteral("EPSG:%1").arg(code) : QString();
}

bool IsybauReader::read(QIODevice& device, const QString& fileName)
{
    QXmlStreamReader xml(&device);
    if (xml.readNextStartElement() &&
        (xml.name() != QLatin1String("Identifikation") || !isIsybauNamespace(xml.namespaceUri().toString()))) {
        m_report.fail({fileName, int(xml.lineNumber()), {}},
                      QStringLiteral("not ISYBAU XML: the root element is %1 in the namespace \"%2\"")
                          .arg(xml.name(), xml.namespaceUri()));
        return false;
    }
    IsybauObjects objects(m_model, m_report, fileName);
    IsybauInspections inspections(m_model, m_report, fileName);
    QString version;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QStringRef name = xml.name();
        if (name == QLatin1String("AbwassertechnischeAnlage"))
            objects.add(XmlElement::read(xml));
        else if (name == QLatin1String("InspizierteAbwassertechnischeAnlage"))
            inspections.add(XmlElement::read(xml));
        else if (name == QLatin1String("Auftrag"))
            inspections.addOrder(XmlElement::read(xml));
        else if (name == QLatin1String("Version") && version.isEmpty())
            version = XmlElement::read(xml).text;
    }
    if (xml.hasError()) {
        m_report.fail({fileName, int(xml.lineNumber()), {}},
                      QStringLiteral("not well-formed XML: %1").arg(xml.errorString()));
        return false;
    }
    objects.finish();
    if (m_model.format.isEmpty())
        m_model.format = QStringLiteral("ISYBAU XML %1").arg(version);
    return true;
}

} // namespace Torvik::Import
