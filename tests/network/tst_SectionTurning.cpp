#include "NetworkScene.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QVector<QVector3D> tenMetresNorth {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}};

QVector3D endOf(const Section* section)
{
    return section->pipeTransMatrixAtDistance(float(section->length())).column(3).toVector3D();
}

} // namespace

/** How a section is turned, and what it tells of its direction; from QML as well. */
class tst_SectionTurning : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theFirstSegmentTellsTheDirection();
    void turningToATargetKeepsThePipeUpright();
    void turningToATargetBearsTheUpOfTheFirstSegment();
    void theSourceOfATurnIsKeptUnlessItIsGiven();
    void turningToAnInclinationLetsTheStartFall();
    void aNewSectionDoesNotTurnToAnUnstoredPlace();
    void aSectionAtAVirtualNodeDoesNotTurn();
    void qmlReachesTheOperations_data();
    void qmlReachesTheOperations();
    void nodesAreConstantForQml();

private:
    std::unique_ptr<NetworkScene> m_scene;
};

void tst_SectionTurning::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_SectionTurning::cleanup()
{
    m_scene.reset();
}

void tst_SectionTurning::theFirstSegmentTellsTheDirection()
{
    const Section* const section = m_scene->section(
        nullptr, nullptr, {}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 4.0F}, {6.0F, -3.0F, 4.0F}, {6.0F, -3.0F, -9.0F}});

    VERIFY_NEAR(section->direction(), QVector3D(0.0F, 0.0F, -1.0F));
    QVERIFY(qAbs(section->northRotation()) < 0.02F);
    QVERIFY(qAbs(section->inclination()) < 0.02F);
}

void tst_SectionTurning::turningToATargetKeepsThePipeUpright()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, {{1.0F, 2.0F, 3.0F}, {1.0F, 2.0F, 13.0F}});
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->rotateToTarget({31.0F, 2.0F, 3.0F}, TransformFlags::GPS);

    VERIFY_NEAR(section->position(), QVector3D(1.0F, 2.0F, 3.0F));
    VERIFY_NEAR(endOf(section), QVector3D(11.0F, 2.0F, 3.0F));
    VERIFY_NEAR(section->rotation().rotatedVector({0.0F, 1.0F, 0.0F}), QVector3D(0.0F, 1.0F, 0.0F));
    QCOMPARE(section->transformFlags(), int(TransformFlags::GPS));
    QCOMPARE(geometry.count(), 1);
}

void tst_SectionTurning::turningToATargetBearsTheUpOfTheFirstSegment()
{
    // A shaft has no up of the world's: its own is level.
    Section* const section = m_scene->section(nullptr, nullptr, {}, {{0.0F, 0.0F, 0.0F}, {0.0F, -10.0F, 0.0F}});

    section->rotateToTarget({0.0F, 0.0F, 20.0F}, 0);

    VERIFY_NEAR(endOf(section), QVector3D(0.0F, 0.0F, 10.0F));
    VERIFY_NEAR(section->rotation().rotatedVector({0.0F, 1.0F, 0.0F}), QVector3D(1.0F, 0.0F, 0.0F));
}

void tst_SectionTurning::theSourceOfATurnIsKeptUnlessItIsGiven()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth, TransformFlags::CAD);

    section->rotateToTarget({30.0F, 0.0F, 0.0F}, 0);
    section->rotateToPointDirection({-30.0F, 0.0F, 0.0F});
    section->rotateToTargetAngleY(45.0F);
    section->rotateToTargetInclination(10.0F);
    QCOMPARE(section->transformFlags(), int(TransformFlags::CAD));

    section->rotateToTargetInclination(5.0F, TransformFlags::GPS);
    QCOMPARE(section->transformFlags(), int(TransformFlags::GPS));
    section->rotateToTargetAngleY(90.0F, TransformFlags::PipeShape);
    QCOMPARE(section->transformFlags(), int(TransformFlags::PipeShape));
}

void tst_SectionTurning::turningToAnInclinationLetsTheStartFall()
{
    Section* const section = m_scene->section(nullptr, nullptr, {}, tenMetresNorth);

    section->rotateToTargetInclination(30.0F);

    QVERIFY((endOf(section) - QVector3D(0.0F, -5.0F, 8.660254F)).length() < 1e-3F);
    QVERIFY(qAbs(section->inclination() + 30.0F) < 0.05F);
}

void tst_SectionTurning::aNewSectionDoesNotTurnToAnUnstoredPlace()
{
    Node* const start = m_scene->nodeAt({0.0F, 5.0F, 0.0F});
    Node* const end = m_scene->node("U");
    end->setPosition({30.0F, 5.0F, 0.0F}, TransformFlags::Manual);

    Section* const section = m_scene->section(start, end);
    VERIFY_NEAR(section->direction(), QVector3D(0.0F, 0.0F, -1.0F));

    section->rotateToEndNodeDirection();
    VERIFY_NEAR(section->direction(), QVector3D(-1.0F, 0.0F, 0.0F));
}

void tst_SectionTurning::aSectionAtAVirtualNodeDoesNotTurn()
{
    Section* const withoutStart = m_scene->section(nullptr, m_scene->nodeAt({30.0F, 5.0F, 0.0F}));
    withoutStart->rotateToEndNodeDirection();
    VERIFY_NEAR(withoutStart->direction(), QVector3D(0.0F, 0.0F, -1.0F));

    Section* const withoutEnd = m_scene->section(m_scene->nodeAt({0.0F, 5.0F, 0.0F}), nullptr);
    withoutEnd->endNode()->move({30.0F, 0.0F, 0.0F}, TransformFlags::Manual);
    QVERIFY(withoutEnd->endNode()->transform()->positionBound());
    withoutEnd->rotateToEndNodeDirection();
    VERIFY_NEAR(withoutEnd->direction(), QVector3D(0.0F, 0.0F, -1.0F));
}

void tst_SectionTurning::qmlReachesTheOperations_data()
{
    QTest::addColumn<QByteArray>("signature");
    for (const char* const signature :
         {"rotateToTargetInclination(float,int)", "rotateToTargetInclination(float)", "rotateToTargetAngleY(float,int)",
          "rotateToTargetAngleY(float)", "rotateToPointDirection(QVector3D,int)", "rotateToPointDirection(QVector3D)",
          "northRotation()", "inclination()", "direction()", "showDirectionArrow()", "hideDirectionArrow()",
          "needsDirectionArrow()", "connectToEnd()", "onDistanceCounterChanged(double)"})
        QTest::newRow(signature) << QByteArray(signature);
}

void tst_SectionTurning::qmlReachesTheOperations()
{
    QFETCH(QByteArray, signature);

    QVERIFY(Section::staticMetaObject.indexOfMethod(signature.constData()) >= 0);
}

void tst_SectionTurning::nodesAreConstantForQml()
{
    const QMetaObject& meta = Section::staticMetaObject;
    QVERIFY(meta.property(meta.indexOfProperty("startNode")).isConstant());
    QVERIFY(meta.property(meta.indexOfProperty("endNode")).isConstant());
}

QTEST_MAIN(tst_SectionTurning)
#include "tst_SectionTurning.moc"
