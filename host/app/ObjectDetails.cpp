#include "host/app/ObjectDetails.h"

#include "domain/boundary/CPipeObjects.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "domain/boundary/ColumnNames.h"
#include "host/domain/ShownUnit.h"
#include "host/modules/ObjectContent.h"

#include <QCoreApplication>
#include <QLocale>

namespace Torvik::Viewer {

using namespace Torvik::Database;

namespace {

const QStringList lengthColumns {QStringLiteral("OBJ_Length"), QStringLiteral("OBJ_FromNodeDepth"),
                                 QStringLiteral("OBJ_ToNodeDepth"), QStringLiteral("OBJ_DepthToInvert")};

QString textOf(const QString& column, const QVariant& value)
{
    if (value.isNull())
        return {};
    if (lengthColumns.contains(column))
        return Base::ShownUnit::instance().length(value.toDouble(), 2);
    return value.type() == QVariant::Double ? QLocale().toString(value.toDouble(), 'g', QLocale::FloatingPointShortest)
                                            : value.toString();
}

QString keyOf(const CDomainObjectPointer& object)
{
    return object ? object->readValue(NODE_KEY_COLUMN).toString() : QString();
}

} // namespace

int ObjectDetails::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

QVariant ObjectDetails::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const Row& row = m_rows[index.row()];
    return role == LabelRole || role == Qt::DisplayRole ? QVariant(row.label)
           : role == ValueRole                          ? QVariant(row.value)
                                                        : QVariant();
}

QHash<int, QByteArray> ObjectDetails::roleNames() const
{
    return {{LabelRole, "label"}, {ValueRole, "value"}};
}

void ObjectDetails::setObject(const CDomainObjectPointer& object)
{
    m_object = object;
    refresh();
}

void ObjectDetails::refresh()
{
    const auto object = m_object.toStrongRef();
    beginResetModel();
    m_rows.clear();
    m_title.clear();
    if (object && object->isValid()) {
        const bool isInspection = object->objectType() == PipeInspectionObjectType;
        const auto form = isInspection ? object->parentObject().toStrongRef() : object;
        m_title = keyOf(form);
        if (isInspection)
            addInspection(object);
        addFields(form);
        addPipe(form);
    }
    endResetModel();
    emit titleChanged();
}

void ObjectDetails::addFields(const CDomainObjectPointer& object)
{
    const QString form = QmlWrapper::CQmlDomainObject(object).queryTemplateId();
    for (const TemplateField& field : templateFields(form)) {
        const QString label = QCoreApplication::translate("ObjectContent", field.label.toUtf8().constData());
        m_rows << Row {label, textOf(field.column, object->readValue(field.column))};
    }
}

void ObjectDetails::addPipe(const CDomainObjectPointer& pipe)
{
    const auto inspected = qSharedPointerDynamicCast<CGenericPipeObject>(pipe);
    const auto project = CDomainObject::projectFromObject(pipe);
    if (!inspected || !project)
        return;
    int observations = 0;
    for (int i = 0; i < inspected->inspectionCount(); ++i)
        observations += inspected->inspection(i)->observationCount();
    m_rows << Row {tr("From"), keyOf(project->lookupObject(pipe->readValue(SECTION_FROMNODE_REF_COLUMN).toString()))}
           << Row {tr("To"), keyOf(project->lookupObject(pipe->readValue(SECTION_TONODE_REF_COLUMN).toString()))}
           << Row {tr("Inspections"), QLocale().toString(inspected->inspectionCount())}
           << Row {tr("Observations of all"), QLocale().toString(observations)};
}

void ObjectDetails::addInspection(const CDomainObjectPointer& object)
{
    const auto inspection = qSharedPointerDynamicCast<CPipeInspectionObject>(object);
    if (!inspection)
        return;
    const int direction = inspection->inspectionDirection();
    m_rows << Row {tr("Inspection"), inspection->readValue(QStringLiteral("INS_Key")).toString()}
           << Row {tr("Begins at"), keyOf(inspection->startNode())}
           << Row {tr("Direction"), direction == 1   ? tr("downstream")
                                    : direction == 2 ? tr("upstream")
                                                     : QString()}
           << Row {tr("Observations"), QLocale().toString(inspection->observationCount())};
}

} // namespace Torvik::Viewer
