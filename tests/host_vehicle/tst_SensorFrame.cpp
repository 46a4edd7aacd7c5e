#include "host/vehicle/SensorFrame.h"

#include <QtTest>

using namespace Torvik::Vehicle;
using Position = Torvik::View3d::Vector3D<double>;

namespace {

/** As the view takes a position of the sensor over into the chain. */
QVector3D inChain(const Position& position)
{
    return {float(position.x()), float(position.z()), float(-position.y())};
}

} // namespace

class tst_SensorFrame : public QObject {
    Q_OBJECT

private slots:
    void thePipesBeginIsItsOrigin();
    void eastNorthAndUpAreTheScenes();
    void aPipeThatWasMovedAndTurnedIsMeasuredWhereItLies();
};

void tst_SensorFrame::thePipesBeginIsItsOrigin()
{
    const SensorFrame frame({7, 2, -3}, {});

    QCOMPARE(inChain(frame.positionOf({})), QVector3D(7, 2, -3));
}

void tst_SensorFrame::eastNorthAndUpAreTheScenes()
{
    const SensorFrame frame({0, 0, 0}, {});

    // x west, y up, z north
    QCOMPARE(inChain(frame.positionOf({1, 0, 0})), QVector3D(-1, 0, 0));
    QCOMPARE(inChain(frame.positionOf({0, 1, 0})), QVector3D(0, 0, 1));
    QCOMPARE(inChain(frame.positionOf({0, 0, 1})), QVector3D(0, 1, 0));
}

void tst_SensorFrame::aPipeThatWasMovedAndTurnedIsMeasuredWhereItLies()
{
    QMatrix4x4 chainToScene;
    chainToScene.translate(100, -5, 20);
    chainToScene.rotate(90, 0, 1, 0);
    const QVector3D begin(1, 2, 3);
    const SensorFrame frame(begin, chainToScene);

    const QVector3D inScene = chainToScene.map(inChain(frame.positionOf({4, 5, 6})));

    const QVector3D expected = chainToScene.map(begin) + QVector3D(-4, 6, 5);
    QVERIFY((inScene - expected).length() < 1e-4F);
}

QTEST_APPLESS_MAIN(tst_SensorFrame)
#include "tst_SensorFrame.moc"
