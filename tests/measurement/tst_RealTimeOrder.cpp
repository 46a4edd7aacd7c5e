#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "measurement/InspectionCommands.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/RealTimeController.h"
#include "measurement/SystemControlProxy.h"
#include "network/Crawler.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/Debounce.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;
using Kx::Test::TestProject;
using Torvik::AppState;
using Inspection = QSharedPointer<Torvik::Database::CPipeInspectionObject>;

namespace {

SystemControlProxy& vehicle()
{
    return SystemControlProxy::instance();
}

/** The signal's parameters as QML and connections by name see them. */
QList<QByteArray> namesIn(const QMetaObject& type, const char* signal)
{
    for (int i = 0; i < type.methodCount(); ++i)
        if (type.method(i).name() == signal)
            return type.method(i).parameterNames();
    return {};
}

} // namespace

/** What comes first when a counter, a switch, another inspection or the end of the project comes. */
class tst_RealTimeOrder : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void aMovedAndTurnedPipeCountsFromItsOwnPlace();
    void theCounterBeforeTheSceneIsKeptForAMeasurement();
    void everyOtherCounterIsTold();
    void theCounterIsToldWhenTheCrawlerIsThere();
    void aSectionIsMarkedBeforeItTakesPoints();
    void anotherInspectionIsTakenOverAfterTheMeasurementHasEnded();
    void aMeasurementIsOpenedBeforeItsSectionIsThere();
    void withoutRealTimeAReadingStoresNothing();
    void closingTheProjectEndsTheMeasurement();
    void theStartsParametersHaveTheirNames();

private:
    /** Ten metres to the north, from (0, 0, 0) in the scene. */
    Inspection addPipe()
    {
        return m_project->addInspection(m_project->addSection("S", {}, {}),
                                        QStringLiteral("LINESTRING ZM(0 10 0 260,0 0 0 0)"));
    }
    Section* activate(const Inspection& inspection)
    {
        m_project->activate();
        AppState::instance().setActiveInspection(inspection);
        return SceneEntities::instance().getActiveSectionEntity();
    }
    void buildScene()
    {
        m_root = std::make_unique<SceneRoot>();
        m_root->qmlOnCompleted();
        QString system = QStringLiteral("LOCAL_CS[\"site\"]");
        GdalGeoProjector::instance()->init(Torvik::Database::WktPoint(QStringLiteral("POINT ZM(0 0 0 0)")), system);
    }
    Crawler* addCrawler()
    {
        auto* const crawler = new Crawler(m_root.get());
        crawler->setActive(true);
        m_root->setCrawler(crawler);
        return crawler;
    }
    int measurements(const QString& inspection) const
    {
        return m_project->stored("SECMES", "MES_Inspection_FK", inspection, "COUNT(*)").toInt();
    }
    int pointsInAll() const { return m_project->stored("SECMP", "'1'", "1", "COUNT(*)").toInt(); }
    QString course(const QString& inspection) const
    {
        return m_project->stored("SECINSP", "INS_PK", inspection, "INS_Shape_WKT").toString();
    }
    static void storeEverything()
    {
        Debounce::flushAll();
        MeasurementPointsHandler::instance()->waitUntilStored();
    }

    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<TestProject> m_project;
};

void tst_RealTimeOrder::initTestCase()
{
    QCOMPARE(vehicle().sectionDistanceCounter(), 0.0F);
}

void tst_RealTimeOrder::init()
{
    m_project = std::make_unique<TestProject>(QStringLiteral("LOCAL_CS[\"site\"]"));
    buildScene();
}

void tst_RealTimeOrder::cleanup()
{
    AppState::instance().setActiveInspection({});
    AppState::instance().setActiveProject({});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_root.reset();
    m_project.reset();
    GlobalNav::instance()->setRealTimeEnabled(false);
    vehicle().setSectionDistanceCounter(0.0F);
    GdalGeoProjector::instance()->deinit();
}

void tst_RealTimeOrder::aMovedAndTurnedPipeCountsFromItsOwnPlace()
{
    Section* const section = activate(addPipe());
    section->setPosition({5.0F, 2.0F, 7.0F}, TransformFlags::Manual);
    section->setRotation(QQuaternion::fromAxisAndAngle(0.0F, 1.0F, 0.0F, 90.0F), TransformFlags::Manual);
    RealTimeController controller;
    QSignalSpy started(&controller, &RealTimeController::start3dRealTimeMeasurements);
    controller.setCrawlerDistance(4.0);

    controller.enableMeasurement(true);

    // The way from the pipe's begin, along the scene's axes.
    const QVector3D place = started.first().first().value<Vector3D<double>>().toQVector3D();
    QVERIFY2((place - QVector3D(4.0F, 0.0F, 0.0F)).length() < 1e-4F,
             qPrintable(QStringLiteral("%1 %2 %3").arg(place.x()).arg(place.y()).arg(place.z())));
}

void tst_RealTimeOrder::theCounterBeforeTheSceneIsKeptForAMeasurement()
{
    vehicle().setSectionDistanceCounter(3.0F);
    m_root.reset();
    vehicle().setSectionDistanceCounter(6.0F);
    buildScene();
    QVERIFY(activate(addPipe()));
    QSignalSpy started(&SceneEntities::instance(), &SceneEntities::start3dRealTimeMeasurements);

    SceneEntities::instance().enable3dMeasurement(true);

    QCOMPARE(started.first().last().toFloat(), 6.0F);
}

void tst_RealTimeOrder::everyOtherCounterIsTold()
{
    const QSignalSpy told(&vehicle(), &SystemControlProxy::sectionDistanceCounterChanged);
    const float next = std::nextafter(3.0F, 4.0F);

    vehicle().setSectionDistanceCounter(0.0F);
    QCOMPARE(told.count(), 0);
    vehicle().setSectionDistanceCounter(3.0F);
    vehicle().setSectionDistanceCounter(next);

    QCOMPARE(told.count(), 2);
    QCOMPARE(int(vehicle().sectionDistanceCounter() > 3.0F), 1);
}

