#pragma once

#include "domain/boundary/CQmlDomainObject.h"

#include <QAbstractListModel>
#include <QSortFilterProxyModel>
#include <QVector>

namespace Torvik::Viewer {

/** A field of a form: the column behind it, and what the user reads beside it. */
struct TemplateField {
    QString column;
    QString label;
};

/** Fields of the form for a kind of object, by CQmlDomainObject::queryTemplateId(); none for an unknown one. The
 * country has no field of its own in any form. */
QVector<TemplateField> templateFields(const QString& templateId);

/** Names a form to QML. */
class TemplateLoader : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString templateId READ templateId WRITE setTemplateId NOTIFY templateIdChanged)

public:
    using QObject::QObject;

    QString templateId() const { return m_templateId; }
    void setTemplateId(const QString& id);

signals:
    void templateIdChanged();

private:
    QString m_templateId;
};

/** Names the object whose values are read to QML. */
class DomainObjectDataAccessor : public QObject {
    Q_OBJECT
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject domainObject READ domainObject WRITE setDomainObject NOTIFY
                   domainObjectChanged)

public:
    using QObject::QObject;

    QmlWrapper::CQmlDomainObject domainObject() const { return m_object; }
    void setDomainObject(const QmlWrapper::CQmlDomainObject& object);

signals:
    void domainObjectChanged();

private:
    QmlWrapper::CQmlDomainObject m_object;
};

/** The fields of an object's form, a row each, with the values that the object has when they are asked for. */
class ObjectContentListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(Torvik::Viewer::DomainObjectDataAccessor* dataAccessor MEMBER m_accessor WRITE setDataAccessor NOTIFY
                   dataAccessorChanged)
    // "template" is a word of C++.
    Q_PROPERTY(
        Torvik::Viewer::TemplateLoader* template MEMBER m_loader WRITE setTemplateLoader NOTIFY templateLoaderChanged)

public:
    enum Role { BoundColumnRole = Qt::UserRole + 1, TextRole, ValueRole };

    using QAbstractListModel::QAbstractListModel;

    void setDataAccessor(DomainObjectDataAccessor* accessor);
    void setTemplateLoader(TemplateLoader* loader);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void dataAccessorChanged();
    void templateLoaderChanged();

private:
    void read();

    DomainObjectDataAccessor* m_accessor = nullptr;
    TemplateLoader* m_loader = nullptr;
    QVector<TemplateField> m_fields;
};

/** Rows of another model in which the text of one role is exactly the filter; all of them with an empty filter. */
class SortFilterProxyModel : public QSortFilterProxyModel {
    Q_OBJECT
    // Qt's own property is of a type that QML does not know.
    Q_PROPERTY(QObject* sourceModel READ source WRITE setSource NOTIFY filterChanged)
    Q_PROPERTY(QString filterRoleName MEMBER m_roleName WRITE setFilterRoleName NOTIFY filterChanged)
    Q_PROPERTY(QString filterString MEMBER m_filter WRITE setFilterString NOTIFY filterChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit SortFilterProxyModel(QObject* parent = nullptr);

    QObject* source() const { return sourceModel(); }
    void setSource(QObject* model);
    void setFilterRoleName(const QString& name);
    void setFilterString(const QString& text);
    int count() const { return rowCount(); }
    /** Invalid for a row or role that is not there. */
    Q_INVOKABLE QVariant value(int row, const QString& roleName) const;

signals:
    void filterChanged();
    void countChanged();

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    int roleOf(const QString& name) const;

    QString m_roleName;
    QString m_filter;
};

/** Objects that stand for something to QML. */
class DomainObjectProvider : public QObject {
    Q_OBJECT
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject invalidObject READ invalidObject CONSTANT)

public:
    using QObject::QObject;

    /** For "none". */
    QmlWrapper::CQmlDomainObject invalidObject() const { return {}; }
};

/** Makes them known to QML, each in the module that the view imports it from. */
void registerObjectContentTypes();

} // namespace Torvik::Viewer
