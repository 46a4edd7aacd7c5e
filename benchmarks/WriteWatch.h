#pragma once

#include "domain/boundary/Notifications.h"
#include "host/domain/SqlConnection.h"

#include <QObject>

#include <memory>

namespace Torvik::Bench {

/** Counts what is written to an open project, from two sides: what the domain library tells of it, and the rows that
 *  the database's own triggers have put into its change log, as another connection sees them. */
class WriteWatch : public QObject {
public:
    explicit WriteWatch(const QString& projectFolder);

    /** Both count from now on. */
    void start();
    /** Notifications that were delivered. */
    int notifications() const { return m_notifications; }
    int loggedChanges() const { return static_cast<int>(lastChange() - m_lastChange); }

protected:
    void customEvent(QEvent* event) override;

private:
    qint64 lastChange() const;

    Database::CAsyncNotificationMapper m_mapper;
    std::unique_ptr<Database::SqlConnection> m_connection;
    int m_notifications = 0;
    qint64 m_lastChange = 0;
};

} // namespace Torvik::Bench
