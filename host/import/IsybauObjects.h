#pragma once

#include "host/import/ImportReport.h"
#include "host/import/XmlElement.h"

#include <QHash>

namespace Torvik::Import {

/** The objects of an ISYBAU network: turns one element "AbwassertechnischeAnlage" after the other into a node or a
 * pipe. */
class IsybauObjects {
public:
    IsybauObjects(NetworkModel& model, ImportReport& report, const QString& fileName);

    void add(const XmlElement& object);
    /** After the last object: settles the coordinate system, the one that most objects name. */
    void finish();

    /** A decimal number, with point or comma; empty text gives none, other text none and a warning. */
    std::optional<double> number(const XmlElement& object, const QString& path, const QString& kind,
                                 const QString& key);
    static std::optional<NodeKind> nodeKind(const QString& code);

private:
    struct GeometryPoint {
        QString attribute;
        std::optional<double> x;
        std::optional<double> y;
        std::optional<double> z;
    };

    void addNode(const XmlElement& object, const QString& key);
    void addPipe(const XmlElement& object, const QString& key);
    void setNodeGeometry(const XmlElement& object, NodeData& node);
    GeometryPoint geometryPoint(const XmlElement& point, const QString& kind, const QString& key);
    QVector<Point> course(const XmlElement& object, const QString& kind, const QString& key);
    void noteCrs(const XmlElement& object, double easting);
    SourceRef sourceOf(const XmlElement& element) const { return {m_fileName, element.line, {}}; }

    NetworkModel& m_model;
    ImportReport& m_report;
    QString m_fileName;
    QHash<QString, int> m_crs;
    QHash<QString, int> m_unknownCrs;
};

} // namespace Torvik::Import
