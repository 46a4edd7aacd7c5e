#pragma once

#include "host/import/ImportReport.h"

class QIODevice;

namespace Torvik::Import {

/** Reads ISYBAU XML, versions 2013-02 and 2017-07 (and files of 2006, whose elements are the same), network and
 * inspections. What is read is appended, so that network and inspections may come from several files.
 *
 *  Where pipes meet a node: the centre of a manhole's bottom (SMP), a building's point SBD or KOP, a connection's own
 *  point. The height of a node is that of its cover (DMP, SBD), or of the ground (GOK); a connection lies at pipe
 * level. */
class IsybauReader {
public:
    IsybauReader(NetworkModel& model, ImportReport& report);

    /** False when the file is not well-formed or not ISYBAU XML; the report then holds the error with its line, and the
     *  model must not be used. `fileName` is for the report. */
    bool read(QIODevice& device, const QString& fileName);

    static bool isIsybauNamespace(const QString& uri);
    /** "EPSG:N" for the format's name of a coordinate system ("ETRS89_UTM32", "DE_DHDN_3GK2") and an easting of the
     * file, which tells whether the zone stands in front; empty for an unknown name. */
    static QString epsgOf(const QString& crsName, double easting);

private:
    NetworkModel& m_model;
    ImportReport& m_report;
};

} // namespace Torvik::Import
