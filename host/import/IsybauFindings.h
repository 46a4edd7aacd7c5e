#pragma once

#include "host/import/ImportReport.h"
#include "host/import/XmlElement.h"

namespace Torvik::Import {

/** The findings of one inspection of a pipe in an ISYBAU file, in this project's meaning: stations from the start of
 * the inspection, hours of the clock from 1 to 12, the turn of a bend as hour and angle. What cannot be taken is left
 * out in the report with its line; read = taken + left out is settled where the inspection is. */
class IsybauFindings {
public:
    IsybauFindings(ImportReport& report, const QString& fileName, const QString& pipeKey);

    QVector<FindingData> read(const QVector<const XmlElement*>& elements);

    /** Hour towards which a bend turns. The characterisations say left or right and up or down; the clock position
     * helps where both or neither say something. Nothing where nothing is told. */
    static std::optional<int> bendClock(const QString& sideways, const QString& upDown, std::optional<int> from,
                                        std::optional<int> to);
    /** Stations that are counted from the other end: the start of the inspection is noted behind its end. They are
     * turned, so that the start is at 0. False if there was nothing to turn. */
    static bool turnStations(QVector<FindingData>& findings);

private:
    std::optional<FindingData> readOne(const XmlElement& element);
    std::optional<double> number(const XmlElement& element, const QString& name);
    std::optional<int> hour(const XmlElement& element, const QString& name);
    void readBend(FindingData& finding);
    void closeRanges(QVector<FindingData>& findings);
    void warn(const SourceRef& source, const QString& reason);

    ImportReport& m_report;
    QString m_fileName;
    QString m_pipeKey;
};

} // namespace Torvik::Import
