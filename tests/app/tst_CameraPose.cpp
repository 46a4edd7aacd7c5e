#include "host/app/CameraPose.h"

#include <QMatrix4x4>
#include <QtTest>

#include <cmath>

using namespace Torvik::Viewer;

Q_DECLARE_METATYPE(Torvik::Viewer::StandardView)

namespace {

/** Where a point lands in the picture, each coordinate -1 to 1 from edge to edge. */
QVector3D seen(const CameraPose& pose, const QVector3D& point, float aspect)
{
    QMatrix4x4 matrix;
    matrix.perspective(float(lensAngleDeg), aspect, 1.0f, 1e7f);
    matrix.lookAt(pose.position, pose.center, pose.up);
    return matrix.map(point);
}

Bounds town()
{
    Bounds bounds;
    bounds.add({-400, -6, 120});
    bounds.add({350, 11, 900});
    return bounds;
}

} // namespace

class tst_CameraPose : public QObject {
    Q_OBJECT

private slots:
    void boundsTakeInBalls();
    void fromTheTopNorthIsUpAndEastIsRight();
    void fromTheFrontHeightIsUpAndEastIsRight();
    void perspectiveLooksNorthAndDownAt45Degrees();
    void theDistanceIsThatToThePointLookedAt();
    void everyCornerIsInViewAndOneNearTheEdge_data();
    void everyCornerIsInViewAndOneNearTheEdge();
    void movingKeepsTheDirectionOfView();
    void anyDirectionFits();
    void aSinglePointIsSeenFromAfar();
    void nothingIsSeenFromTheUsualHeight();
    void closeByTheLensIsTheUsualOne();
    void farAwayTheRangeHoldsTheTownAndLittleElse();
    void aCameraInsideTheTownKeepsWhatIsNear();
};

void tst_CameraPose::boundsTakeInBalls()
{
    Bounds bounds;
    QVERIFY(bounds.isEmpty());

    bounds.add({1, 2, 3}, 0.5f);
    bounds.add({-1, 2, 3});

    QVERIFY(!bounds.isEmpty());
    QCOMPARE(bounds.lowest(), QVector3D(-1, 1.5f, 2.5f));
    QCOMPARE(bounds.highest(), QVector3D(1.5f, 2.5f, 3.5f));
    QCOMPARE(bounds.center(), QVector3D(0.25f, 2, 3));
}

void tst_CameraPose::fromTheTopNorthIsUpAndEastIsRight()
{
    const CameraPose pose = standardPose(StandardView::Top, {10, 2, 30}, 500);

    QVERIFY(seen(pose, {10, 2, 31}, 1).y() > 0);
    QVERIFY(seen(pose, {9, 2, 30}, 1).x() > 0);
}

void tst_CameraPose::fromTheFrontHeightIsUpAndEastIsRight()
{
    const CameraPose pose = standardPose(StandardView::Front, {10, 2, 30}, 500);

    QVERIFY(seen(pose, {10, 3, 30}, 1).y() > 0);
    QVERIFY(seen(pose, {9, 2, 30}, 1).x() > 0);
}

void tst_CameraPose::perspectiveLooksNorthAndDownAt45Degrees()
{
    const CameraPose pose = standardPose(StandardView::Perspective, {10, 2, 30}, 500);
    const QVector3D view = (pose.center - pose.position).normalized();

    QCOMPARE(view.x(), 0.0f);
    QVERIFY(qAbs(view.y() + std::sqrt(0.5f)) < 1e-6f);
    QVERIFY(qAbs(view.z() - std::sqrt(0.5f)) < 1e-6f);
    QVERIFY(qAbs(QVector3D::dotProduct(view, pose.up)) < 1e-6f);
}

void tst_CameraPose::theDistanceIsThatToThePointLookedAt()
{
    for (const auto view : {StandardView::Top, StandardView::Perspective, StandardView::Front}) {
        const CameraPose pose = standardPose(view, {10, 2, 30}, 350);

        QCOMPARE(pose.center, QVector3D(10, 2, 30));
        QVERIFY(qAbs((pose.center - pose.position).length() - 350.0f) < 1e-3f);
    }
}

