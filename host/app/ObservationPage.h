#pragma once

#include "domain/boundary/CPipeObjects.h"
#include "domain/boundary/Notifications.h"
#include "host/app/ObservationForm.h"

#include <QAbstractListModel>
#include <QTimer>

namespace Torvik::Viewer {

/** The observations of one inspection, along the pipe, for the page beside the scene; and their adding, changing and
 *  deleting in the project. Whoever else shows them, the scene too, hears of it by the project's notifications, and so
 *  does this list of what others change. QML has it as `viewer.observations`. Main thread only. */
class ObservationPage : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(bool hasInspection READ hasInspection NOTIFY inspectionChanged)
    Q_PROPERTY(QString pipeName READ pipeName NOTIFY inspectionChanged)
    Q_PROPERTY(QString distanceUnit READ distanceUnit NOTIFY inspectionChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { ObjectIdRole = Qt::UserRole + 1, CodeRole, PlaceRole, DetailRole };

    explicit ObservationPage(QObject* parent = nullptr);
    ~ObservationPage() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return m_lines.size(); }
    /** Null for none. */
    QSharedPointer<Database::CPipeInspectionObject> inspection() const;
    bool hasInspection() const { return !inspection().isNull(); }
    /** Of the pipe that was inspected. */
    QString pipeName() const;
    /** "m" or "ft". */
    QString distanceUnit() const;

    /** Its texts, after a change of language. */
    void writeAnew();
    /** Null or an object of another type: none. */
    void setInspection(const CDomainObjectPointer& inspection);

    /** The fields of an observation, as ObservationForm has them; of none for an empty or unknown id. */
    Q_INVOKABLE QVariantMap textsOf(const QString& id) const;
    /** What a connection may lead to, as a list of {id, name}; the first is none. */
    Q_INVOKABLE QVariantList laterals() const;
    /** Adds an observation, or changes the one with this id. Gives a line for each field that is wrong, and one under
     *  "form" when it could not be stored; then nothing has changed. */
    Q_INVOKABLE QVariantMap save(const QString& id, const QVariantMap& texts);
    /** Why it could not be deleted; empty when it was. */
    Q_INVOKABLE QString remove(const QString& id);

signals:
    void inspectionChanged();
    void countChanged();
    /** There are more or fewer of them in the project than before. */
    void numberChanged();

protected:
    void customEvent(QEvent* event) override;

private:
    struct Line {
        QString id;
        double distance = 0;
        QString code;
        QString place;
        QString detail;

        bool operator==(const Line& other) const;
    };

    CDomainObjectPointer observation(const QString& id) const;
    ObservationForm::Surroundings surroundingsOf(const QString& id) const;
    Line lineOf(const CDomainObjectPointer& observation) const;
    QString add(const QVariantMap& values);
    static QString change(const CDomainObjectPointer& observation, const QVariantMap& values);
    void reload();
    void onNotified();

    QWeakPointer<Database::CPipeInspectionObject> m_inspection;
    QVector<Line> m_lines;
    Database::CAsyncNotificationMapper m_notifications;
    QTimer m_reload;
    bool m_inspectionShown = false;
};

} // namespace Torvik::Viewer
