#include "host/modules/ObjectContent.h"

#include <QCoreApplication>
#include <QtQml>

namespace Torvik::Viewer {

namespace {

const QVector<TemplateField>& addressFields()
{
    static const QVector<TemplateField> fields {
        {QStringLiteral("OBJ_Street"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Street"))},
        {QStringLiteral("OBJ_District"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "District"))},
        {QStringLiteral("OBJ_City"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "City"))}};
    return fields;
}

QVector<TemplateField> pipeFields()
{
    return QVector<TemplateField> {
               {QStringLiteral("OBJ_Key"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Name"))},
               {QStringLiteral("OBJ_Size1"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Diameter"))},
               {QStringLiteral("OBJ_Length"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Length"))},
               {QStringLiteral("OBJ_FromNodeDepth"),
                QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Depth at the start"))},
               {QStringLiteral("OBJ_ToNodeDepth"),
                QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Depth at the end"))},
               {QStringLiteral("OBJ_Material"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Material"))},
               {QStringLiteral("OBJ_Year"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Year"))}} +
           addressFields();
}

QVector<TemplateField> nodeFields()
{
    return QVector<TemplateField> {
               {QStringLiteral("OBJ_Key"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Name"))},
               {QStringLiteral("OBJ_Type"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Kind"))},
               {QStringLiteral("OBJ_DepthToInvert"),
                QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Depth to invert"))},
               {QStringLiteral("OBJ_Size1"), QStringLiteral(QT_TRANSLATE_NOOP("ObjectContent", "Diameter"))}} +
           addressFields();
}

} // namespace

QVector<TemplateField> templateFields(const QString& templateId)
{
    if (templateId == QLatin1String("NODE")) {
        return nodeFields();
    }
    if (templateId == QLatin1String("SECTION") || templateId == QLatin1String("LATERAL")) {
        return pipeFields();
    }
    return {};
}

void TemplateLoader::setTemplateId(const QString& id)
{
    if (m_templateId == id) {
        return;
    }
    m_templateId = id;
    emit templateIdChanged();
}

void DomainObjectDataAccessor::setDomainObject(const QmlWrapper::CQmlDomainObject& object)
{
    if (m_object.object() == object.object()) {
        return;
    }
    m_object = object;
    emit domainObjectChanged();
}

void ObjectContentListModel::setDataAccessor(DomainObjectDataAccessor* accessor)
{
    if (m_accessor == accessor) {
        return;
    }
    if (m_accessor) {
        m_accessor->disconnect(this);
    }
    m_accessor = accessor;
    if (accessor) {
        connect(accessor, &DomainObjectDataAccessor::domainObjectChanged, this, &ObjectContentListModel::read);
        connect(accessor, &QObject::destroyed, this, [this] { setDataAccessor(nullptr); });
    }
    read();
    emit dataAccessorChanged();
}

void ObjectContentListModel::setTemplateLoader(TemplateLoader* loader)
{
    if (m_loader == loader) {
        return;
    }
    if (m_loader) {
        m_loader->disconnect(this);
    }
    m_loader = loader;
    if (loader) {
        connect(loader, &TemplateLoader::templateIdChanged, this, &ObjectContentListModel::read);
        connect(loader, &QObject::destroyed, this, [this] { setTemplateLoader(nullptr); });
    }
    read();
    emit templateLoaderChanged();
}

void ObjectContentListModel::read()
{
    beginResetModel();
    m_fields = m_loader && m_accessor && m_accessor->domainObject().isValid() ? templateFields(m_loader->templateId())
                                                                              : QVector<TemplateField>();
    endResetModel();
}

int ObjectContentListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_fields.size();
}

QVariant ObjectContentListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const TemplateField& field = m_fields[index.row()];
    switch (role) {
    case BoundColumnRole:
        return field.column;
    case TextRole:
    case Qt::DisplayRole:
        return QCoreApplication::translate("ObjectContent", field.label.toUtf8().constData());
    case ValueRole:
        return m_accessor && m_accessor->domainObject().isValid()
                   ? m_accessor->domainObject().object()->readValue(field.column)
                   : QVariant();
    default:
        return {};
    }
}

QHash<int, QByteArray> ObjectContentListModel::roleNames() const
{
    return {{BoundColumnRole, "modelData_BoundColumn"}, {TextRole, "modelData_Text"}, {ValueRole, "modelData_Value"}};
}

SortFilterProxyModel::SortFilterProxyModel(QObject* parent)
    : QSortFilterProxyModel(parent)
{
    connect(this, &QAbstractItemModel::rowsInserted, this, &SortFilterProxyModel::countChanged);
    connect(this, &QAbstractItemModel::rowsRemoved, this, &SortFilterProxyModel::countChanged);
    connect(this, &QAbstractItemModel::modelReset, this, &SortFilterProxyModel::countChanged);
}

void SortFilterProxyModel::setSource(QObject* model)
{
    setSourceModel(qobject_cast<QAbstractItemModel*>(model));
    emit filterChanged();
}

void SortFilterProxyModel::setFilterRoleName(const QString& name)
{
    if (m_roleName == name) {
        return;
    }
    m_roleName = name;
    invalidateFilter();
    emit filterChanged();
}

void SortFilterProxyModel::setFilterString(const QString& text)
{
    if (m_filter == text) {
        return;
    }
    m_filter = text;
    invalidateFilter();
    emit filterChanged();
}

QVariant SortFilterProxyModel::value(int row, const QString& roleName) const
{
    const int role = roleOf(roleName);
    return role < 0 ? QVariant() : data(index(row, 0), role);
}

bool SortFilterProxyModel::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    if (m_filter.isEmpty()) {
        return true;
    }
    return sourceModel()->index(row, 0, parent).data(roleOf(m_roleName)).toString() == m_filter;
}

int SortFilterProxyModel::roleOf(const QString& name) const
{
    return sourceModel() ? sourceModel()->roleNames().key(name.toUtf8(), -1) : -1;
}

void registerObjectContentTypes()
{
    qmlRegisterType<DomainObjectDataAccessor>("Torvik.Database", 1, 0, "DomainObjectDataAccessor");
    qmlRegisterType<ObjectContentListModel>("Torvik.Database.Models", 1, 0, "ObjectContentListModel");
    qmlRegisterType<TemplateLoader>("Torvik.FileLoaders", 1, 0, "TemplateLoader");
    qmlRegisterType<SortFilterProxyModel>("Torvik.UiTools.Models", 1, 0, "SortFilterProxyModel");
}

} // namespace Torvik::Viewer
