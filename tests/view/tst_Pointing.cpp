#include "common/SceneTest.h"
#include "view/Finger.h"
#include "view/SceneWindow.h"

#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "network/Node.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::Finger;
using Kx::Test::SceneWindow;
using Kx::Test::TestProject;

/** Segments are pointed at in a running view, by a finger that does not always do what it should. */
class tst_Pointing : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void twoSegmentsByTaps();
    void northByTwoTaps();
    void aLengthIsAskedFor();
    void aTapOnAManholeIsAPointAndSelectsNothing();
    void aTapOnALabelIsAPointToo();
    void aPointThatIsDraggedCounts();
    void aSecondTapOnTheFirstPointIsNone();
    void theViewMovesBetweenTheTaps();
    void twoFingersMakeNoPoint();
    void aTapOnTheSkyMakesNoPoint();
    void tapsOnButtonsMakeNoPoint();
    void itIsEndedHalfWayAndBegunAgain();
    void splitViewLeavesThePointsOnTheirGround();
    void aProjectThatClosesMeanwhileDoesNoHarm();

private:
    QQuickItem* pointing() const { return m_view->area()->property("twoSectionInterface").value<QQuickItem*>(); }
    QString state() const { return pointing()->state(); }
    bool waitsForTheButton() const
    {
        QVariant enabled;
        QMetaObject::invokeMethod(pointing(), "ifNextStepButtonShouldBeEnabled", Q_RETURN_ARG(QVariant, enabled));
        return enabled.toBool();
    }
    void call(const char* function) const { QVERIFY(QMetaObject::invokeMethod(pointing(), function)); }
    void begin(int mode)
    {
        QVERIFY(QMetaObject::invokeMethod(m_view->area(), "toggleTwoSectionInterface", Q_ARG(QVariant, mode)));
        QVERIFY(pointing()->isEnabled());
        m_results = std::make_unique<QSignalSpy>(pointing(),
                                                 SIGNAL(resultPointsReady(QVector3D, QVector3D, QVector3D, QVector3D)));
        m_ends = std::make_unique<QSignalSpy>(pointing(), SIGNAL(finished()));
        QVERIFY(m_results->isValid() && m_ends->isValid());
    }
    QQuickItem* pointer(int number) const
    {
        return pointing()->findChild<QQuickItem*>(QStringLiteral("pointSetter%1").arg(number));
    }
    QPointF centreOf(const QQuickItem* item) const
    {
        return {item->x() + item->width() / 2, item->y() + item->height() / 2};
    }
    QVector3D ground(QPointF pixel) const
    {
        return Utils3d::pointScreenToWorldGround(float(pixel.x()), float(pixel.y()), m_view->camera(),
                                                 m_view->area()->width(), m_view->area()->height());
    }
    Node* node() const { return SceneEntities::instance().getNodes().value(m_node->id()); }
    QVector3D result(int number) const { return m_results->first().at(number).value<QVector3D>(); }
    static bool near(const QVector3D& a, const QVector3D& b, float tolerance = 0.02F)
    {
        if ((a - b).length() <= tolerance)
            return true;
        qWarning() << a << "is not near" << b;
        return false;
    }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<Finger> m_finger;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<QSignalSpy> m_results;
    std::unique_ptr<QSignalSpy> m_ends;
    CDomainObjectPointer m_node;
};

void tst_Pointing::initTestCase()
{
    m_view = std::make_unique<SceneWindow>();
    m_finger = std::make_unique<Finger>(*m_view);
}

void tst_Pointing::init()
{
    GlobalNav::instance()->setLabelsVisible(false);
    m_project = std::make_unique<TestProject>();
    m_node = m_project->addNode("MH-12", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    m_project->activate();
    QTRY_VERIFY(node());
    m_view->lookDown({0, 0, 0}, 300);
}

void tst_Pointing::cleanup()
{
    if (pointing()->isEnabled())
        call("finish");
    m_results.reset();
    m_ends.reset();
    m_view->area()->setProperty("controlsVisible", false);
    m_project.reset();
    m_view->frames(3);
}

void tst_Pointing::cleanupTestCase()
{
    m_finger.reset();
    m_view.reset();
}

void tst_Pointing::twoSegmentsByTaps()
{
    begin(1);
    const QVector<QPoint> taps {{150, 150}, {300, 150}, {500, 400}, {650, 500}};

    m_finger->tap(taps[0]);
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));
    m_finger->tap(taps[1]);
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));
    QVERIFY(waitsForTheButton());
    m_view->keep("pointing-first");
    call("proceedToNextStep");
    QVERIFY(!waitsForTheButton());
    m_finger->tap(taps[2]);
    QTRY_COMPARE(state(), QStringLiteral("selectingSecondSectionFirstPoint"));
    m_finger->tap(taps[3]);
    QTRY_COMPARE(state(), QStringLiteral("confirmation"));
    m_view->keep("pointing-second");
    call("proceedToNextStep");

    QCOMPARE(m_results->count(), 1);
    QCOMPARE(m_ends->count(), 1);
    QVERIFY(!pointing()->isEnabled());
    for (int point = 0; point < 4; ++point)
        QVERIFY(near(result(point), ground(taps[point])));
}

