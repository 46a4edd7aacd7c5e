#include "common/SceneTest.h"
#include "view/LabelReader.h"
#include "view/LabelWindow.h"

#include <QFile>

using namespace Torvik::View3d;

/** Labels under a finger: a real project in a rendered window, with delivered events. */
class tst_LabelDrags : public QObject, private Kx::Test::LabelWindow {
    Q_OBJECT

private slots:
    void initTestCase() { openWindow(); }
    void cleanupTestCase() { closeWindow(); }
    void init() { makeProject(); }
    void cleanup()
    {
        GlobalNav::instance()->setAxisY(false);
        closeProject();
    }

    void aFingerDragsALabelAndTheCameraStays();
    void aTouchDragsALabelAsAMouseDoes();
    void aTapThatTremblesMovesNothing();
    void aSecondTapPutsTheLabelBack();
    void aTapOnALabelSelectsNothingAndDeselectsNothing();
    void aPressThroughThePointerReachesTheManhole();
    void labelsAreDraggedInEveryView_data();
    void labelsAreDraggedInEveryView();
    void labelsOfPipesAndFindingsAreDraggedToo();
    void theLastTouchedLabelLiesOnTopAndIsTaken();
    void aSecondFingerEndsTheDrag();

private:
    void touchDrag(QPoint from, QPoint way)
    {
        QTest::touchEvent(m_view->window(), m_screen).press(0, m_view->inWindow(from));
        m_view->frames(4);
        for (int step = 1; step <= 4; ++step) {
            QTest::touchEvent(m_view->window(), m_screen).move(0, m_view->inWindow(from + way * step / 4));
            m_view->frames(3);
        }
        QTest::touchEvent(m_view->window(), m_screen).release(0, m_view->inWindow(from + way));
        m_view->frames(4);
    }
    /** The label as the picture shows it; empty when it is covered. */
    QString read(const ImageLabel* label)
    {
        return Kx::Test::LabelReader("MH-12P7BABŁódźΩ").read(m_view->grab(), label->coverage(), label->text().size());
    }

    QTouchDevice* const m_screen = QTest::createTouchDevice();
};

void tst_LabelDrags::aFingerDragsALabelAndTheCameraStays()
{
    const QRect before = areaOf(labelOf(m_a));
    const QVector3D camera = m_view->camera()->position();

    m_view->drag(before.center(), before.center() + QPoint(80, 120));

    const QPoint way = areaOf(labelOf(m_a)).topLeft() - before.topLeft();
    QVERIFY2((way - QPoint(80, 120)).manhattanLength() <= 2, qPrintable(QString("%1 %2").arg(way.x()).arg(way.y())));
    QCOMPARE(m_view->camera()->position(), camera);
    const QImage picture = m_view->grab();
    const QRect drawn = drawnArea(picture, before.translated(80, 120), background());
    QVERIFY((drawn.topLeft() - before.topLeft() - QPoint(80, 120)).manhattanLength() <= 3);
    QCOMPARE(count(picture, before, background()), 0);
    // The camera moves again with the next finger.
    QVERIFY(m_view->controller()->property("enabled").toBool());
}

void tst_LabelDrags::aTouchDragsALabelAsAMouseDoes()
{
    const QRect before = areaOf(labelOf(m_a));
    const QVector3D camera = m_view->camera()->position();
    const QPoint from = before.center();

    touchDrag(from, {80, 120});

    const QPoint way = areaOf(labelOf(m_a)).topLeft() - before.topLeft();
    QVERIFY2((way - QPoint(80, 120)).manhattanLength() <= 3, qPrintable(QString("%1 %2").arg(way.x()).arg(way.y())));
    QCOMPARE(m_view->camera()->position(), camera);
    QVERIFY(labelOf(m_a)->hasCustomPosition());
}

void tst_LabelDrags::aTapThatTremblesMovesNothing()
{
    const QRect before = areaOf(labelOf(m_a));

    m_view->drag(before.center(), before.center() + QPoint(2, 1));

    QVERIFY(!labelOf(m_a)->hasCustomPosition());
    QCOMPARE(areaOf(labelOf(m_a)), before);
    QVERIFY(m_view->controller()->property("enabled").toBool());
    reopen();
    QVERIFY(!QFile::exists(m_project->path() + "/labelPosition.json"));
}

