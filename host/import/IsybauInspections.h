#pragma once

#include "host/import/ImportReport.h"
#include "host/import/XmlElement.h"

#include <QHash>

namespace Torvik::Import {

/** The inspections of an ISYBAU file: turns one element "InspizierteAbwassertechnischeAnlage" after the other into the
 *  inspections of a pipe with their findings, or into records that are kept with a node as they stand. */
class IsybauInspections {
public:
    IsybauInspections(NetworkModel& model, ImportReport& report, const QString& fileName);

    /** An order, which says the coding system of the inspections that name it. */
    void addOrder(const XmlElement& order);
    void add(const XmlElement& object);

    /** "O" starts at the upper node, with the flow; "U" at the lower one, against it. */
    static Direction direction(const QString& code);

private:
    void addPipeInspection(const XmlElement& object, const XmlElement& inspection, const XmlElement& pipe);
    void addRecord(const XmlElement& object, const XmlElement& content, const QString& reportKind, int observations);
    QJsonObject withOrder(const XmlElement& inspection) const;
    SourceRef sourceOf(const XmlElement& element) const { return {m_fileName, element.line, {}}; }

    NetworkModel& m_model;
    ImportReport& m_report;
    QString m_fileName;
    QHash<QString, QJsonObject> m_orders;
};

} // namespace Torvik::Import
