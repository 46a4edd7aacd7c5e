#include "NetworkScene.h"

#include "measurement/InspectionCommands.h"
#include "network/EntitySegment.h"
#include "scene/GlobalNav.h"

#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QMesh>

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QVector<QVector3D> tenMetresNorth {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}};

QVector3D endOf(const Section* section)
{
    return section->pipeTransMatrixAtDistance(float(section->length())).column(3).toVector3D();
}

} // namespace

/** Where a section's pipe goes: turning, bending, growing, and what is stored of it. */
class tst_SectionCourse : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void directionPointsAgainstTheChain();
    void aNewSectionPointsAtAnEndNodeOfKnownPlace();
    void aSectionDoesNotTurnToANodeThatFollowsIt();
    void aBoundSectionDoesNotTurn();
    void autorotationCanBeSwitchedOff();
    void turningToAPointKeepsThePlace();
    void turningAboutTheVertical();
    void turningToAnInclination();
    void northRotationIsACompassBearing();

    void aBendTurnsTheCourseAndBindsIt();
    void changingABendLeavesTheSource();
    void removingABendStraightensTheCourse();
    void bendsAreLeftAloneInRealTime();

    void theCounterStretchesThePipe();
    void theCounterOnlyMovesTheCrawlerInRealTime();
    void realTimeMakesAGeosensorOfTheSection();
    void theCommandsTakePointsWhileItIsRealTime();

    void theArrowIsNeededByAShortPipeAtARealNode();
    void theArrowIsMadeWhenItIsShown();
    void theArrowGoesWhenThePipeHasGrown();
    void anotherStartNodeHidesTheArrow();

    void selectionColoursTheMainPipe();
    void aDragIsStoredOnce();
    void aShapeSurvivesAReopen();
    void nothingIsStoredInRealTime();
    void losingThePositionClearsTheShape();
    void whatDoesNothing();

private:
    Node* nodeAt(const QVector3D& place, const QVariantMap& values = {}) { return m_scene->nodeAt(place, values); }
    QVariant storedShapeOf(const Section* section) const { return m_scene->storedShapeOf(section); }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_SectionCourse::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_SectionCourse::cleanup()
{
    m_scene.reset();
    GlobalNav::instance()->setRealTimeEnabled(false);
}

void tst_SectionCourse::directionPointsAgainstTheChain()
{
    const Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);

    VERIFY_NEAR(section->direction(), QVector3D(0.0F, 0.0F, -1.0F));
}

void tst_SectionCourse::aNewSectionPointsAtAnEndNodeOfKnownPlace()
{
    Node* const start = nodeAt({0.0F, 5.0F, 0.0F});
    Node* const end = nodeAt({30.0F, 5.0F, 0.0F});

    const Section* const section = m_scene->section(start, end, {{"OBJ_FromNodeDepth", 2.0}, {"OBJ_ToNodeDepth", 2.0}});

    VERIFY_NEAR(section->position(), QVector3D(0.0F, 3.0F, 0.0F));
    VERIFY_NEAR(section->direction(), QVector3D(-1.0F, 0.0F, 0.0F));
    QCOMPARE(section->transformFlags(), 0);
}

void tst_SectionCourse::aSectionDoesNotTurnToANodeThatFollowsIt()
{
    Node* const start = nodeAt({0.0F, 5.0F, 0.0F});
    Node* const end = m_scene->node("U");
    Section* const section = m_scene->section(start, end);
    end->setPosition({30.0F, 5.0F, 0.0F}, TransformFlags::Observations);

    section->rotateToEndNodeDirection();
    VERIFY_NEAR(section->direction(), QVector3D(0.0F, 0.0F, -1.0F));

    end->setPosition({30.0F, 5.0F, 0.0F}, TransformFlags::Manual);
    section->rotateToEndNodeDirection();
    VERIFY_NEAR(section->direction(), QVector3D(-1.0F, 0.0F, 0.0F));
}

void tst_SectionCourse::aBoundSectionDoesNotTurn()
{
    Node* const start = nodeAt({0.0F, 5.0F, 0.0F});
    Node* const end = nodeAt({30.0F, 5.0F, 0.0F});

    Section* const section = m_scene->section(start, end, {}, tenMetresNorth);

    VERIFY_NEAR(section->direction(), QVector3D(0.0F, 0.0F, -1.0F));
}

