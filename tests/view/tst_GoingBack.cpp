#include "common/SceneTest.h"
#include "view/SceneWindow.h"

#include "host/vehicle/Replay.h"
#include "host/vehicle/VehicleFeed.h"
#include "measurement/MeasurementPointsHandler.h"
#include "network/Crawler.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

#include <cmath>
#include <memory>

using namespace Torvik;
using namespace Torvik::View3d;
using Kx::Test::SceneWindow;
using Kx::Test::TestProject;

namespace {

constexpr int lastMetre = 12;

/** A run to the east: a reading a second, each a metre further on. */
QVector<Vehicle::Reading> runToTheEast()
{
    QVector<Vehicle::Reading> readings;
    for (int metre = 1; metre <= lastMetre; ++metre)
        readings.append({double(metre), double(metre), Vehicle::SensorPlace {double(metre), 0.0, 0.0}});
    return readings;
}

/** In whatever light. */
bool isGreen(QRgb colour)
{
    return 2 * qGreen(colour) > 3 * qRed(colour) && 2 * qGreen(colour) > 3 * qBlue(colour);
}
/** As nothing but the vehicle is. */
bool isDark(QRgb colour)
{
    return qGray(colour) < 60 && !isGreen(colour);
}

} // namespace

/** A recording that goes back while it measures, as it is seen: the pipe, the vehicle, the camera and the rows. */
class tst_GoingBack : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theVehicleGoesBackAndThePipeStays();
    void goingOnMeasuresWhatLiesBehindTheEnd();
    void switchedOnAgainTheStretchIsMeasuredAnew();
    void theCameraGoesBackWithIt();

private:
    Section* section() const { return SceneEntities::instance().getActiveSectionEntity(); }
    Crawler* crawler() const { return m_view->root()->crawler(); }
    /** Where the scene has what lies so far to the east and to the north of the pipe's begin. */
    QVector3D at(float east, float north = 0.0F) const { return m_begin + QVector3D(-east, 0.0F, north); }
    QVector<QVector3D> course() const { return section()->pipe()->getShapePoints(); }
    bool passes(const QVector3D& place) const
    {
        const auto points = course();
        return std::any_of(points.begin(), points.end(),
                           [&](const QVector3D& point) { return (point - place).length() < 0.01F; });
    }

    /** Plays from where it stands up to a metre. */
    void playTo(int metre)
    {
        const QObject here;
        connect(&m_replay, &Vehicle::Replay::reading, &here, [&](const Vehicle::Reading& reading) {
            if (reading.counter > metre - 0.5)
                m_replay.pause();
        });
        m_replay.play();
        QTRY_VERIFY(!m_replay.isPlaying());
    }
    /** Of the recording's slider. */
    void goTo(int metre) { m_replay.seek(metre - 1.0); }

    /** The measured places as they are stored, metres to the east. */
    QVector<int> storedMetres() const
    {
        MeasurementPointsHandler::instance()->waitUntilStored();
        const QString all = m_project
                                ->stored("(SELECT * FROM SECMP ORDER BY MP_Z_Value + 0, rowid)", "'1'", "1",
                                         "group_concat(round(MP_Z_Value))")
                                .toString();
        QVector<int> metres;
        for (const QString& metre : all.split(',', Qt::SkipEmptyParts))
            metres.append(int(metre.toDouble()));
        return metres;
    }

    QRgb colourAt(const QImage& picture, const QVector3D& place) const
    {
        return picture.pixel(m_view->inWindow(m_view->pixelOf(place)));
    }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<TestProject> m_project;
    Vehicle::VehicleFeed m_feed;
    Vehicle::Replay m_replay;
    QVector3D m_begin;
};

