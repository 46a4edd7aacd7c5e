#pragma once

#include "host/app/ObservationPage.h"

#include <QAbstractListModel>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVector3D>

namespace Kx::Test {

/** A list with lines of a given kind: "N1", "N2", ... */
class FakeObjects : public QAbstractListModel {
    Q_OBJECT

public:
    FakeObjects(const QString& prefix, int count, QObject* parent)
        : QAbstractListModel(parent)
        , m_prefix(prefix)
        , m_count(count)
    {
    }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : m_count; }
    QHash<int, QByteArray> roleNames() const override
    {
        return {{Qt::UserRole, "objectId"},
                {Qt::UserRole + 1, "key"},
                {Qt::UserRole + 2, "detail"},
                {Qt::UserRole + 3, "kind"}};
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        const QString name = m_prefix + QString::number(index.row() + 1);
        switch (role) {
        case Qt::UserRole:
            return QString("id-" + name);
        case Qt::UserRole + 1:
            return name;
        case Qt::UserRole + 2:
            return QStringLiteral("Manhole, 2.40 m");
        default:
            return QStringLiteral("node");
        }
    }

    Q_INVOKABLE int rowOf(const QString& objectId) const
    {
        const QString before = "id-" + m_prefix;
        const int row = objectId.startsWith(before) ? objectId.mid(before.size()).toInt() - 1 : -1;
        return row < m_count ? row : -1;
    }

private:
    QString m_prefix;
    int m_count;
};

/** Stands where the application's controller stands for the pages, and writes down what they ask of it. */
class FakeViewer : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString projectName MEMBER projectName NOTIFY changed)
    Q_PROPERTY(bool projectOpen MEMBER projectOpen NOTIFY changed)
    Q_PROPERTY(bool busy MEMBER busy NOTIFY changed)
    Q_PROPERTY(double progress MEMBER progress NOTIFY changed)
    Q_PROPERTY(QString progressText MEMBER progressText NOTIFY changed)
    Q_PROPERTY(QString errorText MEMBER errorText NOTIFY changed)
    Q_PROPERTY(QString currentId MEMBER currentId NOTIFY changed)
    Q_PROPERTY(QStringList currentIds MEMBER currentIds NOTIFY currentIdsChanged)
    Q_PROPERTY(bool sceneOnly MEMBER sceneOnly NOTIFY changed)
    Q_PROPERTY(QObject* nodesModel MEMBER nodes CONSTANT)
    Q_PROPERTY(QObject* sectionsModel MEMBER sections CONSTANT)
    Q_PROPERTY(QObject* inspectionsModel MEMBER inspections CONSTANT)
    Q_PROPERTY(QObject* observations MEMBER observations CONSTANT)
    Q_PROPERTY(QObject* view MEMBER view NOTIFY changed)

public:
    Q_INVOKABLE void goTo(const QString& id) { calls << "goTo " + id; }
    Q_INVOKABLE void fit() { calls << "fit"; }
    Q_INVOKABLE void openProject(const QUrl& folder) { calls << "openProject " + folder.toString(); }
    Q_INVOKABLE void closeProject() { calls << "closeProject"; }
    Q_INVOKABLE void dismissError() { calls << "dismissError"; }
    Q_INVOKABLE void setFilter(const QString& filter) { calls << "setFilter " + filter; }

    QString projectName = QStringLiteral("Quarter by the mill");
    bool projectOpen = true;
    bool busy = false;
    double progress = 0.0;
    QString progressText;
    QString errorText;
    QString currentId;
    QStringList currentIds;
    bool sceneOnly = false;
    QObject* nodes = new FakeObjects(QStringLiteral("N"), 60, this);
    QObject* sections = new FakeObjects(QStringLiteral("P"), 40, this);
    QObject* inspections = new FakeObjects(QStringLiteral("I"), 0, this);
    /** Of no inspection. */
    QObject* observations = new Torvik::Viewer::ObservationPage(this);
    QObject* view = nullptr;
    QStringList calls;

signals:
    void changed();
    void currentIdsChanged();
    void requestPose(const QVector3D& position, const QVector3D& center, const QVector3D& up, int viewType,
                     bool animated);
    void requestView(int viewType);
};

} // namespace Kx::Test
