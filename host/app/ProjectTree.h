#pragma once

#include "domain/boundary/CProjectObject.h"

#include <QAbstractListModel>
#include <QVector>

namespace Torvik::Viewer {

/** The open project as a tree: its nodes, sections and laterals, below pipes their inspections, below these their
 *  observations. A list of the lines that are unfolded, so that a view shows only what is on the screen; what is folded
 *  costs nothing. Main thread only. */
class ProjectTree : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    enum Role { ObjectIdRole = Qt::UserRole + 1, TextRole, DepthRole, FoldableRole, UnfoldedRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /** Null for none. All but the project is folded. */
    void setProject(const QSharedPointer<Database::CProjectObject>& project);
    /** Takes over what has changed; what was unfolded stays so. */
    void refresh();
    /** Folds or unfolds a line; nothing for one without lines below it. */
    Q_INVOKABLE void toggle(int row);

signals:
    void countChanged();

private:
    struct Line {
        /** Of the object; of a group its name. */
        QString id;
        QString text;
        int depth = 0;
        bool foldable = false;
        bool unfolded = false;
    };

    QVector<Line> below(const Line& line) const;
    /** The lines below, and those below the ones that are in `unfolded`. */
    void append(QVector<Line>& lines, Line line, const QStringList& unfolded) const;

    QWeakPointer<Database::CProjectObject> m_project;
    QVector<Line> m_lines;
};

} // namespace Torvik::Viewer
