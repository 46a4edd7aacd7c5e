#pragma once

#include "host/import/ImportReport.h"
#include "host/import/SwmmFile.h"

#include <QHash>

class QIODevice;

namespace Torvik::Import {

/** Reads the network of an EPA SWMM input file: junctions, outfalls, storage units and dividers as manholes, conduits
 * as sections. Pumps, orifices, weirs and outlets are links without a pipe; they are counted and left out.
 *
 *  Heights and profiles come out in metres and millimetres, whatever FLOW_UNITS says. Ordinates come out in
 * `ordinateUnit` below. A conduit's heights are its inverts: LINK_OFFSETS says whether offsets are depths above the
 * node's invert or elevations. A node without a maximum depth reaches to the top of its highest conduit, as in the
 * model itself. */
class SwmmReader {
public:
    enum class OrdinateUnit { NotSaid, Metres, Feet, Degrees };

    SwmmReader(NetworkModel& model, ImportReport& report);

    /** False when the text holds no section of a SWMM file; the report then holds the error. */
    bool read(QIODevice& device, const QString& fileName);

    /** What the file's [MAP] says; the ordinates are left as they are. */
    OrdinateUnit ordinateUnit() const { return m_ordinateUnit; }
    bool isUsUnits() const { return m_metresPerUnit != 1.0; }

private:
    struct CrossSection {
        std::optional<double> heightMm;
        std::optional<double> widthMm;
        QString shape;
        int barrels = 1;
    };

    void readOptions(const SwmmFile& file);
    void readNodes(const SwmmFile& file, const QString& section, int depthField);
    void readCoordinates(const SwmmFile& file);
    void readCrossSections(const SwmmFile& file);
    void readVertices(const SwmmFile& file);
    void readConduits(const SwmmFile& file);
    void readConduit(const SwmmFile::Row& row);
    void leaveOutLinks(const SwmmFile& file);
    void setCovers();
    std::optional<double> offsetHeight(const QString& field, const QString& nodeKey, const SourceRef& source,
                                       const QString& key);
    std::optional<double> metres(const SwmmFile::Row& row, int field, const QString& kind);
    std::optional<double> number(const SwmmFile::Row& row, int field, const QString& kind);
    SourceRef at(const SwmmFile::Row& row) const { return {m_fileName, row.line, {}}; }

    NetworkModel& m_model;
    ImportReport& m_report;
    QString m_fileName;
    OrdinateUnit m_ordinateUnit = OrdinateUnit::NotSaid;
    double m_metresPerUnit = 1.0;
    bool m_offsetsAreElevations = false;
    int m_firstNode = 0;
    QHash<QString, int> m_nodes; ///< first node of that name, in the model
    QHash<QString, CrossSection> m_crossSections;
    QHash<QString, QVector<Point>> m_vertices;
    QHash<QString, Point> m_coordinates;
    QHash<QString, double> m_highestTop; ///< of the conduits at a node
};

} // namespace Torvik::Import