void tst_Pointing::northByTwoTaps()
{
    begin(2);
    m_finger->tap({200, 450});
    m_finger->tap({200, 150});
    QTRY_COMPARE(state(), QStringLiteral("confirmation"));
    QVERIFY(pointer(2)->isVisible());
    call("proceedToNextStep");

    QCOMPARE(m_results->count(), 1);
    QVERIFY(near(result(0), ground(QPointF(200, 450))));
    QVERIFY(near(result(1), ground(QPointF(200, 150))));
    QCOMPARE(result(2), QVector3D());
    QCOMPARE(result(3), QVector3D());
}

void tst_Pointing::aLengthIsAskedFor()
{
    begin(4);
    m_finger->tap({200, 450});
    m_finger->tap({200, 150});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));
    // Nobody answers: nothing happens, and a tap still mends the second point.
    call("proceedToNextStep");
    QCOMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));
    m_finger->tap({500, 150});
    QCOMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));
    QVERIFY((centreOf(pointer(2)) - QPointF(500, 150)).manhattanLength() < 1);
    QCOMPARE(m_results->count(), 0);
}

void tst_Pointing::aTapOnAManholeIsAPointAndSelectsNothing()
{
    begin(1);
    const QPoint at = m_view->pixelOf(node()->position());

    m_finger->tap(at);

    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));
    QVERIFY(m_view->root()->nothingSelected());
    QVERIFY((centreOf(pointer(1)) - at).manhattanLength() < 1);
}

void tst_Pointing::aTapOnALabelIsAPointToo()
{
    GlobalNav::instance()->setLabelsVisible(true);
    QTRY_VERIFY(!LabelBoard::instance().isBusy());
    m_view->frames(4);
    const auto* const label = node()->findChild<ImageLabel*>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(label);
    const QRectF before = label->coverage();
    begin(1);

    m_finger->tap(before.center().toPoint());

    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));
    QCOMPARE(label->coverage().center(), before.center());
    QVERIFY(m_view->root()->nothingSelected());
}

void tst_Pointing::aPointThatIsDraggedCounts()
{
    begin(2);
    m_finger->tap({200, 450});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));
    const QVector3D camera = m_view->camera()->position();

    m_finger->drag({200, 450}, {320, 400});

    QCOMPARE(m_view->camera()->position(), camera);
    QCOMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));
    const QPointF first = centreOf(pointer(1));
    QVERIFY((first - QPointF(320, 400)).manhattanLength() < 3);
    m_finger->tap({200, 150});
    QTRY_COMPARE(state(), QStringLiteral("confirmation"));
    m_finger->drag({200, 150}, {400, 160});
    const QPointF second = centreOf(pointer(2));
    call("proceedToNextStep");
    QVERIFY(near(result(0), ground(first)));
    QVERIFY(near(result(1), ground(second)));
}

void tst_Pointing::aSecondTapOnTheFirstPointIsNone()
{
    begin(2);
    m_finger->tap({200, 450});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));

    m_finger->tap({200, 450});
    m_finger->tap({210, 440});

    QCOMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));
    QVERIFY(!pointer(2)->isVisible());
}

void tst_Pointing::theViewMovesBetweenTheTaps()
{
    begin(1);
    m_finger->tap({150, 150});
    m_finger->tap({300, 150});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));
    const QVector3D first = ground(QPointF(150, 150));
    const QVector3D second = ground(QPointF(300, 150));

    m_finger->drag({600, 300}, {650, 420});
    m_finger->spread({500, 400}, 40);

    QVERIFY((ground(QPointF(150, 150)) - first).length() > 1.0F);
    const float height = m_view->camera()->position().y();
    QVERIFY2(height > 100 && height < 250, qPrintable(QString::number(double(height))));
    QCOMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));
    QVERIFY((centreOf(pointer(1)) - m_view->pixelOf(first)).manhattanLength() <= 2);
    QVERIFY((centreOf(pointer(2)) - m_view->pixelOf(second)).manhattanLength() <= 2);
    call("proceedToNextStep");
    m_finger->tap({500, 400});
    m_finger->tap({650, 500});
    QTRY_COMPARE(state(), QStringLiteral("confirmation"));
    call("proceedToNextStep");
    QVERIFY(near(result(0), first));
    QVERIFY(near(result(1), second));
    QVERIFY(near(result(3), ground(QPointF(650, 500))));
}

