#include "host/app/ReplayRun.h"

#include "domain/boundary/AppState.h"
#include "geo/GdalGeoProjector.h"
#include "host/app/StoringTime.h"
#include "host/domain/ProjectStore.h"
#include "host/vehicle/Course.h"
#include "host/vehicle/MeasurementQueue.h"
#include "measurement/SystemControlProxy.h"

#include <QTimer>

namespace Torvik::Viewer {

namespace {

constexpr int pollMs = 20;

/** Lines of one column, with the id put in for %1. */
QVariant stored(const Database::SqlConnection& connection, const char* statement, const QString& id,
                Database::StoreStatus& status)
{
    // An id of the project's own making may hold a quote.
    return connection.value(QString::fromLatin1(statement).arg(QString(id).replace('\'', QLatin1String("''"))), status);
}

} // namespace

ReplayRun::ReplayRun(QObject* parent)
    : QObject(parent)
{
    connect(&m_replay, &Vehicle::Replay::reading, &m_feed, &Vehicle::VehicleFeed::take);
    connect(&m_replay, &Vehicle::Replay::finished, this, &ReplayRun::onPlayed);
}

void ReplayRun::start(const QSharedPointer<Database::CPipeInspectionObject>& inspection, const Wishes& wishes)
{
    m_inspection = inspection;
    AppState::instance().setActiveInspection(inspection);
    m_feed.setMeasuring(wishes.realTime);
    m_replay.load(wishes.readings);
    m_replay.setSpeed(wishes.speed);
    // As fast as possible is faster than the database is asked what it holds of the inspection.
    whenSettled(&ReplayRun::play);
}

void ReplayRun::stop()
{
    m_stopped = true;
    m_replay.pause();
    m_feed.setMeasuring(false);
}

void ReplayRun::whenSettled(void (ReplayRun::*next)())
{
    if (m_stopped)
        return;
    if (Vehicle::MeasurementQueue::isSettled())
        (this->*next)();
    else
        QTimer::singleShot(pollMs, this, [this, next] { whenSettled(next); });
}

void ReplayRun::play()
{
    m_replay.play();
}

QString ReplayRun::pipeId() const
{
    const auto pipe = m_inspection ? m_inspection->parentObject().toStrongRef() : nullptr;
    return pipe ? pipe->id() : QString();
}

void ReplayRun::onPlayed()
{
    m_feed.setMeasuring(false);
    // The shape is written on this thread and would have to fight with what is still to be stored.
    whenSettled(&ReplayRun::waitForCourse);
}

void ReplayRun::waitForCourse()
{
    QTimer::singleShot(untilEverythingIsStoredMs, this, [this] { whenSettled(&ReplayRun::lookAtStore); });
}

void ReplayRun::lookAtStore()
{
    m_outcome.counter = double(View3d::SystemControlProxy::instance().sectionDistanceCounter());

    const auto project = Database::CDomainObject::projectFromObject(m_inspection);
    Database::StoreStatus status;
    const auto connection =
        project ? Database::SqlConnection::open(Database::ProjectStore::databaseFile(project->projectPath()),
                                                Database::SqlConnection::ReadOnly, status)
                : nullptr;
    if (connection) {
        m_outcome.points = stored(*connection,
                                  "SELECT COUNT(*) FROM SECMP WHERE MP_Measurement_FK = (SELECT MES_PK FROM SECMES "
                                  "WHERE MES_Inspection_FK = '%1' ORDER BY rowid DESC LIMIT 1)",
                                  m_inspection->id(), status)
                               .toLongLong();
    }
    if (connection && status) {
        const QString shape =
            stored(*connection, "SELECT INS_Shape_WKT FROM SECINSP WHERE INS_PK = '%1'", m_inspection->id(), status)
                .toString();
        m_outcome.length =
            Vehicle::lengthOf(Vehicle::courseOfShape(shape, View3d::GdalGeoProjector::instance()->scale()));
    }
    m_outcome.error = project ? status.error : QStringLiteral("the inspection is gone");
    emit finished();
}

} // namespace Torvik::Viewer
