#include "host/app/RecentProjects.h"

#include "domain/boundary/BaseServices.h"
#include "host/domain/ProjectStore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace Torvik::Viewer {

namespace {

const QString settingsKey = QStringLiteral("RecentProjects");

QStringList keptFolders()
{
    const QString text = Base::CApplicationSettings::instance().getCustomSetting(settingsKey, {});
    QStringList folders;
    for (const QJsonValue& folder : QJsonDocument::fromJson(text.toUtf8()).array()) {
        if (folder.isString() && folders.size() < RecentProjects::mostKept)
            folders << folder.toString();
    }
    return folders;
}

bool isThere(const QString& folder)
{
    return QFileInfo::exists(Database::ProjectStore::databaseFile(folder));
}

} // namespace

RecentProjects::RecentProjects(QObject* parent)
    : QAbstractListModel(parent)
    , m_folders(keptFolders())
{
}

int RecentProjects::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_folders.size();
}

QVariant RecentProjects::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_folders.size())
        return {};
    const QString& folder = m_folders[index.row()];
    switch (role) {
    case FolderRole:
        return folder;
    case Qt::DisplayRole:
    case NameRole:
        return QDir(folder).dirName();
    case MissingRole:
        return !isThere(folder);
    default:
        return {};
    }
}

QHash<int, QByteArray> RecentProjects::roleNames() const
{
    return {{FolderRole, "folder"}, {NameRole, "name"}, {MissingRole, "missing"}};
}

void RecentProjects::add(const QString& folder)
{
    const QString path = QDir::cleanPath(QDir(folder).absolutePath());
    // Another window may have added some meanwhile.
    QStringList folders = keptFolders();
    folders.removeAll(path);
    folders.prepend(path);
    keep(folders.mid(0, mostKept));
}

void RecentProjects::remove(const QString& folder)
{
    QStringList folders = keptFolders();
    folders.removeAll(folder);
    keep(folders);
}

void RecentProjects::refresh()
{
    const QStringList folders = keptFolders();
    if (folders == m_folders) {
        if (!folders.isEmpty())
            emit dataChanged(index(0), index(folders.size() - 1), {MissingRole});
        return;
    }
    beginResetModel();
    m_folders = folders;
    endResetModel();
    emit countChanged();
}

void RecentProjects::keep(const QStringList& folders)
{
    const QByteArray text = QJsonDocument(QJsonArray::fromStringList(folders)).toJson(QJsonDocument::Compact);
    Base::CApplicationSettings::instance().setCustomSetting(settingsKey, QString::fromUtf8(text));
    refresh();
}

} // namespace Torvik::Viewer
