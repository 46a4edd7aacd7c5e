#pragma once

#include "domain/boundary/CProjectObject.h"

#include <QAbstractListModel>
#include <QVector>

namespace Torvik::Viewer {

/** What the project knows of one object: the fields of its form with their values, and for a pipe or an inspection its
 *  nodes, inspections and observations too. A row each. Main thread only. */
class ObjectDetails : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)

public:
    enum Role { LabelRole = Qt::UserRole + 1, ValueRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /** Name of the object; empty without one. */
    QString title() const { return m_title; }
    /** Null or an object without a form: none. */
    void setObject(const Database::CDomainObjectPointer& object);
    /** Reads the values anew. */
    Q_INVOKABLE void refresh();

signals:
    void titleChanged();

private:
    struct Row {
        QString label;
        QString value;
    };

    void addFields(const Database::CDomainObjectPointer& object);
    void addPipe(const Database::CDomainObjectPointer& pipe);
    void addInspection(const Database::CDomainObjectPointer& inspection);

    QWeakPointer<Database::CDomainObject> m_object;
    QVector<Row> m_rows;
    QString m_title;
};

} // namespace Torvik::Viewer
