#include "host/app/ProjectLists.h"

#include "domain/boundary/ColumnNames.h"
#include "host/domain/ShownUnit.h"

#include <QCoreApplication>
#include <QLocale>

namespace Torvik::Viewer::ProjectLists {

using namespace Torvik::Database;

namespace {

class Words {
    Q_DECLARE_TR_FUNCTIONS(ProjectLists)
};

QString keyOf(const CDomainObjectPointer& object)
{
    return object ? object->readValue(NODE_KEY_COLUMN).toString() : QString();
}

QString number(const QVariant& value, int decimals)
{
    return QLocale().toString(value.toDouble(), 'f', decimals);
}

QString lengthOf(const QVariant& metres, int decimals)
{
    return Base::ShownUnit::instance().length(metres.toDouble(), decimals);
}

QString wordFor(const QString& nodeType)
{
    if (nodeType == QLatin1String("CON"))
        return Words::tr("connection");
    if (nodeType == QLatin1String("BLD"))
        return Words::tr("building");
    return Words::tr("manhole");
}

QString detailOfNode(const CDomainObject& node)
{
    QStringList parts {wordFor(node.readValue(QStringLiteral("OBJ_Type")).toString())};
    const QVariant depth = node.readValue(QStringLiteral("OBJ_DepthToInvert"));
    if (depth.isValid() && !depth.isNull())
        parts << Words::tr("%1 deep").arg(lengthOf(depth, 2));
    if (node.readValue(NODE_SHAPE_WKT_COLUMN).toString().isEmpty())
        parts << Words::tr("no position");
    return parts.join(QStringLiteral(", "));
}

QString detailOfPipe(const CProjectObject& project, const CDomainObject& pipe, const QString& kind)
{
    QStringList parts;
    if (kind == QLatin1String("lateral"))
        parts << Words::tr("lateral");
    const QVariant size = pipe.readValue(QStringLiteral("OBJ_Size1"));
    if (size.toDouble() > 0)
        parts << Words::tr("DN %1").arg(number(size, 0));
    const QVariant length = pipe.readValue(QStringLiteral("OBJ_Length"));
    if (length.toDouble() > 0)
        parts << lengthOf(length, 1);
    const QString from = keyOf(project.lookupObject(pipe.readValue(SECTION_FROMNODE_REF_COLUMN).toString()));
    const QString to = keyOf(project.lookupObject(pipe.readValue(SECTION_TONODE_REF_COLUMN).toString()));
    if (!from.isEmpty() || !to.isEmpty())
        parts << QStringLiteral("%1 \u2192 %2")
                     .arg(from.isEmpty() ? QStringLiteral("?") : from, to.isEmpty() ? QStringLiteral("?") : to);
    return parts.join(QStringLiteral(", "));
}

QString detailOfInspection(const CPipeInspectionObject& inspection)
{
    QStringList parts;
    const QString from = keyOf(inspection.startNode());
    if (inspection.inspectionDirection() == 1)
        parts << (from.isEmpty() ? Words::tr("downstream") : Words::tr("downstream from %1").arg(from));
    else if (inspection.inspectionDirection() == 2)
        parts << (from.isEmpty() ? Words::tr("upstream") : Words::tr("upstream from %1").arg(from));
    else if (!from.isEmpty())
        parts << Words::tr("from %1").arg(from);
    const int count = inspection.observationCount();
    parts << (count == 1 ? Words::tr("1 observation") : Words::tr("%1 observations").arg(count));
    return parts.join(QStringLiteral(", "));
}

template <typename Visit>
void forEachPipe(const CProjectObject& project, const Visit& visit)
{
    for (int i = 0; i < project.sectionCount(); ++i)
        visit(*project.section(i), QStringLiteral("section"));
    for (int i = 0; i < project.lateralCount(); ++i)
        visit(*project.lateral(i), QStringLiteral("lateral"));
}

} // namespace

QVector<ListedObject> nodes(const CProjectObject& project)
{
    QVector<ListedObject> lines;
    lines.reserve(project.nodeCount());
    for (int i = 0; i < project.nodeCount(); ++i) {
        const auto node = project.node(i);
        lines << ListedObject {node->id(), keyOf(node), detailOfNode(*node), QStringLiteral("node")};
    }
    return lines;
}

QVector<ListedObject> pipes(const CProjectObject& project)
{
    QVector<ListedObject> lines;
    lines.reserve(project.sectionCount() + project.lateralCount());
    forEachPipe(project, [&](const CGenericPipeObject& pipe, const QString& kind) {
        lines << ListedObject {pipe.id(), pipe.readValue(NODE_KEY_COLUMN).toString(), detailOfPipe(project, pipe, kind),
                               kind};
    });
    return lines;
}

QVector<ListedObject> inspections(const CProjectObject& project)
{
    QVector<ListedObject> lines;
    forEachPipe(project, [&lines](const CGenericPipeObject& pipe, const QString&) {
        for (int i = 0; i < pipe.inspectionCount(); ++i) {
            const auto inspection = pipe.inspection(i);
            lines << ListedObject {inspection->id(), pipe.readValue(NODE_KEY_COLUMN).toString(),
                                   detailOfInspection(*inspection), QStringLiteral("inspection")};
        }
    });
    return lines;
}

} // namespace Torvik::Viewer::ProjectLists
