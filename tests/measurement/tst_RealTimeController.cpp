#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "measurement/InspectionCommands.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/RealTimeController.h"
#include "measurement/SystemControlProxy.h"
#include "network/Crawler.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <limits>

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

/** What a measurement was announced with. */
struct Start {
    explicit Start(const QList<QVariant>& arguments)
        : place(arguments.at(0).value<Vector3D<double>>())
        , direction(arguments.at(1).value<QVector3D>())
        , distance(arguments.at(2).toFloat())
    {
    }
    bool at(const QVector3D& expected) const { return (place.toQVector3D() - expected).length() < 1e-4F; }

    Vector3D<double> place;
    QVector3D direction;
    float distance;
};

QString text(const QVector3D& point)
{
    return QStringLiteral("(%1, %2, %3)").arg(double(point.x())).arg(double(point.y())).arg(double(point.z()));
}

} // namespace

/** A measurement in real time, from what the host tells of the vehicle to the pipe that changes. */
class tst_RealTimeController : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void withoutASectionItStartsAtTheOrigin();
    void itStartsWhereTheCrawlerIs();
    void itStartsBehindABendWithTheSensorsAxes();
    void theDistanceIsKeptForAMeasurementToCome();
    void endingOnlySaysSo();
    void aSwitchIsAnnouncedOnce();
    void aSectionIsMarkedMeasuredBeforeTheAnnouncement();
    void aReadingDrawsThePipeOut();
    void aReadingIsStored();
    void aReadingIsStoredWhenTheProjectClosesAtOnce();
    void aReadingIsStoredWhenItsSectionGoesAtOnce();
    void readingsThatAreNoNumbersAreDropped();
    void itOpensTheInspectionsMeasurementOnce();
    void endingOpensNoMeasurement();
    void withoutRealTimeAReadingIsOnlyTold();
    void aReadingWithoutASectionIsDropped();
    void aReadingMovesTheCrawler();
    void aReadingFromAnotherThreadComesToTheMainOne();
    void theSameCounterAgainReachesNobody();
    void anotherInspectionEndsTheMeasurement();
    void aSecondSceneHearsEachReadingOnce();

private:
    /** Ten metres to the north, from (0, 0, 0) in the scene. */
    Inspection addPipe(const QString& course = QStringLiteral("LINESTRING ZM(0 10 0 260,0 0 0 0)"))
    {
        return m_project->addInspection(m_project->addSection("S", {}, {}), course);
    }
    Section* activate(const Inspection& inspection)
    {
        m_project->activate();
        AppState::instance().setActiveInspection(inspection);
        return SceneEntities::instance().getActiveSectionEntity();
    }
    /** Of the inspection's measurements. */
    QVariant rowsOf(const CDomainObjectPointer& inspection, const char* column) const
    {
        return m_project->stored("SECMES", "MES_Inspection_FK", inspection->id(), column);
    }
    void tieToEarth()
    {
        QString system = QStringLiteral("LOCAL_CS[\"site\"]");
        GdalGeoProjector::instance()->init(Torvik::Database::WktPoint(QStringLiteral("POINT ZM(0 0 0 0)")), system);
    }

    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<TestProject> m_project;
};

void tst_RealTimeController::init()
{
    m_project = std::make_unique<TestProject>(QStringLiteral("LOCAL_CS[\"site\"]"));
    m_root = std::make_unique<SceneRoot>();
    m_root->qmlOnCompleted();
    tieToEarth();
}

void tst_RealTimeController::cleanup()
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

void tst_RealTimeController::withoutASectionItStartsAtTheOrigin()
{
    RealTimeController controller;
    QSignalSpy started(&controller, &RealTimeController::start3dRealTimeMeasurements);
    controller.setCrawlerDistance(7.0);

    controller.enableMeasurement(true);

    const Start start(started.takeFirst());
    QCOMPARE(start.place, Vector3D<double>(0.0, 0.0, 0.0));
    QVERIFY(std::signbit(start.place.y()));
    QCOMPARE(start.direction, QVector3D());
    QCOMPARE(start.distance, 0.0F);
}

