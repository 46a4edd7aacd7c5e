#include "NetworkScene.h"

#include "measurement/InspectionCommands.h"
#include "scene/GlobalNav.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QVector<QVector3D> tenMetresNorth {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}};

QVector3D placeOf(const QMatrix4x4& matrix)
{
    return matrix.column(3).toVector3D();
}

/** A point of the sensor, two metres behind a pipe of ten metres. */
void measure(Section* section)
{
    section->pipe()->startSensorMeasurement({0.0, 0.0, 10.0}, {}, 10.0F);
    section->inspection()->addPoint({0.0F, 0.0F, 12.0F}, 12.0F);
}

} // namespace

/** What the counter and the bends do to a section, with real time and without, and what of it is stored. */
class tst_SectionRealTime : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aSectionMadeInRealTimeTakesMeasuredPoints();
    void theCounterStoresTheLongerCourse();
    void inRealTimeTheCounterMovesTheCrawlerAndStoresNothing();
    void aChangedBendIsStored();
    void aRemovedBendIsStored();
    void aSourceFromObservationsKeepsTheShape();

private:
    QString storedShapeOf(const Section* section) const { return m_scene->storedShapeOf(section).toString(); }
    /** Returns when the section's last change of place or source has been looked at: it would store by itself. */
    static void waitForRest(const Section* section)
    {
        QSignalSpy finished(section, &Section::editingFinished);
        QVERIFY(finished.wait());
    }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_SectionRealTime::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_SectionRealTime::cleanup()
{
    m_scene.reset();
    GlobalNav::instance()->setRealTimeEnabled(false);
}

void tst_SectionRealTime::aSectionMadeInRealTimeTakesMeasuredPoints()
{
    GlobalNav::instance()->setRealTimeEnabled(true);

    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    measure(section);

    QCOMPARE(float(section->length()), 12.0F);
}

void tst_SectionRealTime::theCounterStoresTheLongerCourse()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    waitForRest(section);

    section->onDistanceCounterChanged(12.0);

    QTRY_COMPARE(storedShapeOf(section), QStringLiteral("LINESTRING ZM(0 12 0 260,0 0 0 0)"));
}

void tst_SectionRealTime::inRealTimeTheCounterMovesTheCrawlerAndStoresNothing()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    section->setTransformFlags(TransformFlags::Geosensor);
    GlobalNav::instance()->setRealTimeEnabled(true);
    measure(section);
    const QString before = storedShapeOf(section);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->onDistanceCounterChanged(4.0);

    QCOMPARE(geometry.count(), 1);
    VERIFY_NEAR(placeOf(section->crawlerTransformMatrix()), QVector3D(0.0F, 0.0F, 4.01F));
    QCOMPARE(float(section->length()), 12.0F);
    m_scene->waitForAWrite();
    QCOMPARE(storedShapeOf(section), before);
}

void tst_SectionRealTime::aChangedBendIsStored()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    section->addBend(9.0F, 90.0F, 4.0F);
    waitForRest(section);
    QTRY_COMPARE(storedShapeOf(section), QStringLiteral("LINESTRING ZM(-6 4 0 260,0 4 0 0,0 0 0 0)"));
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->modifyBend(3.0F, 90.0F, 4.0F);

    QCOMPARE(geometry.count(), 1);
    QTRY_COMPARE(storedShapeOf(section), QStringLiteral("LINESTRING ZM(6 4 0 260,0 4 0 0,0 0 0 0)"));
}

void tst_SectionRealTime::aRemovedBendIsStored()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    section->addBend(9.0F, 90.0F, 4.0F);
    section->setTransformFlags(TransformFlags::PipeShape);
    waitForRest(section);
    QTRY_COMPARE(storedShapeOf(section), QStringLiteral("LINESTRING ZM(-6 4 0 320,0 4 0 0,0 0 0 0)"));

    section->removeBend(4.0F);

    QCOMPARE(section->transformFlags(), int(TransformFlags::PipeShape));
    QTRY_COMPARE(storedShapeOf(section), QStringLiteral("LINESTRING ZM(0 10 0 320,0 0 0 0)"));
}

void tst_SectionRealTime::aSourceFromObservationsKeepsTheShape()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    QSignalSpy finished(section, &Section::editingFinished);

    section->setTransformFlags(TransformFlags::Observations);

    // A shape that was cleared would be gone by now, and be written again a moment later.
    QVERIFY(finished.wait());
    QVERIFY(!m_scene->storedShapeOf(section).isNull());
    QTRY_COMPARE(storedShapeOf(section), QStringLiteral("LINESTRING ZM(0 10 0 257,0 0 0 0)"));
}

QTEST_MAIN(tst_SectionRealTime)
#include "tst_SectionRealTime.moc"