void tst_SectionCourse::autorotationCanBeSwitchedOff()
{
    Node* const end = nodeAt({30.0F, 5.0F, 0.0F});
    Section* const section = m_scene->section(nodeAt({0.0F, 5.0F, 0.0F}), end);
    QVERIFY(section->isAutorotationEnabled());
    section->enableAutorotation(false);
    end->setPosition({0.0F, 5.0F, -30.0F}, TransformFlags::GIS);

    section->rotateToEndNodeDirection();
    VERIFY_NEAR(section->direction(), QVector3D(-1.0F, 0.0F, 0.0F));

    section->enableAutorotation(true);
    section->rotateToEndNodeDirection();
    VERIFY_NEAR(section->direction(), QVector3D(0.0F, 0.0F, 1.0F));
}

void tst_SectionCourse::turningToAPointKeepsThePlace()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, {{1.0F, 2.0F, 3.0F}, {1.0F, 1.0F, 13.0F}});
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->rotateToPointDirection({-20.0F, 50.0F, 3.0F}, TransformFlags::GPS);

    VERIFY_NEAR(section->position(), QVector3D(1.0F, 2.0F, 3.0F));
    const QVector3D end = endOf(section);
    QVERIFY(qAbs(end.x() + 9.0F) < 1e-2F);
    QVERIFY(qAbs(end.y() - 1.0F) < 1e-2F);
    QVERIFY(qAbs(end.z() - 3.0F) < 1e-2F);
    QCOMPARE(section->transformFlags(), int(TransformFlags::GPS));
    QCOMPARE(geometry.count(), 1);
}

void tst_SectionCourse::turningAboutTheVertical()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->rotateToTargetAngleY(90.0F);

    VERIFY_NEAR(endOf(section), QVector3D(10.0F, 0.0F, 0.0F));
    QCOMPARE(section->transformFlags(), int(TransformFlags::Manual));
    QCOMPARE(geometry.count(), 1);
}

void tst_SectionCourse::turningToAnInclination()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->rotateToTargetInclination(10.0F, 0);

    QVERIFY(qAbs(qAbs(section->inclination()) - 10.0F) < 0.05F);
    QCOMPARE(geometry.count(), 1);
    VERIFY_NEAR(section->position(), QVector3D());
}

void tst_SectionCourse::northRotationIsACompassBearing()
{
    const Section* const north = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    QVERIFY(qAbs(north->northRotation()) < 0.02F);

    const Section* const east = m_scene->section(nullptr, nullptr, {}, {{0.0F, 0.0F, 0.0F}, {-10.0F, 0.0F, 0.0F}});
    QVERIFY(qAbs(east->northRotation() - 90.0F) < 0.02F);

    const Section* const west = m_scene->section(nullptr, nullptr, {}, {{0.0F, 0.0F, 0.0F}, {10.0F, 0.0F, 0.0F}});
    QVERIFY(qAbs(west->northRotation() + 90.0F) < 0.02F);
}

void tst_SectionCourse::aBendTurnsTheCourseAndBindsIt()
{
    Section* const section = m_scene->section(nodeAt({0.0F, 5.0F, 0.0F}), nullptr, {}, tenMetresNorth);
    section->setTransformFlags(TransformFlags::Observations);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->addBend(9.0F, 90.0F, 4.0F);

    QCOMPARE(section->pipe()->segmentCount(), 2);
    QVERIFY((endOf(section) - QVector3D(6.0F, 0.0F, 4.0F)).length() < 1e-2F);
    QCOMPARE(section->transformFlags(), int(TransformFlags::Manual));
    QCOMPARE(geometry.count(), 1);
    QTRY_VERIFY(storedShapeOf(section).toString().count(',') == 2);
}

void tst_SectionCourse::changingABendLeavesTheSource()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth, TransformFlags::Manual);
    section->addBend(9.0F, 90.0F, 4.0F);
    section->setTransformFlags(TransformFlags::PipeShape);

    section->modifyBend(3.0F, 90.0F, 4.0F);

    QVERIFY((endOf(section) - QVector3D(-6.0F, 0.0F, 4.0F)).length() < 1e-2F);
    QCOMPARE(section->transformFlags(), int(TransformFlags::PipeShape));
}

void tst_SectionCourse::removingABendStraightensTheCourse()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    section->addBend(9.0F, 90.0F, 4.0F);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->removeBend(4.0F);

    QVERIFY((endOf(section) - QVector3D(0.0F, 0.0F, 10.0F)).length() < 1e-2F);
    QCOMPARE(geometry.count(), 1);
}

