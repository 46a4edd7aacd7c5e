#include "measurement/MeasurementPointsHandler.h"

#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/GUID.h"
#include "domain/boundary/SqlTask.h"
#include "measurement/MeasurementStatements.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlRecord>

#include <functional>
#include <memory>
#include <utility>

namespace Torvik::View3d {

namespace {

const QString category = QStringLiteral("MeasurementPointsHandler");
const QString commandCreate = QStringLiteral("updateSECMES");
const QString commandAdd = QStringLiteral("addRowToSECMP");
const QString commandRemove = QStringLiteral("removeRowsFromSECMP");

/** A task of the queue, with something done right before it and right after. */
class Step : public QRunnable {
public:
    Step(QRunnable* task, std::function<void()> before, QSemaphore& done)
        : m_task(task)
        , m_before(std::move(before))
        , m_done(done)
    {
    }

    void run() override
    {
        if (m_before)
            m_before();
        m_task->run();
        m_done.release();
    }

private:
    std::unique_ptr<QRunnable> m_task;
    std::function<void()> m_before;
    QSemaphore& m_done;
};

/** Stores a line as it is when its turn comes. */
class LineStep : public QRunnable {
public:
    LineStep(std::unique_ptr<QRunnable>& newest, QMutex& mutex, QSemaphore& done)
        : m_newest(newest)
        , m_mutex(mutex)
        , m_done(done)
    {
    }