void tst_RealTimeController::itStartsWhereTheCrawlerIs()
{
    QVERIFY(activate(addPipe(QStringLiteral("LINESTRING ZM(-5 17 2 260,-5 7 2 0)"))));
    RealTimeController controller;
    QSignalSpy started(&controller, &RealTimeController::start3dRealTimeMeasurements);
    controller.setCrawlerDistance(4.0);

    controller.enableMeasurement(true);

    // Four metres north of the pipe's begin: in the sensor's frame that is along -y.
    const Start start(started.takeFirst());
    QVERIFY2(start.at({0.0F, -4.0F, 0.0F}), qPrintable(text(start.place.toQVector3D())));
    QCOMPARE(start.direction, QVector3D());
    QCOMPARE(start.distance, 4.0F);
}

void tst_RealTimeController::itStartsBehindABendWithTheSensorsAxes()
{
    // Five metres north, then up.
    const Section* const section = activate(addPipe(QStringLiteral("LINESTRING ZM(0 5 5 260,0 5 0 0,0 0 0 0)")));
    QCOMPARE(float(section->length()), 10.0F);
    RealTimeController controller;
    QSignalSpy started(&controller, &RealTimeController::start3dRealTimeMeasurements);
    controller.setCrawlerDistance(7.0);

    controller.enableMeasurement(true);

    const Start start(started.takeFirst());
    QVERIFY2(start.at({0.0F, -5.0F, 2.0F}), qPrintable(text(start.place.toQVector3D())));
    QCOMPARE(start.distance, 7.0F);
}

void tst_RealTimeController::theDistanceIsKeptForAMeasurementToCome()
{
    const auto inspection = addPipe();
    m_project->activate();
    vehicle().setSectionDistanceCounter(6.0F);
    AppState::instance().setActiveInspection(inspection);
    QSignalSpy started(&SceneEntities::instance(), &SceneEntities::start3dRealTimeMeasurements);

    SceneEntities::instance().enable3dMeasurement(true);

    const Start start(started.takeFirst());
    QCOMPARE(start.distance, 6.0F);
    QVERIFY(start.at({0.0F, -6.0F, 0.0F}));
}

void tst_RealTimeController::endingOnlySaysSo()
{
    QVERIFY(activate(addPipe()));
    RealTimeController controller;
    const QSignalSpy started(&controller, &RealTimeController::start3dRealTimeMeasurements);
    const QSignalSpy stopped(&controller, &RealTimeController::stop3dRealTimeMeasurements);

    controller.enableMeasurement(false);
    controller.enableMeasurement(false);

    QCOMPARE(started.count(), 0);
    QCOMPARE(stopped.count(), 2);
}

void tst_RealTimeController::aSwitchIsAnnouncedOnce()
{
    const auto inspection = addPipe();
    addPipe();
    QVERIFY(activate(inspection));
    const QSignalSpy started(&SceneEntities::instance(), &SceneEntities::start3dRealTimeMeasurements);
    const QSignalSpy stopped(&SceneEntities::instance(), &SceneEntities::stop3dRealTimeMeasurements);

    GlobalNav::instance()->setRealTimeEnabled(true);
    QCOMPARE(started.count(), 1);
    QCOMPARE(stopped.count(), 0);
    GlobalNav::instance()->setRealTimeEnabled(false);
    QCOMPARE(started.count(), 1);
    QCOMPARE(stopped.count(), 1);
}

void tst_RealTimeController::aSectionIsMarkedMeasuredBeforeTheAnnouncement()
{
    const Section* const section = activate(addPipe());
    QVector<QPair<int, bool>> seen;
    const QObject here;
    const auto look = [&] { seen.append({section->transformFlags(), section->inspection()->realTime}); };
    connect(&SceneEntities::instance(), &SceneEntities::start3dRealTimeMeasurements, &here, look);
    connect(&SceneEntities::instance(), &SceneEntities::stop3dRealTimeMeasurements, &here, look);

    GlobalNav::instance()->setRealTimeEnabled(true);
    GlobalNav::instance()->setRealTimeEnabled(false);

    const int measured = TransformFlags::Geosensor;
    QCOMPARE(seen, (QVector<QPair<int, bool>> {{measured, true}, {measured, false}}));
}