void tst_SectionCourse::bendsAreLeftAloneInRealTime()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    const QString before = storedShapeOf(section).toString();
    GlobalNav::instance()->setRealTimeEnabled(true);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->addBend(9.0F, 90.0F, 4.0F);
    section->modifyBend(9.0F, 90.0F, 4.0F);
    section->removeBend(4.0F);

    QCOMPARE(section->pipe()->segmentCount(), 1);
    QCOMPARE(geometry.count(), 3);
    QCOMPARE(section->transformFlags(), int(TransformFlags::Geosensor));
    m_scene->waitForAWrite();
    QCOMPARE(storedShapeOf(section).toString(), before);
}

void tst_SectionCourse::theCounterStretchesThePipe()
{
    Section* const section = m_scene->section(nullptr, nullptr);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->onDistanceCounterChanged(2.5);

    QCOMPARE(float(section->length()), 2.5F);
    QCOMPARE(geometry.count(), 1);
    section->onDistanceCounterChanged(1.0);
    QCOMPARE(float(section->length()), 2.5F);
    VERIFY_NEAR(section->crawlerTransformMatrix().column(3).toVector3D(),
                section->pipeTransMatrixAtDistance(1.01F).column(3).toVector3D());
}

void tst_SectionCourse::theCounterOnlyMovesTheCrawlerInRealTime()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    GlobalNav::instance()->setRealTimeEnabled(true);

    section->onDistanceCounterChanged(12.0);

    QCOMPARE(float(section->length()), 10.0F);
    QCOMPARE(section->inspection()->currDist(), 12.0F);
}

void tst_SectionCourse::realTimeMakesAGeosensorOfTheSection()
{
    Section* const section = m_scene->section(nullptr, nullptr);

    GlobalNav::instance()->setRealTimeEnabled(true);
    QCOMPARE(section->transformFlags(), int(TransformFlags::Geosensor));

    section->setTransformFlags(TransformFlags::Manual);
    GlobalNav::instance()->setRealTimeEnabled(false);
    QCOMPARE(section->transformFlags(), int(TransformFlags::Geosensor));
}

void tst_SectionCourse::theCommandsTakePointsWhileItIsRealTime()
{
    const Section* const section = m_scene->section(nullptr, nullptr);
    QVERIFY(!section->inspection()->realTime);

    GlobalNav::instance()->setRealTimeEnabled(true);
    QVERIFY(section->inspection()->realTime);
    const Section* const later = m_scene->section(nullptr, nullptr);
    QVERIFY(later->inspection()->realTime);

    GlobalNav::instance()->setRealTimeEnabled(false);
    QVERIFY(!section->inspection()->realTime);
    QVERIFY(!later->inspection()->realTime);
}

void tst_SectionCourse::theArrowIsNeededByAShortPipeAtARealNode()
{
    Section* const section = m_scene->section(nodeAt({0.0F, 5.0F, 0.0F}), nullptr);
    QVERIFY(section->needsDirectionArrow());
    QVERIFY(section->hasDirectionArrow());
    section->onDistanceCounterChanged(0.09);
    QVERIFY(section->needsDirectionArrow());
    section->onDistanceCounterChanged(0.1);
    QVERIFY(!section->needsDirectionArrow());

    Section* const loose = m_scene->section(nullptr, nullptr);
    QVERIFY(!loose->needsDirectionArrow());
    QVERIFY(!loose->hasDirectionArrow());

    Section* const lateral = m_scene->lateral(nodeAt({}), nullptr, 1);
    QVERIFY(!lateral->hasDirectionArrow());
}

void tst_SectionCourse::theArrowIsMadeWhenItIsShown()
{
    Section* const section = m_scene->section(nodeAt({0.0F, 5.0F, 0.0F}), nullptr);
    section->hideDirectionArrow();
    QVERIFY(section->findChildren<Qt3DRender::QMesh*>().isEmpty());

    section->showDirectionArrow();
    section->showDirectionArrow();

    const auto meshes = section->findChildren<Qt3DRender::QMesh*>();
    QCOMPARE(meshes.size(), 1);
    QCOMPARE(meshes.first()->source(), QUrl("qrc:/models/dirArrow.obj"));
    const auto* const arrow = qobject_cast<Qt3DCore::QEntity*>(meshes.first()->parentNode());
    QVERIFY(arrow->components().contains(m_scene->root->materialSelected()));
    const auto place = arrow->componentsOfType<Qt3DCore::QTransform>().first();
    QCOMPARE(place->scale(), 1.5F);
    VERIFY_NEAR(place->matrix() * QVector3D(0.0F, 0.0F, -1.0F), QVector3D(0.0F, 0.0F, 1.5F));
    QVERIFY(section->isDirectionArrowShown());
    section->hideDirectionArrow();
    QVERIFY(!section->isDirectionArrowShown());

    Section* const loose = m_scene->section(nullptr, nullptr);
    loose->showDirectionArrow();
    QVERIFY(!loose->isDirectionArrowShown());
}