void tst_LabelDrags::aSecondTapPutsTheLabelBack()
{
    const QRect place = areaOf(labelOf(m_a));
    m_view->drag(place.center(), place.center() + QPoint(60, 110));
    QTest::qWait(450);
    const QPoint there = areaOf(labelOf(m_a)).center();

    QTest::mousePress(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(there));
    m_view->frames(2);
    QTest::mouseRelease(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(there));
    m_view->frames(2);
    // However far the finger slides before it leaves the screen.
    QTest::mousePress(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(there));
    m_view->frames(2);
    QTest::mouseMove(m_view->window(), m_view->inWindow(there + QPoint(2, 1)));
    m_view->frames(2);
    QTest::mouseMove(m_view->window(), m_view->inWindow(there + QPoint(20, 15)));
    m_view->frames(2);
    QTest::mouseRelease(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(there + QPoint(20, 15)));
    m_view->frames(4);

    QVERIFY(!labelOf(m_a)->hasCustomPosition());
    QVERIFY(m_view->controller()->property("enabled").toBool());
    QCOMPARE(areaOf(labelOf(m_a)), place);
    reopen();
    QVERIFY(!labelOf(m_a)->hasCustomPosition());
}

void tst_LabelDrags::aTapOnALabelSelectsNothingAndDeselectsNothing()
{
    const QPoint label = areaOf(labelOf(m_a)).center();
    m_view->tap(label);
    QTest::qWait(400);
    QVERIFY(m_view->root()->nothingSelected());

    m_view->tap(m_view->pixelOf(node(m_a)->position()));
    QTRY_VERIFY(m_view->root()->isSelected(m_a->id()));
    QTest::qWait(400);
    m_view->tap(label);
    QTest::qWait(600);
    QVERIFY(m_view->root()->isSelected(m_a->id()));
    m_view->root()->deselectAll();
}

void tst_LabelDrags::aPressThroughThePointerReachesTheManhole()
{
    node(m_a)->allowTouchControl(true);
    const QVector3D before = node(m_a)->position();
    const QPoint object = m_view->pixelOf(before);

    m_view->drag(object, object + QPoint(70, 40));

    QVERIFY((node(m_a)->position() - before).length() > 1.0F);
    rest();
    const QPoint moved = m_view->pixelOf(node(m_a)->position());
    QVERIFY((areaOf(labelOf(m_a)).center() - moved - QPoint(0, -39)).manhattanLength() <= 3);
    m_view->root()->deselectAll();
}

void tst_LabelDrags::labelsAreDraggedInEveryView_data()
{
    QTest::addColumn<bool>("front");
    QTest::addColumn<bool>("heightFree");
    QTest::addColumn<int>("belowHorizon");
    for (const bool front : {true, false}) {
        for (const bool free : {false, true}) {
            for (const int below : {-20, 0, 20})
                QTest::addRow("%s, height %s, %d px below the horizon", front ? "front" : "3D",
                              free ? "free" : "locked", below)
                    << front << free << below;
        }
    }
    QTest::newRow("3D from above, height locked") << false << false << 1000;
    QTest::newRow("3D from above, height free") << false << true << 1000;
}

void tst_LabelDrags::labelsAreDraggedInEveryView()
{
    QFETCH(bool, front);
    QFETCH(bool, heightFree);
    QFETCH(int, belowHorizon);
    GlobalNav::instance()->setAxisY(heightFree);
    const auto view = front ? CameraController::View2dFront : CameraController::View3d;
    const QVector3D back = front ? QVector3D(0, 0, -350) : QVector3D(-200, 0, -280);
    const auto lookLevel = [&](float height) {
        const QVector3D up(0, height, 0);
        m_view->look(back + up, up, {0, 1, 0}, view);
        rest();
    };
    if (belowHorizon == 1000) {
        m_view->look({-100, 250, -220}, {0, 0, 0}, QVector3D(100, 232.8F, 220).normalized(), view);
        rest();
    } else {
        lookLevel(0);
        const int row = areaOf(labelOf(m_a)).center().y();
        const float metresPerPixel = back.length() * 2 * std::tan(qDegreesToRadians(1.5F)) / 600;
        lookLevel(static_cast<float>(300 + belowHorizon - row) * metresPerPixel);
        QVERIFY(std::abs(areaOf(labelOf(m_a)).center().y() - 300 - belowHorizon) <= 1);
    }
    const QRect before = areaOf(labelOf(m_a));
    const QVector3D camera = m_view->camera()->position();
    const QVector3D object = node(m_a)->position();

    touchDrag(before.center(), {-70, 90});

    const QPoint way = areaOf(labelOf(m_a)).topLeft() - before.topLeft();
    QVERIFY2((way - QPoint(-70, 90)).manhattanLength() <= 2, qPrintable(QString("%1 %2").arg(way.x()).arg(way.y())));
    QCOMPARE(m_view->camera()->position(), camera);
    QCOMPARE(node(m_a)->position(), object);
    QCOMPARE(read(labelOf(m_a)), QString("MH-12"));
    QVERIFY(m_view->controller()->property("enabled").toBool());
}