void tst_RealTimeController::aReadingDrawsThePipeOut()
{
    const Section* const section = activate(addPipe());
    vehicle().setSectionDistanceCounter(10.0F);
    GlobalNav::instance()->setRealTimeEnabled(true);

    // Two metres on and one up: the sensor's y points back, its z up.
    emit vehicle().latestCameraSensorPositionChanged({0.5, -12.0, 1.0}, 12.3F);

    const auto course = section->pipe()->getShapePoints();
    QCOMPARE(course.size(), 3);
    // A segment's length counts in centimetres.
    QVERIFY2((course.last() - QVector3D(0.5F, 1.0F, 12.0F)).length() < 5e-3F, qPrintable(text(course.last())));
}

void tst_RealTimeController::aReadingIsStored()
{
    const auto inspection = addPipe();
    QVERIFY(activate(inspection));
    vehicle().setSectionDistanceCounter(10.0F);
    GlobalNav::instance()->setRealTimeEnabled(true);

    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);

    QTRY_COMPARE(m_project->stored("SECINSP", "INS_PK", inspection->id(), "INS_Shape_WKT").toString(),
                 QStringLiteral("LINESTRING ZM(0 12 0 288,0 10 0 0,0 0 0 0)"));
}

void tst_RealTimeController::aReadingIsStoredWhenTheProjectClosesAtOnce()
{
    const auto inspection = addPipe();
    QVERIFY(activate(inspection));
    vehicle().setSectionDistanceCounter(10.0F);
    GlobalNav::instance()->setRealTimeEnabled(true);
    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);
    const QString id = inspection->id();
    m_project->close();
    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(),
             QStringLiteral("LINESTRING ZM(0 12 0 288,0 10 0 0,0 0 0 0)"));
}

void tst_RealTimeController::aReadingIsStoredWhenItsSectionGoesAtOnce()
{
    const auto inspection = addPipe();
    Section* const section = activate(inspection);
    vehicle().setSectionDistanceCounter(10.0F);
    GlobalNav::instance()->setRealTimeEnabled(true);
    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);

    delete section;

    QTRY_COMPARE(m_project->stored("SECINSP", "INS_PK", inspection->id(), "INS_Shape_WKT").toString(),
                 QStringLiteral("LINESTRING ZM(0 12 0 288,0 10 0 0,0 0 0 0)"));
}

void tst_RealTimeController::readingsThatAreNoNumbersAreDropped()
{
    const auto inspection = addPipe();
    const Section* const section = activate(inspection);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    vehicle().setSectionDistanceCounter(10.0F);
    vehicle().setSectionDistanceCounter(nan);
    QCOMPARE(vehicle().sectionDistanceCounter(), 10.0F);
    GlobalNav::instance()->setRealTimeEnabled(true);
    emit vehicle().latestCameraSensorPositionChanged({0.0, double(nan), 0.0}, 12.0F);
    QCOMPARE(section->length(), 10.0);
}

void tst_RealTimeController::itOpensTheInspectionsMeasurementOnce()
{
    const auto inspection = addPipe();
    addPipe();
    QVERIFY(activate(inspection));
    vehicle().setSectionDistanceCounter(10.0F);

    GlobalNav::instance()->setRealTimeEnabled(true);
    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);
    MeasurementPointsHandler::instance()->waitUntilStored();

    QCOMPARE(rowsOf(inspection, "COUNT(*)").toInt(), 1);
    QVERIFY(rowsOf(inspection, "MES_TxtValues").toString().contains("0 0 12 160"));
}

void tst_RealTimeController::endingOpensNoMeasurement()
{
    const auto inspection = addPipe();
    QVERIFY(activate(inspection));

    SceneEntities::instance().enable3dMeasurement(false);
    MeasurementPointsHandler::instance()->waitUntilStored();

    QCOMPARE(rowsOf(inspection, "COUNT(*)").toInt(), 0);
}

