#include "NetworkScene.h"

#include "measurement/InspectionCommands.h"
#include "measurement/MeasurementPointsHandler.h"
#include "scene/GlobalNav.h"

#include <QtTest>

using namespace Torvik::View3d;

/** What a section measures in real time arrives in the database, as part of the active inspection's measurement. */
class tst_SectionMeasuring : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void measuredPointsBecomeRowsOfTheActiveInspection();
    void aReadingInAnEarlierStretchCutsTheRowsBack();
    void aReadingFurtherOnInTheChainMovesTheRowsBehindIt();
    void pointsBelongToTheInspectionThatIsActiveThen();
    void withoutAnActiveInspectionNothingIsStored();
    void withoutAnActiveInspectionNothingIsTakenOut();
    void withoutRealTimeNothingIsStored();

private:
    static MeasurementPointsHandler& handler() { return *MeasurementPointsHandler::instance(); }
    QSharedPointer<Torvik::Database::CPipeInspectionObject> newInspection()
    {
        return m_scene->project().addInspection(m_scene->project().addSection("S", {}, {}));
    }
    /** Makes the inspection the active one, with an open measurement, and real time on. */
    static void measureInto(const CDomainObjectPointer& inspection)
    {
        Torvik::AppState::instance().setActiveInspection(inspection);
        handler().createNewSecMes(inspection->id());
        handler().waitUntilStored();
        // A change of the inspection has switched it off.
        GlobalNav::instance()->setRealTimeEnabled(true);
    }
    QString points(const CDomainObjectPointer& inspection) const
    {
        const QString key =
            m_scene->project().stored("SECMES", "MES_Inspection_FK", inspection->id(), "MES_PK").toString();
        return m_scene->project()
            .stored("(SELECT * FROM SECMP ORDER BY MP_SortOrder, rowid)", "MP_Measurement_FK", key,
                    "group_concat(MP_SortOrder || ':' || MP_Z_Value, ' ')")
            .toString();
    }
    QString line(const CDomainObjectPointer& inspection) const
    {
        return m_scene->project().stored("SECMES", "MES_Inspection_FK", inspection->id(), "MES_TxtValues").toString();
    }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_SectionMeasuring::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_SectionMeasuring::cleanup()
{
    GlobalNav::instance()->setRealTimeEnabled(false);
    m_scene.reset();
}

void tst_SectionMeasuring::measuredPointsBecomeRowsOfTheActiveInspection()
{
    const auto inspection = newInspection();
    Section* const section = m_scene->section(inspection);
    measureInto(inspection);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 0.0}, {}, 0.0F);

    for (float z : {1.0F, 2.0F, 3.0F})
        section->inspection()->addPoint({0.0F, 0.0F, z}, z);
    handler().waitUntilStored();

    QCOMPARE(points(inspection), QString("1:0 2:1 3:2 4:3"));
    QCOMPARE(line(inspection), QString("LINESTRING ZM(0 0 0 160, 0 0 1 160, 0 0 2 160, 0 0 3 160)"));
}

void tst_SectionMeasuring::aReadingInAnEarlierStretchCutsTheRowsBack()
{
    const auto inspection = newInspection();
    Section* const section = m_scene->section(inspection);
    measureInto(inspection);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 0.0}, {}, 0.0F);
    for (float z : {1.0F, 2.0F, 3.0F, 4.0F})
        section->inspection()->addPoint({0.0F, 0.0F, z}, z);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 2.0}, {}, 1.5F);

    section->inspection()->addPoint({0.0F, 0.0F, 9.0F}, 9.0F);
    handler().waitUntilStored();

    QCOMPARE(section->pipe()->segmentCount(), 4);
    QCOMPARE(line(inspection), QString("LINESTRING ZM(0 0 0 160, 0 0 1 160, 0 0 2 160, 0 0 9 160)"));
    // The points of the range count from 0, the numbers of the rows from 1.
    QCOMPARE(points(inspection), QString("1:0 2:1 4:9 5:4"));
}

