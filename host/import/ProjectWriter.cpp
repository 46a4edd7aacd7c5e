#include "host/import/ProjectWriter.h"

#include "host/domain/ProjectStore.h"

#include <QJsonDocument>

namespace Torvik::Import {

namespace {

using namespace Torvik::Database;

template <typename Number>
void put(QVariantMap& values, const QString& column, const std::optional<Number>& value)
{
    if (value)
        values.insert(column, *value);
}

void put(QVariantMap& values, const QString& column, const QString& value)
{
    if (!value.isEmpty())
        values.insert(column, value);
}

QString jsonText(const QJsonObject& object)
{
    return object.isEmpty() ? QString() : QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void putDetails(QVariantMap& values, const Details& details)
{
    put(values, QStringLiteral("OBJ_Street"), details.street);
    put(values, QStringLiteral("OBJ_District"), details.district);
    put(values, QStringLiteral("OBJ_Material"), details.material);
    put(values, QStringLiteral("OBJ_SewerType"), details.sewerType);
    put(values, QStringLiteral("OBJ_Status"), details.status);
    put(values, QStringLiteral("OBJ_Remarks"), details.remarks);
    bool isNumber = false;
    const int year = details.year.toInt(&isNumber);
    if (isNumber)
        values.insert(QStringLiteral("OBJ_Year"), year);
}

QVariantMap valuesOf(const NodeRow& row)
{
    QVariantMap values {{QStringLiteral("OBJ_PK"), row.id},
                        {QStringLiteral("OBJ_Key"), row.key},
                        {QStringLiteral("OBJ_Type"), row.type}};
    put(values, QStringLiteral("OBJ_Shape_WKT"), row.shapeWkt);
    put(values, QStringLiteral("OBJ_DepthToInvert"), row.depthToInvert);
    put(values, QStringLiteral("OBJ_CoverLevel"), row.coverLevel);
    put(values, QStringLiteral("OBJ_InvertLevel"), row.invertLevel);
    put(values, QStringLiteral("OBJ_Size1"), row.size1);
    put(values, QStringLiteral("OBJ_Attributes"), jsonText(row.attributes));
    putDetails(values, row.details);
    return values;
}

QVariantMap valuesOf(const PipeRow& row)
{
    QVariantMap values {{QStringLiteral("OBJ_PK"), row.id}, {QStringLiteral("OBJ_Key"), row.key}};
    put(values, QStringLiteral("OBJ_FromNode_REF"), row.fromNodeId);
    put(values, QStringLiteral("OBJ_ToNode_REF"), row.toNodeId);
    put(values, QStringLiteral("OBJ_Section_REF"), row.sectionId);
    put(values, QStringLiteral("OBJ_Shape_WKT"), row.shapeWkt);
    put(values, QStringLiteral("OBJ_FromNodeDepth"), row.fromNodeDepth);
    put(values, QStringLiteral("OBJ_ToNodeDepth"), row.toNodeDepth);
    put(values, QStringLiteral("OBJ_FromNodeLevel"), row.fromLevel);
    put(values, QStringLiteral("OBJ_ToNodeLevel"), row.toLevel);
    put(values, QStringLiteral("OBJ_Size1"), row.size1);
    put(values, QStringLiteral("OBJ_Size2"), row.size2);
    put(values, QStringLiteral("OBJ_ProfileShape"), row.profile);
    put(values, QStringLiteral("OBJ_Length"), row.length);
    put(values, QStringLiteral("OBJ_Offset"), row.offset);
    put(values, QStringLiteral("OBJ_Attributes"), jsonText(row.attributes));
    putDetails(values, row.details);
    return values;
}

QVariantMap valuesOf(const InspectionRow& row)
{
    QVariantMap values {{QStringLiteral("INS_PK"), row.id}, {QStringLiteral("INS_InspectionDir"), int(row.direction)}};
    put(values, QStringLiteral("INS_StartNode_REF"), row.startNodeId);
    put(values, QStringLiteral("INS_EndNode_REF"), row.endNodeId);
    put(values, QStringLiteral("INS_Shape_WKT"), row.shapeWkt);
    put(values, QStringLiteral("INS_Date"), row.date);
    put(values, QStringLiteral("INS_Time"), row.time);
    put(values, QStringLiteral("INS_Operator"), row.inspector);
    put(values, QStringLiteral("INS_Remarks"), row.remarks);
    put(values, QStringLiteral("INS_Length"), row.inspectedLength);
    put(values, QStringLiteral("INS_Attributes"), jsonText(row.attributes));
    return values;
}

QVariantMap valuesOf(const ObservationRow& row)
{
    const FindingData& finding = row.finding;
    QVariantMap values {{QStringLiteral("OBS_Code"), finding.code}, {QStringLiteral("OBS_Distance"), finding.distance}};
    put(values, QStringLiteral("OBS_PK"), row.id);
    put(values, QStringLiteral("OBS_Ch1"), finding.ch1);
    put(values, QStringLiteral("OBS_Ch2"), finding.ch2);
    put(values, QStringLiteral("OBS_Q1_Value"), finding.q1);
    put(values, QStringLiteral("OBS_Q2_Value"), finding.q2);
    put(values, QStringLiteral("OBS_DistanceEnd"), finding.distanceEnd);
    put(values, QStringLiteral("OBS_Continuous"), finding.range);
    put(values, QStringLiteral("OBS_ClockPos1"), finding.clock1);
    put(values, QStringLiteral("OBS_ClockPos2"), finding.clock2);
    put(values, QStringLiteral("OBS_BendClkH"), finding.bendClock);
    put(values, QStringLiteral("OBS_JointAngle"), finding.angle);
    if (finding.isAtJoint)
        values.insert(QStringLiteral("OBS_AtJoint"), 1);
    put(values, QStringLiteral("OBS_LateralSection_REF"), row.lateralId);
    put(values, QStringLiteral("OBS_Photo"), finding.photo);
    put(values, QStringLiteral("OBS_VideoTime"), finding.videoTime);
    put(values, QStringLiteral("OBS_Remarks"), finding.remarks);
    put(values, QStringLiteral("OBS_Attributes"), jsonText(finding.attributes));
    return values;
}

StoreStatus fill(BulkWriter& writer, const AssembledProject& project)
{
    for (const NodeRow& row : project.nodes) {
        const StoreStatus status = writer.insert(NodeObjectType, {}, valuesOf(row));
        if (!status)
            return status;
    }
    for (const PipeRow& row : project.pipes) {
        const ObjectType type = row.kind == PipeKind::Section ? SectionObjectType : LateralObjectType;
        const StoreStatus status = writer.insert(type, {}, valuesOf(row));
        if (!status)
            return status;
    }
    for (const InspectionRow& row : project.inspections) {
        const StoreStatus status = writer.insert(PipeInspectionObjectType, row.pipeId, valuesOf(row));
        if (!status)
            return status;
    }
    for (const ObservationRow& row : project.observations) {
        const StoreStatus status = ProjectWriter::insert(writer, row);
        if (!status)
            return status;
    }
    return {};
}

} // namespace

StoreStatus ProjectWriter::insert(BulkWriter& writer, const ObservationRow& row)
{
    return writer.insert(PipeObservationObjectType, row.inspectionId, valuesOf(row));
}

QString ProjectWriter::write(const AssembledProject& project, const QString& folder, const QString& name)
{
    const QVariantMap values {{QStringLiteral("PRJ_Name"), name},
                              {QStringLiteral("PRJ_ProjectionWKT"), project.crsWkt},
                              {QStringLiteral("PRJ_Is3d"), 1}};
    return ProjectStore::create(folder, values, [&](BulkWriter& writer) { return fill(writer, project); }).error;
}

} // namespace Torvik::Import