void tst_CameraPose::everyCornerIsInViewAndOneNearTheEdge_data()
{
    QTest::addColumn<StandardView>("view");
    QTest::addColumn<double>("aspect");
    for (const double aspect : {0.5, 1.0, 1.6, 4.0}) {
        const QByteArray text = QByteArray::number(aspect);
        QTest::newRow(("top " + text).constData()) << StandardView::Top << aspect;
        QTest::newRow(("3d " + text).constData()) << StandardView::Perspective << aspect;
        QTest::newRow(("front " + text).constData()) << StandardView::Front << aspect;
    }
}

void tst_CameraPose::everyCornerIsInViewAndOneNearTheEdge()
{
    QFETCH(StandardView, view);
    QFETCH(double, aspect);
    const Bounds bounds = town();

    const CameraPose pose = fittingPose(bounds, view, aspect);

    float outermost = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const QVector3D point(corner & 1 ? bounds.lowest().x() : bounds.highest().x(),
                              corner & 2 ? bounds.lowest().y() : bounds.highest().y(),
                              corner & 4 ? bounds.lowest().z() : bounds.highest().z());
        const QVector3D at = seen(pose, point, float(aspect));
        outermost = std::max({outermost, std::abs(at.x()), std::abs(at.y())});
    }
    QVERIFY2(outermost < 1.0f, qPrintable(QString::number(double(outermost))));
    QVERIFY2(outermost > 0.9f, qPrintable(QString::number(double(outermost))));
}

void tst_CameraPose::movingKeepsTheDirectionOfView()
{
    const CameraPose before {{30, 40, 0}, {0, 0, 0}, {-0.8f, 0.6f, 0}};

    const CameraPose after = movedPose(before, {100, 0, 7}, 10);

    QCOMPARE(after.center, QVector3D(100, 0, 7));
    QCOMPARE(after.position, QVector3D(106, 8, 7));
    QCOMPARE(after.up, before.up);
}

void tst_CameraPose::anyDirectionFits()
{
    const Bounds bounds = town();
    const CameraPose askew {{300, 400, 500}, {0, 0, 0}, {0, 1, 0}};

    const CameraPose pose = movedPose(askew, bounds.center(), distanceToFit(bounds, askew, 1.3));

    float outermost = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const QVector3D point(corner & 1 ? bounds.lowest().x() : bounds.highest().x(),
                              corner & 2 ? bounds.lowest().y() : bounds.highest().y(),
                              corner & 4 ? bounds.lowest().z() : bounds.highest().z());
        const QVector3D at = seen(pose, point, 1.3f);
        outermost = std::max({outermost, std::abs(at.x()), std::abs(at.y())});
    }
    QVERIFY(outermost < 1.0f);
    QVERIFY(outermost > 0.9f);
}

void tst_CameraPose::aSinglePointIsSeenFromAfar()
{
    Bounds bounds;
    bounds.add({5, 5, 5});

    const CameraPose pose = fittingPose(bounds, StandardView::Top, 1.5);

    QCOMPARE(pose.position, QVector3D(5, 5 + float(closestFit), 5));
}

void tst_CameraPose::nothingIsSeenFromTheUsualHeight()
{
    QCOMPARE(fittingPose({}, StandardView::Top, 1.5).position, QVector3D(0, 350, 0));
}

void tst_CameraPose::closeByTheLensIsTheUsualOne()
{
    const LensRange range = lensRange(standardPose(StandardView::Top, {0, 0, 500}, 350), town());

    QCOMPARE(range.nearPlane, 1.0f);
    QCOMPARE(range.farPlane, 10000.0f);
}

void tst_CameraPose::farAwayTheRangeHoldsTheTownAndLittleElse()
{
    const Bounds bounds = town();
    const CameraPose pose = fittingPose(bounds, StandardView::Perspective, 1.5);
    const float distance = (pose.center - pose.position).length();

    const LensRange range = lensRange(pose, bounds);

    QVERIFY(distance > 10000.0f);
    QVERIFY(range.nearPlane > 0.4f * distance);
    QVERIFY(range.nearPlane < distance - bounds.radius());
    QVERIFY(range.farPlane > distance + bounds.radius());
    QVERIFY(range.farPlane < 2.0f * distance);
}

void tst_CameraPose::aCameraInsideTheTownKeepsWhatIsNear()
{
    Bounds city;
    city.add({-5000, -10, -5000});
    city.add({5000, 30, 5000});

    const LensRange range = lensRange(standardPose(StandardView::Perspective, {0, 0, 0}, 2000), city);

    QCOMPARE(range.nearPlane, 1.0f);
}

QTEST_APPLESS_MAIN(tst_CameraPose)
#include "tst_CameraPose.moc"
