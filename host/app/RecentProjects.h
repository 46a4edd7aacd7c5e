#pragma once

#include <QAbstractListModel>
#include <QStringList>

namespace Torvik::Viewer {

/** The folders of the projects that were opened last, the latest first, kept in the settings. A folder that is gone
 *  stays until the user removes it: it may be on a disk that is not there today. Main thread only. */
class RecentProjects : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { FolderRole = Qt::UserRole + 1, NameRole, MissingRole };
    static constexpr int mostKept = 10;

    explicit RecentProjects(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;
    int count() const { return m_folders.size(); }

    /** It was opened just now. */
    void add(const QString& folder);
    Q_INVOKABLE void remove(const QString& folder);
    /** Looks again which folders are there. */
    Q_INVOKABLE void refresh();

signals:
    void countChanged();

private:
    void keep(const QStringList& folders);

    QStringList m_folders;
};

} // namespace Torvik::Viewer