void tst_SectionMeasuring::aReadingFurtherOnInTheChainMovesTheRowsBehindIt()
{
    const auto inspection = newInspection();
    Section* const section = m_scene->section(inspection);
    measureInto(inspection);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 0.0}, {}, 0.0F);
    for (float z : {1.0F, 2.0F, 3.0F, 4.0F})
        section->inspection()->addPoint({0.0F, 0.0F, z}, z);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 1.5}, {}, 1.5F);

    section->inspection()->addPoint({0.0F, 0.0F, 2.5F}, 2.5F);
    handler().waitUntilStored();

    // Half of the segment from 2 to 3 stays behind the new point, and the line has that point twice.
    QCOMPARE(section->pipe()->segmentCount(), 6);
    QCOMPARE(line(inspection),
             QString("LINESTRING ZM(0 0 0 160, 0 0 1 160, 0 0 2 160, 0 0 2.5 160, 0 0 2.5 160, 0 0 4 160)"));
    // Room made for the rest, the gap closed, room made for the point.
    QCOMPARE(points(inspection), QString("1:0 2:1 3:3 4:2.5 5:2.5 6:4"));
}

void tst_SectionMeasuring::pointsBelongToTheInspectionThatIsActiveThen()
{
    const auto first = newInspection();
    const auto second = newInspection();
    Section* const section = m_scene->section(first);
    measureInto(first);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 0.0}, {}, 0.0F);
    section->inspection()->addPoint({0.0F, 0.0F, 1.0F}, 1.0F);

    measureInto(second);
    section->inspection()->addPoint({0.0F, 0.0F, 2.0F}, 2.0F);
    handler().waitUntilStored();

    QCOMPARE(points(first), QString("1:0 2:1"));
    // A measurement of its own, which begins anew.
    QCOMPARE(points(second), QString("1:0 2:2"));
}

void tst_SectionMeasuring::withoutAnActiveInspectionNothingIsStored()
{
    const auto inspection = newInspection();
    Section* const section = m_scene->section(inspection);
    measureInto(inspection);
    Torvik::AppState::instance().setActiveInspection({});
    GlobalNav::instance()->setRealTimeEnabled(true);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 0.0}, {}, 0.0F);

    section->inspection()->addPoint({0.0F, 0.0F, 1.0F}, 1.0F);
    handler().waitUntilStored();

    QCOMPARE(float(section->length()), 1.0F);
    QCOMPARE(points(inspection), QString());
}

void tst_SectionMeasuring::withoutAnActiveInspectionNothingIsTakenOut()
{
    const auto inspection = newInspection();
    Section* const section = m_scene->section(inspection);
    measureInto(inspection);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 0.0}, {}, 0.0F);
    for (float z : {1.0F, 2.0F, 3.0F, 4.0F})
        section->inspection()->addPoint({0.0F, 0.0F, z}, z);
    Torvik::AppState::instance().setActiveInspection({});
    GlobalNav::instance()->setRealTimeEnabled(true);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 2.0}, {}, 1.5F);

    section->inspection()->addPoint({0.0F, 0.0F, 9.0F}, 9.0F);
    handler().waitUntilStored();

    QCOMPARE(section->pipe()->segmentCount(), 4);
    QCOMPARE(points(inspection), QString("1:0 2:1 3:2 4:3 5:4"));
}

void tst_SectionMeasuring::withoutRealTimeNothingIsStored()
{
    const auto inspection = newInspection();
    Section* const section = m_scene->section(inspection);
    measureInto(inspection);
    section->pipe()->startSensorMeasurement({0.0, 0.0, 0.0}, {}, 0.0F);
    GlobalNav::instance()->setRealTimeEnabled(false);

    section->inspection()->addPoint({0.0F, 0.0F, 1.0F}, 1.0F);
    handler().waitUntilStored();

    QCOMPARE(points(inspection), QString());
}

QTEST_MAIN(tst_SectionMeasuring)
#include "tst_SectionMeasuring.moc"