void tst_GoingBack::init()
{
    m_view = std::make_unique<SceneWindow>();
    m_project = std::make_unique<TestProject>();
    const auto a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    const auto b = m_project->addNode("B", "POINT ZM(400040 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    const auto inspection = m_project->addInspection(m_project->addSection("A-B", a, b, {{"OBJ_Size1", 300}}));
    m_project->activate();
    QTRY_VERIFY(SceneEntities::instance().getPipeEntities().count() == 1);
    AppState::instance().setActiveInspection(inspection);
    QTRY_VERIFY(crawler()->section());
    m_begin = course().first();
    m_view->lookDown(at(6.0F), 300.0F);
    m_replay.disconnect();
    connect(&m_replay, &Vehicle::Replay::reading, &m_feed, &Vehicle::VehicleFeed::take);
    m_replay.load(runToTheEast());
    m_replay.setSpeed(Vehicle::Replay::fastest);
    m_feed.setMeasuring(true);
    playTo(10);
    QVERIFY(std::abs(section()->length() - 10.0) < 0.01);
}

void tst_GoingBack::cleanup()
{
    AppState::instance().setActiveInspection({});
    m_project.reset();
    m_view.reset();
}

void tst_GoingBack::theVehicleGoesBackAndThePipeStays()
{
    const auto before = course();
    const auto rows = storedMetres();
    QCOMPARE(rows, (QVector<int> {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    const QImage ahead = m_view->grab();
    QVERIFY(isGreen(colourAt(ahead, at(4.0F))));
    QVERIFY(isDark(colourAt(ahead, at(10.0F))));

    goTo(4);

    QVERIFY((crawler()->position() - at(4.01F)).length() < 0.005F);
    QCOMPARE(course(), before);
    QCOMPARE(storedMetres(), rows);
    m_view->frames(6);
    const QImage back = m_view->grab();
    m_view->keep("going-back");
    QVERIFY(isDark(colourAt(back, crawler()->position())));
    QVERIFY(!isDark(colourAt(back, at(10.0F))));
    QVERIFY(isGreen(colourAt(back, at(9.5F))));
    // What is stored of the course is not cut either.
    QTRY_COMPARE(m_project->stored("SECINSP", "'1'", "1", "INS_Shape_WKT").toString().count(','), before.size() - 1);
}

void tst_GoingBack::goingOnMeasuresWhatLiesBehindTheEnd()
{
    const auto before = course();
    goTo(4);

    playTo(9);
    QVERIFY((crawler()->position() - at(9.01F)).length() < 0.02F);
    playTo(lastMetre);

    QVERIFY(std::abs(section()->length() - lastMetre) < 0.01);
    for (const QVector3D& place : before)
        QVERIFY(passes(place));
    QVERIFY((course().last() - at(lastMetre)).length() < 0.01F);
    // The pipe doesn't run to and fro.
    const auto after = course();
    for (int i = 1; i < after.size(); ++i)
        QVERIFY(after[i].x() < after[i - 1].x() + 0.001F);
    const auto rows = storedMetres();
    for (int metre = 0; metre <= lastMetre; ++metre)
        QVERIFY2(rows.contains(metre), qPrintable(QString::number(metre)));
}

void tst_GoingBack::switchedOnAgainTheStretchIsMeasuredAnew()
{
    m_feed.setMeasuring(false);
    goTo(4);
    const QImage before = m_view->grab();
    const QVector3D beside = at(5.5F, 1.0F);
    QVERIFY(!isGreen(colourAt(before, beside)));
    m_feed.setMeasuring(true);

    // This time a metre further to the north.
    for (int metre = 5; metre <= 7; ++metre)
        m_feed.take({double(metre), double(metre), Vehicle::SensorPlace {double(metre), 1.0, 0.0}});

    for (int metre = 1; metre <= 4; ++metre)
        QVERIFY(passes(at(float(metre))));
    for (int metre = 5; metre <= 7; ++metre)
        QVERIFY(passes(at(float(metre), 1.0F)));
    QVERIFY(!passes(at(5.0F, 0.0F)));
    // What the vehicle has not come to again stays.
    for (int metre = 8; metre <= 10; ++metre)
        QVERIFY(passes(at(float(metre))));
    QVERIFY(std::abs(crawler()->position().z() - at(0.0F, 1.0F).z()) < 0.01F);
    m_view->frames(6);
    const QImage anew = m_view->grab();
    m_view->keep("going-back-measured-anew");
    QVERIFY(isGreen(colourAt(anew, beside)));
    QVERIFY(isGreen(colourAt(anew, at(9.5F))));
}

void tst_GoingBack::theCameraGoesBackWithIt()
{
    m_view->setFollowing(true);
    m_feed.take({10.0, 9.9, std::nullopt});
    QTRY_VERIFY(!m_view->camera()->property("animationsRunning").toBool());
    const QVector3D ahead = m_view->camera()->position();

    goTo(4);
    QTRY_VERIFY((m_view->camera()->position() - ahead).length() > 5.0F);
    QTRY_VERIFY(!m_view->camera()->property("animationsRunning").toBool());

    const QVector3D moved = m_view->camera()->position() - ahead;
    QVERIFY2((moved - QVector3D(5.9F, 0.0F, 0.0F)).length() < 0.1F, qPrintable(QString::number(double(moved.x()))));
    m_view->setFollowing(false);
}

KX_SCENE_TEST_MAIN(tst_GoingBack)
#include "tst_GoingBack.moc"
