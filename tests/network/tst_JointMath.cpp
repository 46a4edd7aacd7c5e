#include "network/JointMath.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QVector3D forward(0, 0, 1);

bool near(const QVector3D& a, const QVector3D& b)
{
    return (a - b).length() < 1e-4F;
}

} // namespace

/** How a lateral joins a pipe. */
class tst_JointMath : public QObject {
    Q_OBJECT

private slots:
    void aJointPointsWhereItsClockAndAngleSay_data()
    {
        QTest::addColumn<int>("clock");
        QTest::addColumn<float>("angle");
        QTest::addColumn<QVector3D>("direction");
        QTest::newRow("12 at right angles: up") << 12 << 90.0F << QVector3D(0, 1, 0);
        QTest::newRow("0 is 12") << 0 << 90.0F << QVector3D(0, 1, 0);
        QTest::newRow("3: to -x") << 3 << 90.0F << QVector3D(-1, 0, 0);
        QTest::newRow("6: down") << 6 << 90.0F << QVector3D(0, -1, 0);
        QTest::newRow("9: to +x") << 9 << 90.0F << QVector3D(1, 0, 0);
        QTest::newRow("180: along the pipe") << 3 << 180.0F << QVector3D(0, 0, 1);
        QTest::newRow("0: back to the start") << 3 << 0.0F << QVector3D(0, 0, -1);
        QTest::newRow("135: half forward") << 12 << 135.0F << QVector3D(0, std::sqrt(0.5F), std::sqrt(0.5F));
    }

    void aJointPointsWhereItsClockAndAngleSay()
    {
        QFETCH(int, clock);
        QFETCH(float, angle);
        QFETCH(QVector3D, direction);
        QVERIFY(near(JointMath::jointRotation(clock, angle).rotatedVector(forward), direction));
    }

    void aStubIsThinnerThanItsPipeAndNeverTooThin()
    {
        QCOMPARE(JointMath::stubRadius(150.0F), 0.065F);
        QCOMPARE(JointMath::stubRadius(50.0F), 0.04F);
        QCOMPARE(JointMath::stubRadius(0.05F), 0.04F);
    }

    void aSphereHidesTheStubsEnd()
    {
        QCOMPARE(JointMath::sphereRadius(150.0F), 0.0754F);
        QCOMPARE(JointMath::sphereRadius(50.0F), 0.0464F);
    }

    void aReachEndsAtItsTarget_data()
    {
        QTest::addColumn<QQuaternion>("world");
        QTest::addColumn<QQuaternion>("parent");
        const auto turned = QQuaternion::fromAxisAndAngle(0, 1, 0, 30);
        QTest::newRow("straight") << QQuaternion() << QQuaternion();
        QTest::newRow("in a turned section") << turned << QQuaternion();
        QTest::newRow("behind a bend") << QQuaternion() << turned;
        QTest::newRow("behind a bend in a tilted section") << QQuaternion::fromAxisAndAngle(1, 0, 0, 50) << turned;
    }

    void aReachEndsAtItsTarget()
    {
        QFETCH(QQuaternion, world);
        QFETCH(QQuaternion, parent);
        const QVector3D begin(10, 2, 5);
        const QVector3D target(13, 2, 9);
        const auto reach = JointMath::reach(begin, target, world, parent);
        QCOMPARE(reach.length, 5.0F);
        const QVector3D end = begin + (world * parent * reach.rotation).rotatedVector(forward) * reach.length;
        QVERIFY(near(end, target));
    }

    void aStretchEndsAbreastOfTheNodeAtThePipesHeight()
    {
        float length = 0.0F;
        QVERIFY(JointMath::lengthAbreastOf({0, 5, 0}, {0, 5, 10}, {3, 80, 14}, length));
        QCOMPARE(length, 14.0F);
    }

    void aNodeBehindTheBeginGivesANegativeLength()
    {
        float length = 0.0F;
        QVERIFY(JointMath::lengthAbreastOf({0, 5, 0}, {0, 5, 10}, {0, 5, -4}, length));
        QCOMPARE(length, -4.0F);
    }

    void aSegmentWithoutLengthCannotBeStretched()
    {
        float length = 7.0F;
        QVERIFY(!JointMath::lengthAbreastOf({1, 2, 3}, {1, 2, 3}, {9, 9, 9}, length));
        QCOMPARE(length, 7.0F);
    }

    void theOffsetIsWhatIsLeftOfThePipesTurn()
    {
        QMatrix4x4 joint;
        joint.translate(4, 5, 6);
        joint.rotate(40, 0, 1, 0);
        QMatrix4x4 pipe = joint;
        pipe.translate(0, 0, 3);
        pipe.rotate(25, 0, 1, 0);
        const QQuaternion offset = JointMath::offsetFromJoint(joint, pipe);
        QVERIFY(near(offset.rotatedVector(forward), QQuaternion::fromAxisAndAngle(0, 1, 0, 25).rotatedVector(forward)));
    }
};

QTEST_APPLESS_MAIN(tst_JointMath)
#include "tst_JointMath.moc"
