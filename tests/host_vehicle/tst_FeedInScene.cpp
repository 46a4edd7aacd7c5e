#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "host/vehicle/MeasurementQueue.h"
#include "host/vehicle/VehicleFeed.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/SystemControlProxy.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QtTest>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;
using namespace Torvik::Vehicle;
using Kx::Test::TestProject;
using Torvik::AppState;
using Inspection = QSharedPointer<Torvik::Database::CPipeInspectionObject>;

/** What a vehicle's readings make of the active inspection's pipe, and of what is stored. */
class tst_FeedInScene : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aVehicleThatStandsMakesThePipeNoLonger();
    void aCounterOfCoarseStepsGivesAPointAStep();
    void anotherInspectionInMidMeasurementLosesNothing();
    void backInAnInspectionItsLineGoesOn();
    void aSectionThatComesAfterTheBeginIsMeasured();
    void aSwitchDoesNotWaitForALockedDatabase();

private:
    Inspection addPipe()
    {
        return m_project->addInspection(m_project->addSection("S", {}, {}),
                                        QStringLiteral("LINESTRING ZM(0 10 0 260,0 0 0 0)"));
    }
    static void activate(const Inspection& inspection) { AppState::instance().setActiveInspection(inspection); }
    static const Pipe& pipe() { return *SceneEntities::instance().getActiveSectionEntity()->pipe(); }
    void measure()
    {
        m_feed->setMeasuring(true);
        MeasurementPointsHandler::instance()->waitUntilStored();
    }
    /** Straight on; what the cable has counted is where the sensor is. */
    void driveTo(double metres) { m_feed->take({m_seconds++, metres, SensorPlace {0, metres, 0}}); }
    void drive(const QVector<double>& metres)
    {
        for (double place : metres)
            driveTo(place);
    }
    static void storeEverything() { MeasurementPointsHandler::instance()->waitUntilStored(); }
    /** The measured points, in metres along the pipe. */
    QVector<double> rows(const Inspection& inspection) const
    {
        return metresIn(m_project
                            ->stored("(SELECT * FROM SECMP JOIN SECMES ON MP_Measurement_FK = MES_PK ORDER BY "
                                     "MP_SortOrder)",
                                     "MES_Inspection_FK", inspection->id(), "group_concat(MP_Z_Value)")
                            .toString()
                            .split(',', Qt::SkipEmptyParts));
    }
    /** The same of the line that is stored with them. */
    QVector<double> line(const Inspection& inspection) const
    {
        const QString text =
            m_project->stored("SECMES", "MES_Inspection_FK", inspection->id(), "MES_TxtValues").toString();
        return metresIn(placesOf(text));
    }
    QVector<double> course(const Inspection& inspection) const
    {
        const QString text = m_project->stored("SECINSP", "INS_PK", inspection->id(), "INS_Shape_WKT").toString();
        QVector<double> metres;
        for (const QString& point : text.mid(text.indexOf('(') + 1).split(','))
            metres << std::abs(std::round(point.split(' ', Qt::SkipEmptyParts).value(1).toDouble() * 100) / 100);
        std::sort(metres.begin(), metres.end());
        return metres;
    }
    static QStringList placesOf(const QString& text)
    {
        QStringList places;
        for (const QString& point : text.mid(text.indexOf('(') + 1).split(',', Qt::SkipEmptyParts))
            places << point.split(' ', Qt::SkipEmptyParts).value(2);
        return places;
    }
    static QVector<double> metresIn(const QStringList& texts)
    {
        QVector<double> metres;
        for (const QString& text : texts)
            metres << std::round(text.toDouble() * 100) / 100;
        return metres;
    }
    int measurements(const Inspection& inspection) const
    {
        return m_project->stored("SECMES", "MES_Inspection_FK", inspection->id(), "COUNT(*)").toInt();
    }

    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<VehicleFeed> m_feed;
    double m_seconds = 0;
};

void tst_FeedInScene::init()
{
    m_project = std::make_unique<TestProject>(QStringLiteral("LOCAL_CS[\"site\"]"));
    m_root = std::make_unique<SceneRoot>();
    m_root->qmlOnCompleted();
    QString system = QStringLiteral("LOCAL_CS[\"site\"]");
    GdalGeoProjector::instance()->init(Torvik::Database::WktPoint(QStringLiteral("POINT ZM(0 0 0 0)")), system);
    m_feed = std::make_unique<VehicleFeed>();
}

void tst_FeedInScene::cleanup()
{
    m_feed.reset();
    AppState::instance().setActiveInspection({});
    AppState::instance().setActiveProject({});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_root.reset();
    m_project.reset();
    GlobalNav::instance()->setRealTimeEnabled(false);
    SystemControlProxy::instance().setSectionDistanceCounter(0.0F);
    GdalGeoProjector::instance()->deinit();
}

void tst_FeedInScene::aVehicleThatStandsMakesThePipeNoLonger()
{
    const Inspection inspection = addPipe();
    m_project->activate();
    activate(inspection);
    measure();
    // The sensor is a little ahead of the cable.
    for (int i = 1; i <= 10; ++i)
        m_feed->take({double(i), 10 + 0.5 * i, SensorPlace {0, 10 + 0.51 * i, 0}});
    const float length = pipe().length();
    const int segments = pipe().segmentCount();

    for (int i = 0; i < 200; ++i)
        m_feed->take({11 + 0.1 * i, 15.0, SensorPlace {0, 15.1 + 0.002 * (i % 3 - 1), 0}});

    QCOMPARE(pipe().length(), length);
    QCOMPARE(pipe().segmentCount(), segments);
    QVERIFY(std::abs(double(length) - 15.1) < 0.1);
}

