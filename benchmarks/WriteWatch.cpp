#include "benchmarks/WriteWatch.h"

#include "domain/boundary/CDatabaseLibrary.h"
#include "host/domain/ProjectStore.h"

#include <QCoreApplication>

namespace Torvik::Bench {

using namespace Torvik::Database;

WriteWatch::WriteWatch(const QString& projectFolder)
    : m_mapper(CDatabaseLibrary::notificationManager())
{
    StoreStatus status;
    m_connection = SqlConnection::open(ProjectStore::databaseFile(projectFolder), SqlConnection::ReadOnly, status);
    if (!m_connection)
        qFatal("%s", qPrintable(status.error));
    m_mapper.addGlobalNotificationReceiver(*this);
    start();
}

void WriteWatch::start()
{
    QCoreApplication::sendPostedEvents(this);
    m_notifications = 0;
    m_lastChange = lastChange();
}

qint64 WriteWatch::lastChange() const
{
    StoreStatus status;
    const QVariant last = m_connection->value(QStringLiteral("SELECT max(CHG_PK) FROM CHANGELOG"), status);
    if (!status)
        qFatal("%s", qPrintable(status.error));
    return last.toLongLong();
}

void WriteWatch::customEvent(QEvent* event)
{
    if (event->type() == CDomainNotificationEvent::eventType)
        ++m_notifications;
}

} // namespace Torvik::Bench