void tst_RealTimeController::withoutRealTimeAReadingIsOnlyTold()
{
    Section* const section = activate(addPipe());
    vehicle().setSectionDistanceCounter(10.0F);
    const QSignalSpy told(section, &Section::realTimeDataChanged);

    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);

    QCOMPARE(told.count(), 1);
    QCOMPARE(section->pipe()->getShapePoints().size(), 2);
    QCOMPARE(float(section->length()), 10.0F);
}

void tst_RealTimeController::aReadingWithoutASectionIsDropped()
{
    Section* const section = activate(addPipe());
    AppState::instance().setActiveInspection({});
    GlobalNav::instance()->setRealTimeEnabled(true);
    const QSignalSpy told(section, &Section::realTimeDataChanged);

    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);

    QCOMPARE(told.count(), 0);
    QCOMPARE(section->pipe()->getShapePoints().size(), 2);
}

void tst_RealTimeController::aReadingMovesTheCrawler()
{
    auto* const crawler = new Crawler(m_root.get());
    crawler->setActive(true);
    m_root->setCrawler(crawler);
    Section* const section = activate(addPipe());
    // The counter has moved on without the crawler.
    section->onDistanceCounterChanged(5.0);
    QVERIFY(std::abs(crawler->position().z() - 0.01F) < 1e-4F);

    emit vehicle().latestCameraSensorPositionChanged({0.0, -5.0, 0.0}, 5.0F);

    QVERIFY(std::abs(crawler->position().z() - 5.01F) < 1e-4F);
}

void tst_RealTimeController::aReadingFromAnotherThreadComesToTheMainOne()
{
    Section* const section = activate(addPipe());
    QThread* heardIn = nullptr;
    const QObject here;
    connect(section, &Section::realTimeDataChanged, &here, [&] { heardIn = QThread::currentThread(); });
    const std::unique_ptr<QThread> sensor(QThread::create([] {
        emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);
    }));

    sensor->start();
    QVERIFY(sensor->wait(5000));

    QVERIFY(!heardIn);
    QTRY_COMPARE(heardIn, QThread::currentThread());
}

void tst_RealTimeController::theSameCounterAgainReachesNobody()
{
    const Section* const section = activate(addPipe());
    const QSignalSpy counter(&vehicle(), &SystemControlProxy::sectionDistanceCounterChanged);
    const QSignalSpy told(m_root.get(), &SceneRoot::distanceValueChanged);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    vehicle().setSectionDistanceCounter(3.0F);
    vehicle().setSectionDistanceCounter(3.0F);

    QCOMPARE(counter.count(), 1);
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.first().first().toDouble(), 3.0);
    QCOMPARE(geometry.count(), 1);
}

void tst_RealTimeController::anotherInspectionEndsTheMeasurement()
{
    const auto other = addPipe();
    QVERIFY(activate(addPipe()));
    GlobalNav::instance()->setRealTimeEnabled(true);
    QStringList heard;
    const QObject here;
    connect(&SceneEntities::instance(), &SceneEntities::stop3dRealTimeMeasurements, &here, [&] {
        heard << QStringLiteral("stop while %1").arg(GlobalNav::instance()->realTimeEnabled() ? "on" : "off");
    });

    AppState::instance().setActiveInspection(other);

    // Once by the change itself, before anything else, then once by each of the two sections.
    QCOMPARE(heard, (QStringList {"stop while on", "stop while off"}));
    QVERIFY(!GlobalNav::instance()->realTimeEnabled());
}

void tst_RealTimeController::aSecondSceneHearsEachReadingOnce()
{
    m_root.reset();
    m_root = std::make_unique<SceneRoot>();
    m_root->qmlOnCompleted();
    tieToEarth();
    Section* const section = activate(addPipe());
    const QSignalSpy told(section, &Section::realTimeDataChanged);
    const QSignalSpy stopped(&SceneEntities::instance(), &SceneEntities::stop3dRealTimeMeasurements);

    emit vehicle().latestCameraSensorPositionChanged({0.0, -12.0, 0.0}, 12.0F);
    SceneEntities::instance().enable3dMeasurement(false);

    QCOMPARE(told.count(), 1);
    QCOMPARE(stopped.count(), 1);
}

QTEST_MAIN(tst_RealTimeController)
#include "tst_RealTimeController.moc"