void tst_FeedInScene::aCounterOfCoarseStepsGivesAPointAStep()
{
    const Inspection inspection = addPipe();
    m_project->activate();
    activate(inspection);
    measure();

    // Ten readings a step of 20 cm.
    for (int i = 0; i < 50; ++i)
        m_feed->take({0.1 * i, 10.2 + 0.2 * (i / 10), SensorPlace {0, 10.2 + 0.02 * i, 0}});
    storeEverything();

    QCOMPARE(rows(inspection).last(), 11.0);
    QVERIFY2(std::abs(double(pipe().length()) - 11.0) < 0.05, qPrintable(QString::number(double(pipe().length()))));
    QCOMPARE(pipe().segmentCount(), 6);
}

void tst_FeedInScene::anotherInspectionInMidMeasurementLosesNothing()
{
    const Inspection a = addPipe();
    const Inspection b = addPipe();
    m_project->activate();
    activate(a);
    measure();

    drive({10.5, 11, 11.5, 12, 12.5});
    activate(b);
    drive({13, 13.5, 14});
    QVERIFY(!m_feed->isMeasuring());
    m_feed->setMeasuring(true);
    drive({14.5, 15});
    storeEverything();

    const QVector<double> measuredInA {0, 10.5, 11, 11.5, 12, 12.5};
    QCOMPARE(rows(a).last(), 12.5);
    QCOMPARE(rows(a), line(a));
    // The course is written when it has rested.
    QTRY_COMPARE(course(a).last(), 12.5);
    for (double metre : measuredInA)
        QVERIFY2(course(a).contains(metre), qPrintable(QString::number(metre)));
    QVERIFY(rows(b).size() >= 2);
    QCOMPARE(rows(b), line(b));
    QCOMPARE(rows(b).last(), 15.0);
    QVERIFY(!rows(b).contains(12.5));
}

void tst_FeedInScene::backInAnInspectionItsLineGoesOn()
{
    const Inspection a = addPipe();
    const Inspection b = addPipe();
    m_project->activate();
    activate(a);
    measure();
    drive({10.5, 11, 11.5});
    storeEverything();
    const QVector<double> before = rows(a);
    activate(b);
    measure();
    drive({20, 21});

    activate(a);
    m_feed->setMeasuring(true);
    QVERIFY2(MeasurementQueue::isSettled(), "readings would be held back");
    drive({22, 22.5});
    storeEverything();

    QCOMPARE(measurements(a), 1);
    QCOMPARE(rows(a).mid(0, before.size()), before);
    QCOMPARE(rows(a).mid(before.size()), (QVector<double> {22, 22.5}));
    QCOMPARE(line(a), rows(a));
    QVERIFY(!rows(a).contains(21.0));
}

void tst_FeedInScene::aSectionThatComesAfterTheBeginIsMeasured()
{
    m_project->activate();
    const Inspection fresh = addPipe();
    activate(fresh);
    QVERIFY2(!SceneEntities::instance().getActiveSectionEntity(), "the scene hears of it with the event loop");
    measure();
    driveTo(10.0);
    QTRY_VERIFY(SceneEntities::instance().getActiveSectionEntity());

    drive({10.5, 11, 11.5});
    storeEverything();

    QCOMPARE(measurements(fresh), 1);
    QCOMPARE(rows(fresh).mid(rows(fresh).size() - 3), (QVector<double> {10.5, 11, 11.5}));
    QVERIFY(std::abs(double(pipe().length()) - 11.5) < 0.02);
}

void tst_FeedInScene::aSwitchDoesNotWaitForALockedDatabase()
{
    const Inspection a = addPipe();
    m_project->activate();
    activate(a);
    measure();
    drive({10.5, 11});
    storeEverything();
    const int before = rows(a).size();
    m_feed->setMeasuring(false);
    QElapsedTimer waited;
    {
        using namespace Torvik::Database;
        StoreStatus status;
        const auto other =
            SqlConnection::open(ProjectStore::databaseFile(m_project->path()), SqlConnection::ReadWrite, status);
        const SqlTransaction lock(*other);
        QVERIFY(lock.begun().ok());
        MeasurementPointsHandler::instance()->addRowToSECMP(a->id(), {0, 0, 12}, before, false);
        waited.start();
        m_feed->setMeasuring(true);
        QVERIFY2(waited.elapsed() < 2000, qPrintable(QString::number(waited.elapsed())));
    }
    drive({13});
    QTRY_VERIFY_WITH_TIMEOUT(MeasurementQueue::isSettled(), 15000);
    storeEverything();

    // What came meanwhile is kept, and stored behind it.
    QCOMPARE(rows(a).last(), 13.0);
    QVERIFY(rows(a).contains(12.0));
}

KX_SCENE_TEST_MAIN(tst_FeedInScene)
#include "tst_FeedInScene.moc"
