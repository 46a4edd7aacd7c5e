#include "host/app/ObjectListModel.h"

#include <algorithm>

namespace Torvik::Viewer {

namespace {

/** Takes the run of digits at `at`, without zeros in front. */
QString takeNumber(const QString& text, int& at)
{
    while (at < text.size() && text[at] == QLatin1Char('0'))
        ++at;
    const int start = at;
    while (at < text.size() && text[at].isDigit())
        ++at;
    return text.mid(start, at - start);
}

/** Letters by their lower case, numbers by their value, whatever the language of the machine. Negative when a comes
 * first. */
int compareKeys(const QString& a, const QString& b)
{
    int i = 0;
    int j = 0;
    while (i < a.size() && j < b.size()) {
        int order = 0;
        if (a[i].isDigit() && b[j].isDigit()) {
            const QString left = takeNumber(a, i);
            const QString right = takeNumber(b, j);
            order = left.size() != right.size() ? left.size() - right.size() : left.compare(right);
        } else {
            order = int(a[i++].toLower().unicode()) - int(b[j++].toLower().unicode());
        }
        if (order != 0)
            return order;
    }
    return (a.size() - i) - (b.size() - j);
}

} // namespace

int ObjectListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_shown.size();
}

QVariant ObjectListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_shown.size())
        return {};
    const ListedObject& object = m_objects[m_shown[index.row()]];
    switch (role) {
    case Qt::DisplayRole:
    case KeyRole:
        return object.key;
    case ObjectIdRole:
        return object.objectId;
    case DetailRole:
        return object.detail;
    case KindRole:
        return object.kind;
    default:
        return {};
    }
}

QHash<int, QByteArray> ObjectListModel::roleNames() const
{
    return {{ObjectIdRole, "objectId"}, {KeyRole, "key"}, {DetailRole, "detail"}, {KindRole, "kind"}};
}

void ObjectListModel::setFilter(const QString& filter)
{
    if (m_filter == filter)
        return;
    beginResetModel();
    m_filter = filter;
    choose();
    endResetModel();
    emit filterChanged();
    emit countChanged();
}

void ObjectListModel::setObjects(QVector<ListedObject> objects)
{
    std::stable_sort(objects.begin(), objects.end(),
                     [](const ListedObject& a, const ListedObject& b) { return compareKeys(a.key, b.key) < 0; });
    beginResetModel();
    m_objects = std::move(objects);
    choose();
    endResetModel();
    emit countChanged();
}

QString ObjectListModel::idOfKey(const QString& key) const
{
    QString nearly;
    for (const ListedObject& object : m_objects) {
        if (object.key == key)
            return object.objectId;
        if (nearly.isEmpty() && object.key.compare(key, Qt::CaseInsensitive) == 0)
            nearly = object.objectId;
    }
    return nearly;
}

int ObjectListModel::rowOf(const QString& objectId) const
{
    const auto row =
        std::find_if(m_shown.begin(), m_shown.end(), [&](int index) { return m_objects[index].objectId == objectId; });
    return row == m_shown.end() ? -1 : int(row - m_shown.begin());
}

void ObjectListModel::choose()
{
    m_shown.clear();
    const QString wanted = m_filter.trimmed();
    for (int i = 0; i < m_objects.size(); ++i) {
        if (wanted.isEmpty() || m_objects[i].key.contains(wanted, Qt::CaseInsensitive) ||
            m_objects[i].detail.contains(wanted, Qt::CaseInsensitive))
            m_shown << i;
    }
}

} // namespace Torvik::Viewer