    void run() override
    {
        QMutexLocker lock(&m_mutex);
        std::unique_ptr<QRunnable> task = std::move(m_newest);
        lock.unlock();
        task->run();
        // Its text's room may serve again from here on.
        lock.relock();
        task.reset();
        lock.unlock();
        m_done.release();
    }

private:
    std::unique_ptr<QRunnable>& m_newest;
    QMutex& m_mutex;
    QSemaphore& m_done;
};

void waitAtTheEnd()
{
    MeasurementPointsHandler::instance()->waitUntilStored();
}

QString flagText(bool flag)
{
    return flag ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

MeasurementPointsHandler* MeasurementPointsHandler::instance()
{
    static MeasurementPointsHandler handler;
    return &handler;
}

MeasurementPointsHandler::MeasurementPointsHandler()
    : m_async(Shared::Async::Sequential)
{
    // Qt's own table of connections must be older than this, and so outlive it: the queue may open one at its end.
    QSqlDatabase::connectionNames();
    connect(Database::CDatabaseLibrary::dbAccessManager(), &Database::CProjectDBAccessManager::projectUnloading, this,
            &MeasurementPointsHandler::waitUntilStored);
    // A host may end the process right behind its event loop, or have none.
    if (const QCoreApplication* application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &MeasurementPointsHandler::waitUntilStored);
    qAddPostRoutine(waitAtTheEnd);
}

MeasurementPointsHandler::~MeasurementPointsHandler()
{
    qRemovePostRoutine(waitAtTheEnd);
}

void MeasurementPointsHandler::run(QString statement, Answer answer)
{
    auto* const task = Database::SqlUserTask::createAsyncTask(statement);
    task->setAsync(&m_async);
    std::function<void()> before;
    if (answer) {
        // Async::run() would listen from now on, and take the result of what runs before this for its own. So the
        // listening begins on the queue's thread, when everything before has been told.
        before = [this, answer] {
            const auto delivery = std::make_shared<QMetaObject::Connection>();
            const auto guard = std::make_shared<QMetaObject::Connection>();
            *delivery = connect(&m_async, &Shared::Async::taskDone, this, answer, Qt::QueuedConnection);
            *guard = connect(
                &m_async, &Shared::Async::taskDone, &m_async,
                [delivery, guard] {
                    disconnect(*delivery);
                    disconnect(*guard);
                },
                Qt::DirectConnection);
        };
    }
    ++m_started;
    m_async.startTask(new Step(task, std::move(before), m_done));
}

void MeasurementPointsHandler::storeLine(const QString& key)
{
    QMutexLocker lock(&m_linesMutex);
    std::unique_ptr<QRunnable>& waiting = m_waitingLines[key];
    const bool queued = waiting != nullptr;
    waiting.reset();
    QString& statement = m_lineTexts.room();
    MeasurementStatements::appendStoreLine(statement, m_points.text(), key);
    auto* const task = Database::SqlUserTask::createAsyncTask(statement);
    task->setAsync(&m_async);
    waiting.reset(task);
    lock.unlock();
    if (queued)
        return;
    ++m_started;
    m_async.startTask(new LineStep(waiting, m_linesMutex, m_done));
}

void MeasurementPointsHandler::waitUntilStored()
{
    while (m_started > 0) {
        m_done.acquire(std::exchange(m_started, 0));
        // Answers may have statements run in turn.
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
}

void MeasurementPointsHandler::holdBack(const QString& command, const QVector<QString>& arguments)
{
    Logging::CLogger::logMessage(Logging::LogError, category, QStringLiteral("Table SECMES is during initialization"));
    m_heldBack.append({command, arguments});
}

void MeasurementPointsHandler::runHeldBack()
{
    if (m_heldBack.isEmpty())
        return;
    Logging::CLogger::logMessage(Logging::LogInformation, category,
                                 QStringLiteral("Some commands were queued during SECMES initialization"));
    const auto commands = std::exchange(m_heldBack, {});
    for (const auto& [command, arguments] : commands)
        replay(command, arguments);
}

void MeasurementPointsHandler::replay(const QString& command, const QVector<QString>& arguments)
{
    if (command == commandCreate) {
        createNewSecMes(arguments[0]);
    } else if (command == commandAdd) {
        const QVector3D point(arguments[1].toFloat(), arguments[2].toFloat(), arguments[3].toFloat());
        addRowToSECMP(arguments[0], point, arguments[4].toInt(), arguments[5].toInt() != 0);
    } else if (command == commandRemove) {
        removeRowsFromSECMP(arguments[0], arguments[1].toInt(), arguments[2].toInt(), arguments[3].toInt() != 0);
    }
}

void MeasurementPointsHandler::readSecMp(const QString& inspectionId)
{
    m_currentInspection = inspectionId;
    m_initialising = true;
    ++m_lookups;
    run(MeasurementStatements::findMeasurement(inspectionId), &MeasurementPointsHandler::onInitSECMESReady);
}

void MeasurementPointsHandler::switchToInspection(const QString& inspectionId)
{
    readSecMp(inspectionId);
}

void MeasurementPointsHandler::onInitSECMESReady(const Database::SqlResult& result)
{
    if (--m_lookups > 0)
        return;
    m_initialising = false;
    if (result.data().size() != 1) {
        const bool known = m_knownInspections.contains(m_currentInspection);
        createNewSecMes(m_currentInspection);
        // Nothing is created for a known one, so nothing will be read that would end the holding back.
        if (known)
            runHeldBack();
        return;
    }
    const QSqlRecord& row = result.data().first();
    if (row.fieldName(0) != QLatin1String("MES_PK")) {
        runHeldBack();
        return;
    }
    m_initialising = true;
    const QString key = row.value(0).toString();
    m_knownInspections.append(m_currentInspection);
    m_measurementKeys.insert(m_currentInspection, key);
    run(MeasurementStatements::readPoints(key), &MeasurementPointsHandler::onSECMPReady);
}

void MeasurementPointsHandler::onSECMPReady(const Database::SqlResult& result)
{
    if (m_lookups > 0)
        return;
    m_initialising = false;
    m_points.clear();
    m_points.reserve(result.data().size());
    for (const QSqlRecord& row : result.data())
        m_points.insert(m_points.count(), {row.value(0).toFloat(), row.value(1).toFloat(), row.value(2).toFloat()});
    runHeldBack();
}

void MeasurementPointsHandler::createNewSecMes(const QString& inspectionId)
{
    if (m_initialising) {
        holdBack(commandCreate, {inspectionId});
        return;
    }
    if (m_knownInspections.contains(inspectionId))
        return;
    const QString key = Database::CGuidHelper::createGuid();
    m_currentInspection = inspectionId;
    m_knownInspections.append(inspectionId);
    m_measurementKeys.insert(inspectionId, key);
    run(MeasurementStatements::createMeasurement(key, inspectionId, QDateTime::currentDateTime()),
        &MeasurementPointsHandler::onSecMesCreated);
}

void MeasurementPointsHandler::onSecMesCreated(const Database::SqlResult& /*result*/)
{
    readSecMp(m_currentInspection);
}

void MeasurementPointsHandler::addRowToSECMP(const QString& inspectionId, QVector3D point, int index, bool shift)
{
    if (m_initialising) {
        holdBack(commandAdd, {inspectionId, ordinateText(point.x()), ordinateText(point.y()), ordinateText(point.z()),
                              QString::number(index), flagText(shift)});
        return;
    }
    const QString key = m_measurementKeys.value(inspectionId);
    if (key.isEmpty())
        return;
    m_points.insert(index, point);
    const int sortOrder = index + 1;
    if (shift)
        run(MeasurementStatements::makeRoom(sortOrder, key));
    run(MeasurementStatements::addPoint(Database::CGuidHelper::createGuid(), key, point, sortOrder,
                                        QDateTime::currentDateTime()));
    storeLine(key);
}

void MeasurementPointsHandler::removeRowsFromSECMP(const QString& inspectionId, int first, int last, bool shift)
{
    if (m_initialising) {
        holdBack(commandRemove, {inspectionId, QString::number(first), QString::number(last), flagText(shift)});
        return;
    }
    const QString key = m_measurementKeys.value(inspectionId);
    if (key.isEmpty())
        return;
    if (!m_points.mayRemove(last)) {
        Logging::CLogger::logMessage(
            Logging::LogError, category,
            QStringLiteral("Wrong index in remove rows from SECMP command. Index=%1, array size=%2")
                .arg(last - 1)
                .arg(m_points.count()));
        return;
    }
    m_points.remove(first, last);
    run(MeasurementStatements::deletePoints(first, last, key));
    if (shift)
        run(MeasurementStatements::closeGap(last - first, last, key));
}

} // namespace Torvik::View3d
