#pragma once

#include "host/import/CoordinateSystem.h"
#include "host/import/ImportReport.h"
#include "host/import/OgrMapping.h"

class GDALDataset;
class OGRFeature;
class OGRLayer;

namespace Torvik::Import {

/** Reads nodes and pipes from any vector source that GDAL/OGR opens, as a mapping says. Curves become chords. */
class OgrReader {
public:
    /** `wantedCrs` is the system that the user names: sources with another one are carried over to it, sources without
     * one are taken to be in it. */
    OgrReader(NetworkModel& model, ImportReport& report, const OgrMapping& mapping, const QString& wantedCrs);

    /** False when the source does not open or lacks a mapped layer or column; the report holds the error, with the
     * names that are there. */
    bool read(const QString& path);

    /** System of the ordinates in the model, once read. */
    const CoordinateSystem& crs() const { return m_crs; }

private:
    bool settleCrs(GDALDataset& source);
    bool readNodes(GDALDataset& source, const MappedLayer& mapped);
    bool readPipes(GDALDataset& source, const MappedLayer& mapped);
    void readNode(OGRFeature& feature, const MappedLayer& mapped, const SourceRef& at);
    void readPipe(OGRFeature& feature, const MappedLayer& mapped, const SourceRef& at);
    OGRLayer* layerOf(GDALDataset& source, const QString& name);
    bool hasColumn(OGRLayer& layer, const QString& column);
    bool prepare(GDALDataset& source, OGRLayer& layer, const MappedLayer& mapped);
    QString text(const OGRFeature& feature, const MappedLayer& mapped, const QString& property) const;
    std::optional<double> number(const OGRFeature& feature, const MappedLayer& mapped, const QString& property,
                                 const QString& kind, const SourceRef& at);
    QString kindOf(const OGRFeature& feature, const MappedLayer& mapped, const QString& kind, const SourceRef& at);
    void carryOver(Point& point) const;

    NetworkModel& m_model;
    ImportReport& m_report;
    const OgrMapping& m_mapping;
    QString m_wantedCrs;
    QString m_fileName;
    CoordinateSystem m_crs;
    std::unique_ptr<CoordinateTransform> m_transform;  ///< of the layer that is being read
    QHash<QString, QHash<QString, QString>> m_lookups; ///< "layer/key/value" -> key -> value
    QHash<QString, QString> m_keyById;                 ///< of nodes
};

} // namespace Torvik::Import
