#pragma once

#include "domain/boundary/Async.h"
#include "measurement/MeasuredLine.h"
#include "measurement/TextPool.h"
#include "scene/KxView3dExport.h"

#include <QMap>
#include <QMutex>
#include <QObject>
#include <QPair>
#include <QRunnable>
#include <QSemaphore>
#include <QStringList>
#include <QVector3D>
#include <QVector>

#include <map>
#include <memory>

namespace Torvik::View3d {

/** Writes 3D measurements: one row of SECMES for the measurement of an inspection, one row of SECMP for each of its
 *  points, and the line of all points as text in SECMES.
 *
 *  Nobody waits for the database: statements are run in their order on a thread of their own. While it is being found
 *  out what the database holds of an inspection, commands are held back; they run afterwards in their order. A command
 *  for an inspection whose measurement isn't known is dropped. The points of one measurement are in memory: of the
 *  one that was read last. Points are as the sensor's pipe gives them, in metres; indexes count from 0.
 *
 *  Everything that was handed over is stored before the project is unloaded and before the
 *  application object goes; a program that ends by exit() leaves out what is held back. Lives to
 *  the end of the process, and knows its inspections as long. Main thread only. */
class KXVIEW3D_EXPORT MeasurementPointsHandler : public QObject {
    Q_OBJECT

public:
    static MeasurementPointsHandler* instance();

    /** Opens the measurement of an inspection as a new one, unless it is known already. */
    void createNewSecMes(const QString& inspectionId);
    /** Loads what the database holds of the inspection; opens a measurement if there is none. */
    void readSecMp(const QString& inspectionId);
    /** The same, for the host: before it measures an inspection again after another one, whose points are the ones at
     *  hand until then. */
    void switchToInspection(const QString& inspectionId);
    /** @param shift  whether the points from there on move up by one */
    void addRowToSECMP(const QString& inspectionId, QVector3D point, int index, bool shift);
    /** Removes the points from `first` up to, but not including, `last`.
     *  @param shift  whether the points behind close the gap */
    void removeRowsFromSECMP(const QString& inspectionId, int first, int last, bool shift);

    /** Returns when everything that was handed over is in the database, commands held back included. */
    void waitUntilStored();
    /** Statements that are still to be run, the one under way included. A vehicle that reports faster than the disk
     *  writes shows here. */
    int waitingStatements() const { return m_started - m_done.available(); }

private slots:
    void onInitSECMESReady(const Torvik::Database::SqlResult& result);
    void onSECMPReady(const Torvik::Database::SqlResult& result);
    void onSecMesCreated(const Torvik::Database::SqlResult& result);

private:
    using Answer = void (MeasurementPointsHandler::*)(const Torvik::Database::SqlResult&);

    MeasurementPointsHandler();
    ~MeasurementPointsHandler() override;

    /** A line that still waits is replaced: on a slow disk each of them would keep a text of all points. */
    void storeLine(const QString& key);
    void holdBack(const QString& command, const QVector<QString>& arguments);
    void runHeldBack();
    void replay(const QString& command, const QVector<QString>& arguments);
    /** `answer` gets the statement's result. */
    void run(QString statement, Answer answer = nullptr);

    QStringList m_knownInspections;
    QMap<QString, QString> m_measurementKeys;
    QString m_currentInspection;
    bool m_initialising = false;
    /** Lookups whose answer hasn't come; only that of the latest counts. */
    int m_lookups = 0;
    QList<QPair<QString, QVector<QString>>> m_heldBack;
    /** Of whichever measurement was read last. */
    MeasuredLine m_points;
    /** Statements handed to the queue since the last wait, and those of them that are done. */
    int m_started = 0;
    QSemaphore m_done;
    QMutex m_linesMutex;
    TextPool m_lineTexts;
    std::map<QString, std::unique_ptr<QRunnable>> m_waitingLines; ///< by key; the worker takes them
    /** Last: it runs what it has before it goes. */
    Shared::Async m_async;
};

} // namespace Torvik::View3d