void tst_LabelDrags::labelsOfPipesAndFindingsAreDraggedToo()
{
    const QString found = m_project->addObservation(m_inspection, "BAB", 2.0)->id();
    const QString inspected = m_inspection->id();
    auto& entities = SceneEntities::instance();
    const auto pipe = [&] { return labelOf(entities.getPipeEntities().getByInspectionId(inspected)); };
    const auto finding = [&] { return labelOf(entities.getObservations().value(found)); };
    QTRY_VERIFY(entities.getObservations().value(found));
    lookDown(230.0F);
    QVERIFY(pipe() && finding());
    const QPoint pipeAt = areaOf(pipe()).center();
    const QPoint findingAt = areaOf(finding()).center();

    touchDrag(pipeAt, {20, 130});
    touchDrag(findingAt, {-30, -110});
    const QImage before = m_view->grab();
    QCOMPARE(read(pipe()), QString("P-7"));
    QCOMPARE(read(finding()), QString("BAB"));

    reopen();
    QTRY_VERIFY(entities.getObservations().value(found));
    lookDown(230.0F);
    QVERIFY(pipe() && finding());
    QVERIFY((areaOf(pipe()).center() - pipeAt - QPoint(20, 130)).manhattanLength() <= 2);
    QVERIFY((areaOf(finding()).center() - findingAt - QPoint(-30, -110)).manhattanLength() <= 2);
    const int different = differing(before, m_view->grab());
    QVERIFY2(different < 400, qPrintable(QString::number(different)));
}

void tst_LabelDrags::theLastTouchedLabelLiesOnTopAndIsTaken()
{
    const QPoint a = areaOf(labelOf(m_a)).center();
    const QPoint b = areaOf(labelOf(m_b)).center();
    const QPoint place(400, 450);
    touchDrag(a, place - a);
    // The longer name over the whole of the other, but for a strip above.
    touchDrag(b, place + QPoint(0, 8) - b);
    m_view->keep("labels-on-one-another");
    QCOMPARE(read(labelOf(m_b)), QString("Łódź Ω"));
    QVERIFY(read(labelOf(m_a)) != QString("MH-12"));

    rest();
    QCOMPARE(read(labelOf(m_b)), QString("Łódź Ω"));
    QTest::qWait(450);
    m_view->tap(place - QPoint(0, 10));
    QCOMPARE(read(labelOf(m_a)), QString("MH-12"));
    QVERIFY(read(labelOf(m_b)) != QString("Łódź Ω"));
    lookDown(340.0F);
    QCOMPARE(read(labelOf(m_a)), QString("MH-12"));

    // What is seen is what a finger takes.
    QTest::qWait(450);
    const QRect under = areaOf(labelOf(m_b));
    const QRect over = areaOf(labelOf(m_a));
    touchDrag((under & over).center(), {0, -150});
    QCOMPARE(areaOf(labelOf(m_b)), under);
    QVERIFY((areaOf(labelOf(m_a)).topLeft() - over.topLeft() - QPoint(0, -150)).manhattanLength() <= 2);
}

void tst_LabelDrags::aSecondFingerEndsTheDrag()
{
    const QRect before = areaOf(labelOf(m_a));
    const QPoint from = before.center();
    auto* const window = m_view->window();
    QTest::touchEvent(window, m_screen).press(0, m_view->inWindow(from));
    m_view->frames(4);
    for (int step = 1; step <= 4; ++step) {
        QTest::touchEvent(window, m_screen).move(0, m_view->inWindow(from + QPoint(0, 25) * step));
        m_view->frames(3);
    }
    const QPoint second(600, 200);
    // A stationary point of a sequence of its own would lie at the window's corner.
    QTest::touchEvent(window, m_screen)
        .move(0, m_view->inWindow(from + QPoint(0, 100)))
        .press(1, m_view->inWindow(second));
    m_view->frames(2);
    for (int step = 1; step <= 6; ++step) {
        QTest::touchEvent(window, m_screen)
            .move(0, m_view->inWindow(from + QPoint(-12 * step, 100)))
            .move(1, m_view->inWindow(second + QPoint(12 * step, 0)));
        m_view->frames(2);
    }
    QTest::touchEvent(window, m_screen)
        .release(0, m_view->inWindow(from + QPoint(-72, 100)))
        .release(1, m_view->inWindow(second + QPoint(72, 0)));
    m_view->frames(4);
    rest();

    QVERIFY(m_view->controller()->property("enabled").toBool());
    QVERIFY(labelOf(m_a)->hasCustomPosition());
    // The two have brought the view nearer, and the label has not followed the first of them.
    const float height = m_view->camera()->position().y();
    QVERIFY2(height < 300.0F, qPrintable(QString::number(double(height))));
    const QPoint object = m_view->pixelOf(node(m_a)->position());
    const QPoint apart = areaOf(labelOf(m_a)).center() - object;
    QVERIFY2((apart - QPoint(0, 100 - 39)).manhattanLength() <= 30,
             qPrintable(QString("%1 %2").arg(apart.x()).arg(apart.y())));
}

KX_SCENE_TEST_MAIN(tst_LabelDrags)
#include "tst_LabelDrags.moc"
