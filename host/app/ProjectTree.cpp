#include "host/app/ProjectTree.h"

#include "domain/boundary/CPipeObjects.h"
#include "domain/boundary/ColumnNames.h"
#include "host/domain/ShownUnit.h"

#include <QDir>
#include <QLocale>

namespace Torvik::Viewer {

using namespace Torvik::Database;

namespace {

const QString nodesGroup = QStringLiteral("nodes");
const QString sectionsGroup = QStringLiteral("sections");
const QString lateralsGroup = QStringLiteral("laterals");

QString nameOf(const CDomainObject& object)
{
    const QString key = object.readValue(NODE_KEY_COLUMN).toString();
    return key.isEmpty() ? ProjectTree::tr("without a name") : key;
}

QString nameOfInspection(const CPipeInspectionObject& inspection)
{
    const QString key = inspection.readValue(QStringLiteral("INS_Key")).toString();
    return ProjectTree::tr("Inspection %1").arg(key.isEmpty() ? inspection.id().left(8) : key);
}

} // namespace

int ProjectTree::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_lines.size();
}

QVariant ProjectTree::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_lines.size())
        return {};
    const Line& line = m_lines[index.row()];
    switch (role) {
    case ObjectIdRole:
        return line.id;
    case Qt::DisplayRole:
    case TextRole:
        return line.text;
    case DepthRole:
        return line.depth;
    case FoldableRole:
        return line.foldable;
    case UnfoldedRole:
        return line.unfolded;
    default:
        return {};
    }
}

QHash<int, QByteArray> ProjectTree::roleNames() const
{
    return {{ObjectIdRole, "objectId"},
            {TextRole, "text"},
            {DepthRole, "depth"},
            {FoldableRole, "foldable"},
            {UnfoldedRole, "unfolded"}};
}

void ProjectTree::setProject(const QSharedPointer<CProjectObject>& project)
{
    m_project = project;
    m_lines.clear();
    refresh();
}

void ProjectTree::refresh()
{
    QStringList unfolded;
    for (const Line& line : qAsConst(m_lines)) {
        if (line.unfolded)
            unfolded << line.id;
    }
    QVector<Line> lines;
    if (const auto project = m_project.toStrongRef()) {
        const bool isNew = m_lines.isEmpty();
        const QString name = QDir(project->projectPath()).dirName();
        append(lines, {project->id(), name, 0, true, false}, isNew ? QStringList {project->id()} : unfolded);
    }
    beginResetModel();
    m_lines = lines;
    endResetModel();
    emit countChanged();
}

void ProjectTree::append(QVector<Line>& lines, Line line, const QStringList& unfolded) const
{
    line.unfolded = line.foldable && unfolded.contains(line.id);
    lines << line;
    if (!line.unfolded)
        return;
    for (const Line& child : below(line))
        append(lines, child, unfolded);
}

void ProjectTree::toggle(int row)
{
    if (row < 0 || row >= m_lines.size() || !m_lines[row].foldable)
        return;
    Line& line = m_lines[row];
    line.unfolded = !line.unfolded;
    emit dataChanged(index(row), index(row), {UnfoldedRole});
    if (line.unfolded) {
        const QVector<Line> children = below(line);
        if (children.isEmpty())
            return;
        beginInsertRows({}, row + 1, row + children.size());
        // One move of what is behind, however many come in.
        m_lines = m_lines.mid(0, row + 1) + children + m_lines.mid(row + 1);
        endInsertRows();
    } else {
        int end = row + 1;
        while (end < m_lines.size() && m_lines[end].depth > line.depth)
            ++end;
        if (end == row + 1)
            return;
        beginRemoveRows({}, row + 1, end - 1);
        m_lines.remove(row + 1, end - row - 1);
        endRemoveRows();
    }
    emit countChanged();
}

QVector<ProjectTree::Line> ProjectTree::below(const Line& line) const
{
    const auto project = m_project.toStrongRef();
    QVector<Line> lines;
    if (!project)
        return lines;
    const int depth = line.depth + 1;
    const auto addPipe = [&](const CGenericPipeObject& pipe) {
        lines << Line {pipe.id(), nameOf(pipe), depth, pipe.inspectionCount() > 0, false};
    };
    if (line.id == nodesGroup) {
        for (int i = 0; i < project->nodeCount(); ++i)
            lines << Line {project->node(i)->id(), nameOf(*project->node(i)), depth, false, false};
    } else if (line.id == sectionsGroup) {
        for (int i = 0; i < project->sectionCount(); ++i)
            addPipe(*project->section(i));
    } else if (line.id == lateralsGroup) {
        for (int i = 0; i < project->lateralCount(); ++i)
            addPipe(*project->lateral(i));
    } else if (line.depth == 0) {
        const auto addGroup = [&](const QString& id, const QString& text, int count) {
            lines << Line {id, text.arg(count), depth, count > 0, false};
        };
        addGroup(nodesGroup, tr("Nodes (%1)"), project->nodeCount());
        addGroup(sectionsGroup, tr("Sections (%1)"), project->sectionCount());
        addGroup(lateralsGroup, tr("Laterals (%1)"), project->lateralCount());
    } else if (const auto pipe = qSharedPointerDynamicCast<CGenericPipeObject>(project->lookupObject(line.id))) {
        for (int i = 0; i < pipe->inspectionCount(); ++i) {
            const auto inspection = pipe->inspection(i);
            lines << Line {inspection->id(), nameOfInspection(*inspection), depth, inspection->observationCount() > 0,
                           false};
        }
    } else if (const auto inspection =
                   qSharedPointerDynamicCast<CPipeInspectionObject>(project->lookupObject(line.id))) {
        for (int i = 0; i < inspection->observationCount(); ++i) {
            const auto observation = inspection->observation(i);
            const double distance = observation->readValue(QStringLiteral("OBS_Distance")).toDouble();
            const QString text = QStringLiteral("%1  %2").arg(
                QLocale().toString(distance, 'f', 2), observation->readValue(QStringLiteral("OBS_Code")).toString());
            lines << Line {observation->id(), text, depth, false, false};
        }
    }
    return lines;
}

} // namespace Torvik::Viewer