void tst_Pointing::twoFingersMakeNoPoint()
{
    begin(1);
    m_finger->spread({400, 300}, 60);
    QTest::qWait(100);

    QCOMPARE(state(), QStringLiteral("noPointerYet"));
}

void tst_Pointing::aTapOnTheSkyMakesNoPoint()
{
    // A wide lens five degrees above the ground.
    m_view->camera()->setFieldOfView(40.0F);
    m_view->look({0, 9, -100}, {0, 0, 0}, QVector3D(0, 100, 9).normalized());
    begin(1);

    m_finger->tap({400, 20});
    QCOMPARE(state(), QStringLiteral("noPointerYet"));
    m_finger->tap({400, 500});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));
    m_finger->tap({100, 20});
    QCOMPARE(state(), QStringLiteral("selectingFirstSectionStartPoint"));
    m_finger->drag({400, 500}, {400, 20});
    QVERIFY((centreOf(pointer(1)) - QPointF(400, 500)).manhattanLength() <= 1);
    m_finger->tap({100, 500});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));

    m_view->camera()->setFieldOfView(3.0F);
}

void tst_Pointing::tapsOnButtonsMakeNoPoint()
{
    m_view->area()->setProperty("controlsVisible", true);
    m_view->frames(3);
    begin(1);
    auto* const mode = m_view->area()->findChild<QQuickItem*>("controlTypeModeButton");
    QTRY_VERIFY(mode && mode->isVisible());
    // The menu unfolds.
    QTRY_COMPARE(m_view->area()->findChild<QQuickItem*>("view3dMenu")->height(), 129.0);
    const int before = m_view->area()->property("mode3dType").toInt();

    m_finger->tap(mode->mapToItem(m_view->area(), {32, 32}).toPoint());

    QTRY_VERIFY(m_view->area()->property("mode3dType").toInt() != before);
    m_finger->tap(mode->mapToItem(m_view->area(), {32, 32}).toPoint());
    QTRY_COMPARE(m_view->area()->property("mode3dType").toInt(), before);
    QCOMPARE(state(), QStringLiteral("noPointerYet"));
}

void tst_Pointing::itIsEndedHalfWayAndBegunAgain()
{
    begin(1);
    m_finger->tap({150, 150});
    m_finger->tap({300, 150});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));
    QVERIFY(QMetaObject::invokeMethod(m_view->area(), "toggleTwoSectionInterface", Q_ARG(QVariant, 1)));
    QVERIFY(!pointing()->isEnabled());

    // Taps are the scene's again.
    m_finger->tap(m_view->pixelOf(node()->position()));
    QTRY_VERIFY(m_view->root()->isSelected(node()->guid()));
    m_view->root()->deselectAll();
    QTest::qWait(400);

    begin(2);
    QCOMPARE(state(), QStringLiteral("noPointerYet"));
    m_finger->tap({200, 450});
    m_finger->tap({200, 150});
    QTRY_COMPARE(state(), QStringLiteral("confirmation"));
    call("proceedToNextStep");
    QVERIFY(near(result(0), ground(QPointF(200, 450))));
}

void tst_Pointing::splitViewLeavesThePointsOnTheirGround()
{
    begin(1);
    m_finger->tap({150, 150});
    m_finger->tap({300, 250});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));
    const QVector3D first = ground(QPointF(150, 150));
    const QVector3D second = ground(QPointF(300, 250));

    m_view->window()->resize(400, 600);
    QTRY_COMPARE(m_view->area()->width(), 400.0);
    m_view->frames(6);
    const QPointF place = Utils3d::pointWorldToScreen(m_view->camera(), first, 400, 600);
    QVERIFY((centreOf(pointer(1)) - place).manhattanLength() <= 1);
    m_view->window()->resize(800, 600);
    QTRY_COMPARE(m_view->area()->width(), 800.0);
    m_view->frames(6);

    QVERIFY((centreOf(pointer(1)) - QPointF(150, 150)).manhattanLength() <= 1);
    call("proceedToNextStep");
    call("previousStateOfOperationMode");
    QVERIFY((centreOf(pointer(2)) - m_view->pixelOf(second)).manhattanLength() <= 2);
}

void tst_Pointing::aProjectThatClosesMeanwhileDoesNoHarm()
{
    begin(1);
    m_finger->tap({150, 150});
    m_finger->tap({300, 250});
    QTRY_COMPARE(state(), QStringLiteral("selectingFirstSectionEndPoint"));

    m_project.reset();
    m_view->frames(6);
    call("proceedToNextStep");
    m_finger->tap({500, 400});
    call("finish");

    QCOMPARE(m_results->count(), 0);
    QVERIFY(m_view->root()->selectionsEnabled());
}

KX_SCENE_TEST_MAIN(tst_Pointing)
#include "tst_Pointing.moc"
