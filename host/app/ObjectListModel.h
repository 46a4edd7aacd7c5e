#pragma once

#include <QAbstractListModel>
#include <QVector>

namespace Torvik::Viewer {

/** One line of a list beside the scene. */
struct ListedObject {
    QString objectId;
    /** The name that the user knows. */
    QString key;
    QString detail;
    /** "node", "section", "lateral" or "inspection". */
    QString kind;
};

/** A list of objects, of which those are shown whose key or detail contains the filter, whatever its case. Numbers
 * inside keys sort by their value. */
class ObjectListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int total READ total NOTIFY countChanged)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)

public:
    enum Role { ObjectIdRole = Qt::UserRole + 1, KeyRole, DetailRole, KindRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /** Lines shown. */
    int count() const { return m_shown.size(); }
    /** Lines held, shown or not. */
    int total() const { return m_objects.size(); }

    QString filter() const { return m_filter; }
    void setFilter(const QString& filter);

    /** Replaces the list; keeps the filter. */
    void setObjects(QVector<ListedObject> objects);
    /** Id of the first line with this key, shown or not; empty if there is none. The same letters in another case count
     *  when no key is exactly this one. */
    QString idOfKey(const QString& key) const;
    /** Row of the line shown for an object; -1 if there is none. */
    Q_INVOKABLE int rowOf(const QString& objectId) const;

signals:
    void countChanged();
    void filterChanged();

private:
    void choose();

    QVector<ListedObject> m_objects;
    QVector<int> m_shown;
    QString m_filter;
};

} // namespace Torvik::Viewer