void tst_RealTimeOrder::theCounterIsToldWhenTheCrawlerIsThere()
{
    const Crawler* const crawler = addCrawler();
    const Section* const section = activate(addPipe());
    QVector<QPair<float, float>> seen; // the section's distance, the crawler's place along it
    const QObject here;
    connect(m_root.get(), &SceneRoot::distanceValueChanged, &here, [&] {
        seen.append({section->inspection()->currDist(), std::round(crawler->position().z() * 1000.0F)});
    });

    vehicle().setSectionDistanceCounter(3.0F);

    QCOMPARE(seen, (QVector<QPair<float, float>> {{3.0F, 3010.0F}}));
}

void tst_RealTimeOrder::aSectionIsMarkedBeforeItTakesPoints()
{
    Section* const section = activate(addPipe());
    QVector<QPair<int, bool>> seen;
    const QObject here;
    connect(section->transform(), &FlaggedTransform::flagsChanged, &here, [&] {
        seen.append({section->transformFlags(), section->inspection()->realTime});
    });

    GlobalNav::instance()->setRealTimeEnabled(true);

    QCOMPARE(seen, (QVector<QPair<int, bool>> {{int(TransformFlags::Geosensor), false}}));
    QVERIFY(section->inspection()->realTime);
}

void tst_RealTimeOrder::anotherInspectionIsTakenOverAfterTheMeasurementHasEnded()
{
    const Crawler* const crawler = addCrawler();
    const auto second = addPipe();
    Section* const old = activate(addPipe());
    GlobalNav::instance()->setRealTimeEnabled(true);
    const auto stillInTheOld = [&] {
        return SceneEntities::instance().getActiveSectionEntity() == old && crawler->section() == old;
    };
    QVector<bool> seen;
    const QObject here;
    connect(&SceneEntities::instance(), &SceneEntities::stop3dRealTimeMeasurements, &here,
            [&] { seen.append(stillInTheOld()); });

    AppState::instance().setActiveInspection(second);

    QCOMPARE(seen, (QVector<bool> {true, true}));
    QVERIFY(!stillInTheOld());
    QVERIFY(crawler->section());
}

void tst_RealTimeOrder::aMeasurementIsOpenedBeforeItsSectionIsThere()
{
    m_project->activate();
    vehicle().setSectionDistanceCounter(3.0F);
    const auto fresh = addPipe();
    AppState::instance().setActiveInspection(fresh);
    QVERIFY2(!SceneEntities::instance().getActiveSectionEntity(), "the scene hears of it with the event loop");
    QSignalSpy started(&SceneEntities::instance(), &SceneEntities::start3dRealTimeMeasurements);

    SceneEntities::instance().enable3dMeasurement(true);
    MeasurementPointsHandler::instance()->waitUntilStored();

    QCOMPARE(started.first().first().value<Vector3D<double>>(), Vector3D<double>(0.0, 0.0, 0.0));
    QCOMPARE(started.first().last().toFloat(), 0.0F);
    QCOMPARE(measurements(fresh->id()), 1);
}

void tst_RealTimeOrder::withoutRealTimeAReadingStoresNothing()
{
    const auto inspection = addPipe();
    QVERIFY(activate(inspection));
    vehicle().setSectionDistanceCounter(10.0F);
    const QString before = course(inspection->id());

    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);
    storeEverything();

    QCOMPARE(course(inspection->id()), before);
    QCOMPARE(measurements(inspection->id()), 0);
    QCOMPARE(pointsInAll(), 0);
}

void tst_RealTimeOrder::closingTheProjectEndsTheMeasurement()
{
    const Crawler* const crawler = addCrawler();
    const auto inspection = addPipe();
    const QString id = inspection->id();
    const QPointer<Section> section = activate(inspection);
    vehicle().setSectionDistanceCounter(10.0F);
    GlobalNav::instance()->setRealTimeEnabled(true);
    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);
    const QSignalSpy stopped(&SceneEntities::instance(), &SceneEntities::stop3dRealTimeMeasurements);

    m_project->close();

    QVERIFY(!GlobalNav::instance()->realTimeEnabled());
    QVERIFY(stopped.count() > 0);
    QVERIFY(!crawler->section());
    const QString stored = course(id);
    const int points = pointsInAll();
    QVERIFY(points > 0);
    // The vehicle goes on telling.
    for (int i = 0; i < 3; ++i) {
        vehicle().setSectionDistanceCounter(14.0F + float(i));
        emit vehicle().latestCameraSensorPositionChanged({0.0, -14.0 - i, 0.0}, 14.0F + float(i));
        QCoreApplication::processEvents();
    }
    QTRY_VERIFY(!section);
    storeEverything();
    QCOMPARE(course(id), stored);
    QCOMPARE(pointsInAll(), points);
}

void tst_RealTimeOrder::theStartsParametersHaveTheirNames()
{
    const QList<QByteArray> names {"startingVector", "startingDirection", "startMeterValue"};

    QCOMPARE(namesIn(RealTimeController::staticMetaObject, "start3dRealTimeMeasurements"), names);
    QCOMPARE(namesIn(SceneEntities::staticMetaObject, "start3dRealTimeMeasurements"), names);
    QCOMPARE(namesIn(SystemControlProxy::staticMetaObject, "latestCameraSensorPositionChanged"),
             (QList<QByteArray> {"position", "distance"}));
}

QTEST_MAIN(tst_RealTimeOrder)
#include "tst_RealTimeOrder.moc"
