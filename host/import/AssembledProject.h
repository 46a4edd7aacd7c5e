#pragma once

#include "host/import/NetworkModel.h"

namespace Torvik::Import {

/** Rows as they go into a project; every reference is the id of another row, or empty. Depths are metres below the
 * position of the node, sizes millimetres. A value that is not known is absent. */
struct NodeRow {
    QString id;
    QString key;
    QString type; ///< "MH", "CON" or "BLD"
    QString shapeWkt;
    std::optional<double> depthToInvert;
    std::optional<double> coverLevel;
    std::optional<double> invertLevel;
    std::optional<double> size1;
    Details details;
    QJsonObject attributes;
};

struct PipeRow {
    QString id;
    QString key;
    PipeKind kind = PipeKind::Section;
    QString fromNodeId;
    QString toNodeId;
    QString sectionId; ///< of a lateral: the section on which it sits
    QString shapeWkt;  ///< the whole course, in the direction of the flow
    std::optional<double> fromLevel;
    std::optional<double> toLevel;
    std::optional<double> fromNodeDepth;
    std::optional<double> toNodeDepth;
    std::optional<double> size1;
    std::optional<double> size2;
    QString profile;
    std::optional<double> length;
    std::optional<double> offset;
    Details details;
    QJsonObject attributes;
};

struct InspectionRow {
    QString id;
    QString pipeId;
    QString startNodeId;
    QString endNodeId;
    Direction direction = Direction::Downstream;
    QString shapeWkt;
    QString date; ///< ISO 8601; empty when it was not said
    QString time;
    QString inspector;
    QString remarks;
    std::optional<double> inspectedLength;
    QJsonObject attributes;
};

struct ObservationRow {
    QString id;
    QString inspectionId;
    QString lateralId; ///< of a connection: the lateral that leaves here
    FindingData finding;
};

struct AssembledProject {
    QString crsWkt;
    QVector<NodeRow> nodes;
    QVector<PipeRow> pipes; ///< sections and laterals, in the order of the source
    QVector<InspectionRow> inspections;
    QVector<ObservationRow> observations; ///< those of an inspection one after the other, in the order of the source
};

} // namespace Torvik::Import