void tst_SectionCourse::theArrowGoesWhenThePipeHasGrown()
{
    Section* const section = m_scene->section(nodeAt({0.0F, 5.0F, 0.0F}), nullptr);
    section->showDirectionArrow();

    section->onDistanceCounterChanged(0.05);
    QVERIFY(section->isDirectionArrowShown());
    section->onDistanceCounterChanged(0.5);
    QVERIFY(!section->isDirectionArrowShown());
}

void tst_SectionCourse::anotherStartNodeHidesTheArrow()
{
    Section* const section = m_scene->section(nodeAt({0.0F, 5.0F, 0.0F}), nullptr);
    section->showDirectionArrow();

    section->setStartNode(nodeAt({3.0F, 5.0F, 0.0F}), false);

    QVERIFY(!section->isDirectionArrowShown());
}

void tst_SectionCourse::selectionColoursTheMainPipe()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);

    section->setSelectedMaterial();
    QCOMPARE(section->pipe()->appearance().colors, (QVector<QColor> {QColor(60, 60, 255)}));

    section->setDefaultMaterial();
    QCOMPARE(section->pipe()->appearance().colors, (QVector<QColor> {QColor(60, 255, 60)}));
}

void tst_SectionCourse::aDragIsStoredOnce()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    const QSignalSpy finished(section, &Section::editingFinished);

    section->move({1.0F, 0.0F, 0.0F}, TransformFlags::Manual);
    section->move({1.0F, 0.0F, 0.0F}, TransformFlags::Manual);

    // Stored against the flow, with the flags and the direction on the first stored point.
    QTRY_COMPARE(storedShapeOf(section).toString(), QStringLiteral("LINESTRING ZM(-2 10 0 260,-2 0 0 0)"));
    QCOMPARE(finished.count(), 1);
}

void tst_SectionCourse::aShapeSurvivesAReopen()
{
    QString id;
    {
        Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
        id = section->getInspectionObjectId();
        section->addBend(9.0F, 90.0F, 4.0F);
        QTRY_VERIFY(storedShapeOf(section).toString().count(',') == 2);
        delete section;
    }
    m_scene->project().reopen();
    m_scene->project().activate();
    NetworkScene::tieToEarth();
    const auto inspection =
        m_scene->project().project()->lookupObject(id).staticCast<Torvik::Database::CPipeInspectionObject>();

    const Section* const section = m_scene->section(inspection);

    const auto course = section->getShapePoints().first();
    QCOMPARE(course.size(), 3);
    QVERIFY((course.at(1) - QVector3D(0.0F, 0.0F, 4.0F)).length() < 1e-2F);
    QVERIFY((course.at(2) - QVector3D(6.0F, 0.0F, 4.0F)).length() < 1e-2F);
    QCOMPARE(section->transformFlags(), int(TransformFlags::Manual));
}

void tst_SectionCourse::nothingIsStoredInRealTime()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    const QString before = storedShapeOf(section).toString();
    GlobalNav::instance()->setRealTimeEnabled(true);
    QSignalSpy finished(section, &Section::editingFinished);

    section->move({1.0F, 0.0F, 0.0F}, TransformFlags::Manual);
    QVERIFY(finished.wait());
    m_scene->waitForAWrite();

    QCOMPARE(storedShapeOf(section).toString(), before);
}

void tst_SectionCourse::losingThePositionClearsTheShape()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);

    section->setTransformFlags(0);

    QTRY_VERIFY(storedShapeOf(section).isNull());
}

void tst_SectionCourse::whatDoesNothing()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->clicked(nullptr);
    section->saveToSecMes();

    QCOMPARE(geometry.count(), 0);
    const QPointer<Section> alive = section;
    section->deleteAndSave();
    QVERIFY(alive);
    QTRY_VERIFY(!alive);
}

QTEST_MAIN(tst_SectionCourse)
#include "tst_SectionCourse.moc"
