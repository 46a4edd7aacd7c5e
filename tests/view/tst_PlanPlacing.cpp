#include "view/PlanTest.h"

using namespace Torvik::View3d;
using Kx::Test::PlanTest;
using Kx::Test::QmlWarnings;

/** Placing a plan by pointing at it, in the application's window. */
class tst_PlanPlacing : public PlanTest {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        begin();
        openBar();
        lay(picture("site a.png"), false);
    }
    void cleanup() { nothingIsOpen(); }
    void cleanupTestCase() { end(); }

    void twoLinesPlaceIt();
    void aLineAndItsLengthScaleIt();
    void aLengthOfNothingChangesNothing();
    void twoPointsTurnItNorth();
    void placingIsCancelledAndTakenBackAStep();
    void lockedItMovesWithTheView();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list().join("\n"), QString()); }

private:
    /** A place of the scene with no object near, by parts of its width and height. */
    QPointF at(double across, double down) const
    {
        return {m_screen->scene()->width() * across, m_screen->scene()->height() * down};
    }
    QVector3D ground(QPointF pixel) const
    {
        return m_screen->groundAt(m_screen->inWindow(pixel) - m_screen->scene()->mapToScene({0, 0}));
    }
    /** Taps there and gives the place on the ground, as the scene is now: it grows while lines are tapped. */
    QVector3D tapAt(double across, double down)
    {
        const QPointF pixel = at(across, down);
        const QVector3D place = ground(pixel);
        m_screen->tap(pixel);
        return place;
    }
    void press(const QString& button)
    {
        m_screen->click(button);
        m_screen->waitFrames(4);
    }
    /** What a tap that is off by a pixel makes. */
    float pixel() const { return (ground(at(0.5, 0.5)) - ground(at(0.5, 0.5) + QPointF(2, 2))).length(); }
    /** Where a point that lay there when `before` was the plan's matrix lies now. */
    static QVector3D moved(const QMatrix4x4& before, QVector3D point)
    {
        const float y = before(1, 3);
        point.setY(y);
        QVector3D now = (plan()->transformMatrix() * before.inverted()).map(point);
        now.setY(0.0F);
        return now;
    }
    static bool near(const QVector3D& a, const QVector3D& b, float tolerance)
    {
        if ((a - b).length() <= tolerance)
            return true;
        qWarning() << a << "is not near" << b;
        return false;
    }
    void compareMatrices(const QMatrix4x4& now, const QMatrix4x4& before)
    {
        for (int i = 0; i < 16; ++i)
            QVERIFY2(qAbs(now.constData()[i] - before.constData()[i]) < 2e-3F, qPrintable(QString::number(i)));
    }
};

void tst_PlanPlacing::twoLinesPlaceIt()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    press("planTwoLinesButton");
    QVERIFY(m_screen->text("planStepText").startsWith("Step 1"));
    QVERIFY(!m_screen->enabled("planNextButton"));
    const QVector3D a = tapAt(0.25, 0.35);
    const QVector3D b = tapAt(0.4, 0.4);
    QVERIFY(m_screen->text("planStepText").startsWith("Step 2"));
    m_screen->click("planNextButton");
    QVERIFY(m_screen->text("planStepText").startsWith("Step 3"));
    const QVector3D c = tapAt(0.35, 0.7);
    const QVector3D d = tapAt(0.6, 0.65);
    m_screen->keep("plan-placing");
    m_screen->click("planNextButton");
    m_screen->waitFrames(2);

    QVERIFY(!m_screen->visible("planStepText"));
    QVERIFY(near(moved(before, a), c, pixel()));
    QVERIFY(near(moved(before, b), d, 2 * pixel()));
    QCOMPARE(plan()->transformMatrix()(1, 3), before(1, 3));
    m_screen->keep("plan-placed");
}

void tst_PlanPlacing::aLineAndItsLengthScaleIt()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    press("planLengthButton");
    const QVector3D from = tapAt(0.3, 0.4);
    const QVector3D to = tapAt(0.45, 0.35);
    m_screen->click("planNextButton");
    m_screen->waitFrames(2);
    QVERIFY(m_screen->visible("inputScreen"));
    m_screen->item("inputField0Input")->setProperty("text", "12.5");
    m_screen->click("acceptButton");
    m_screen->waitFrames(2);

    const QVector3D start = moved(before, from);
    QVERIFY(near(start, from, pixel()));
    const float length = (moved(before, to) - start).length();
    QVERIFY2(qAbs(length - 12.5F) < 2 * pixel(), qPrintable(QString::number(double(length))));
}

void tst_PlanPlacing::aLengthOfNothingChangesNothing()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    press("planLengthButton");
    tapAt(0.3, 0.4);
    tapAt(0.45, 0.35);
    m_screen->click("planNextButton");
    m_screen->waitFrames(2);
    m_screen->click("acceptButton");

    QVERIFY(answer().contains("greater than zero"));
    compareMatrices(plan()->transformMatrix(), before);
}

void tst_PlanPlacing::twoPointsTurnItNorth()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    press("planNorthButton");
    const QVector3D south = tapAt(0.3, 0.4);
    QVERIFY(m_screen->text("planStepText").startsWith("Step 2"));
    const QVector3D north = tapAt(0.45, 0.3);
    QVERIFY(m_screen->text("planStepText").startsWith("Step 3"));
    m_screen->click("planNextButton");
    m_screen->waitFrames(2);

    const QVector3D start = moved(before, south);
    const QVector3D direction = (moved(before, north) - start).normalized();
    QVERIFY(near(start, south, pixel()));
    QVERIFY(near(direction, {0.0F, 0.0F, 1.0F}, 0.02F));
}

void tst_PlanPlacing::placingIsCancelledAndTakenBackAStep()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    press("planNorthButton");
    tapAt(0.3, 0.4);
    m_screen->click("planBackButton");
    QVERIFY(m_screen->text("planStepText").startsWith("Step 1"));
    QVERIFY(!m_screen->enabled("planBackButton"));
    tapAt(0.4, 0.4);
    m_screen->click("planCancelButton");
    m_screen->waitFrames(2);

    QVERIFY(!m_screen->visible("planStepText"));
    compareMatrices(plan()->transformMatrix(), before);
    m_screen->click("planNorthButton");
    m_screen->click("planButton");
    m_screen->click("planButton");
    m_screen->waitFrames(2);
    QVERIFY(!m_screen->visible("planStepText"));
}

void tst_PlanPlacing::lockedItMovesWithTheView()
{
    const QVector3D place = plan()->transform()->translation();
    const QVector3D centre = m_screen->camera()->viewCenter();

    m_screen->click("planLockButton");
    QVERIFY(m_screen->checked("planLockButton"));
    m_screen->drag(at(0.3, 0.6), at(0.4, 0.5));
    m_screen->waitFrames(5);
    const QVector3D way = m_screen->camera()->viewCenter() - centre;
    const QVector3D there = plan()->transform()->translation();
    m_screen->click("planLockButton");
    m_screen->drag(at(0.4, 0.5), at(0.3, 0.6));
    m_screen->waitFrames(5);

    QVERIFY(way.length() > 1.0F);
    QVERIFY(near(there, place + way, 0.05F));
    QVERIFY(near(plan()->transform()->translation(), there, 0.01F));
    QVERIFY(!m_screen->checked("planLockButton"));
}

KX_SCENE_TEST_MAIN(tst_PlanPlacing)
#include "tst_PlanPlacing.moc"
