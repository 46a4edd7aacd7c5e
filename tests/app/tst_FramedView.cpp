#include "host/app/FramedView.h"
#include "host/app/SceneSnapshot.h"

#include <QLineF>
#include <QtTest>

#include <cmath>

using namespace Torvik::Viewer;

Q_DECLARE_METATYPE(Torvik::Viewer::CameraPose)
Q_DECLARE_METATYPE(QMarginsF)

namespace {

const QSizeF screen(800, 600);
const QRectF clear(80, 70, 600, 480);

QVector<FramedPoint> town(const QMarginsF& name = {})
{
    QVector<FramedPoint> points;
    for (const float x : {-400.0F, 350.0F}) {
        for (const float y : {-6.0F, 11.0F}) {
            for (const float z : {120.0F, 900.0F})
                points.append({{x, y, z}, 0.0F, name});
        }
    }
    return points;
}

QRectF picture(const QVector<FramedPoint>& points, const CameraPose& pose)
{
    QRectF all;
    for (const FramedPoint& framed : points) {
        const QPointF pixel = pixelOf(pose, framed.point, screen);
        const QRectF place = QRectF(pixel, QSizeF(1e-6, 1e-6)).marginsAdded(framed.name);
        all = all.isNull() ? place : all | place;
    }
    return all;
}

} // namespace

/** The pose that brings a network into the part of the view that no control covers. */
class tst_FramedView : public QObject {
    Q_OBJECT

private slots:
    void allPointsLieInTheClearPartAndFillIt_data()
    {
        QTest::addColumn<CameraPose>("direction");
        QTest::addColumn<QMarginsF>("name");
        const QMarginsF name(30, 51, 40, 10);
        for (const auto& margins : {QMarginsF(), name}) {
            const char* with = margins.isNull() ? "" : ", named";
            QTest::addRow("top%s", with) << standardPose(StandardView::Top, {}, 1) << margins;
            QTest::addRow("3d%s", with) << standardPose(StandardView::Perspective, {}, 1) << margins;
            QTest::addRow("front%s", with) << standardPose(StandardView::Front, {}, 1) << margins;
            QTest::addRow("askew%s", with) << CameraPose {{300, 500, -200}, {0, 0, 0}, {0, 1, 0}} << margins;
        }
    }

    void allPointsLieInTheClearPartAndFillIt()
    {
        QFETCH(CameraPose, direction);
        QFETCH(QMarginsF, name);

        const CameraPose pose = framedPose(town(name), direction, screen, clear, closestFit);

        const QRectF seen = picture(town(name), pose);
        QVERIFY2(clear.marginsAdded({0.6, 0.6, 0.6, 0.6}).contains(seen),
                 qPrintable(QString("%1 %2 %3 %4").arg(seen.x()).arg(seen.y()).arg(seen.right()).arg(seen.bottom())));
        QVERIFY2(seen.width() > 0.98 * clear.width() || seen.height() > 0.98 * clear.height(),
                 qPrintable(QString("%1 x %2").arg(seen.width()).arg(seen.height())));
        const QVector3D before = (direction.position - direction.center).normalized();
        QVERIFY((before - (pose.position - pose.center).normalized()).length() < 1e-4F);
    }

    void thePointLookedAtStaysOnTheHeightOfTheTown()
    {
        for (const StandardView view : {StandardView::Top, StandardView::Perspective}) {
            const CameraPose pose = framedPose(town(), standardPose(view, {}, 1), screen, clear, closestFit);
            QVERIFY(std::abs(pose.center.y() - 2.5F) < 0.01F);
        }
    }

    void aSinglePointIsNotSeenFromNearby()
    {
        const CameraPose pose =
            framedPose({{{5, 2, 7}, 0.5F, {}}}, standardPose(StandardView::Top, {}, 1), screen, clear, closestFit);

        QVERIFY(std::abs(double((pose.position - pose.center).length()) - closestFit) < 0.01);
        QVERIFY(QLineF(pixelOf(pose, {5, 2, 7}, screen), clear.center()).length() < 0.5);
    }

    void withoutPointsNothingChanges()
    {
        const CameraPose pose = framedPose({}, {{1, 2, 3}, {4, 5, 6}, {0, 1, 0}}, screen, clear, closestFit);
        QCOMPARE(pose.position, QVector3D(1, 2, 3));
        QCOMPARE(pose.center, QVector3D(4, 5, 6));
    }

    void whatIsClearDependsOnTheShape()
    {
        const QRectF area(0, 0, 800, 600);
        const QRectF bar(0, 0, 700, 40);
        const QRectF column(700, 0, 100, 600);
        QCOMPARE(clearPart(area, {}, 1), area.marginsRemoved({6, 6, 6, 6}));
        QCOMPARE(clearPart(area, {bar, column}, 1), QRectF(QPointF(6, 46), QPointF(694, 594)));
        // Beside a box in the corner there is room for what is wide, or for what is high.
        const QRectF corner(0, 0, 300, 250);
        QCOMPARE(clearPart(area, {corner}, 3), QRectF(QPointF(6, 256), QPointF(794, 594)));
        QCOMPARE(clearPart(area, {corner}, 0.3), QRectF(QPointF(306, 6), QPointF(794, 594)));
    }

    void aCoveredAreaIsTakenAsItIs()
    {
        const QRectF area(0, 0, 100, 100);
        QCOMPARE(clearPart(area, {area}, 1), area);
    }

    void namesTakeTheirRoom()
    {
        SceneSnapshot scene;
        SceneSnapshot::Node node;
        node.key = "MH12";
        node.visible = true;
        node.depth = 2;
        scene.nodes << node;
        node.visible = false;
        scene.nodes << node;
        SceneSnapshot::Section stub;
        stub.points = {{0, 0, 0}, {0.01F, 0, 0}};
        stub.length = 0.01;
        scene.sections << stub;

        const auto named = framedPointsOf(scene, {true, false});
        QCOMPARE(named.size(), 2);
        QVERIFY(named[0].name.top() >= 51 && named[0].name.left() >= 25);
        QVERIFY(named[1].name.isNull());
        QVERIFY(framedPointsOf(scene, {false, false})[0].name.isNull());
        QVERIFY(framedPointsOf(scene, {true, true})[0].name.left() > named[0].name.left());
    }
};

QTEST_GUILESS_MAIN(tst_FramedView)
#include "tst_FramedView.moc"
