#include "common/SceneTest.h"
#include "interaction/TouchControl.h"
#include "view/LabelWindow.h"

using namespace Torvik::View3d;

/** Labels as the user sees them: a real project in a rendered window, read by its pixels. */
class tst_Labels : public QObject, private Kx::Test::LabelWindow {
    Q_OBJECT

private slots:
    void initTestCase() { openWindow(); }
    void cleanupTestCase() { closeWindow(); }
    void init() { makeProject(); }
    void cleanup() { closeProject(); }

    void aLabelIsReadAtEveryDistance_data();
    void aLabelIsReadAtEveryDistance();
    void thePointerRunsFromTheLabelToItsObject();
    void noPipeHidesALabel();
    void noPipeHidesAHandle();
    void labelsAreGoneWhileTheViewMovesAndComeBack();
    void theSwitchTakesAllLabelsAway();
    void aFaceThatServesAnotherNameShowsThatName();
    void severalLinesCanBeRead();
};

void tst_Labels::aLabelIsReadAtEveryDistance_data()
{
    QTest::addColumn<float>("viewed");
    QTest::addColumn<QVector3D>("back");
    QTest::addColumn<QVector3D>("up");
    QTest::addColumn<float>("nearPlane");

    const QVector3D above(0, 1, 0);
    const QVector3D north(0, 0, 1);
    QTest::newRow("50 m") << 50.0F << above << north << 1.0F;
    QTest::newRow("350 m") << 350.0F << above << north << 1.0F;
    QTest::newRow("2 km") << 2000.0F << above << north << 1.0F;
    QTest::newRow("9 km, a narrow range") << 9000.0F << above << north << 4000.0F;
    QTest::newRow("90 km, a narrow range") << 90000.0F << above << north << 45000.0F;
    QTest::newRow("350 m from the front") << 350.0F << QVector3D(0, 0, -1) << QVector3D(0, 1, 0) << 1.0F;
    QTest::newRow("350 m aslant") << 350.0F << QVector3D(0, 1, -1).normalized() << QVector3D(0, 1, 1).normalized()
                                  << 1.0F;
    QTest::newRow("350 m, near plane of 100 m") << 350.0F << above << north << 100.0F;
}

void tst_Labels::aLabelIsReadAtEveryDistance()
{
    QFETCH(float, viewed);
    QFETCH(QVector3D, back);
    QFETCH(QVector3D, up);
    QFETCH(float, nearPlane);
    auto* const camera = m_view->camera();
    camera->setFarPlane(std::max(10000.0F, viewed * 1.5F));
    camera->setNearPlane(nearPlane);
    m_view->look(back * viewed, {0, 0, 0}, up);
    rest();

    const QImage picture = m_view->grab();
    camera->setNearPlane(1.0F);
    camera->setFarPlane(10000.0F);

    const ImageLabel* const label = labelOf(m_a);
    QVERIFY(label);
    // Its place by the arithmetic of the view, apart from that of labels.
    const QPoint object = m_view->pixelOf(node(m_a)->position());
    const QSize size(60, 24);
    const QRect expected(QPoint(object.x() - size.width() / 2, object.y() - 51), size);
    const QRect drawn = drawnArea(picture, expected, background());
    QVERIFY2(std::abs(drawn.left() - expected.left()) <= 2 && std::abs(drawn.top() - expected.top()) <= 2,
             qPrintable(QString("%1 %2").arg(drawn.left() - expected.left()).arg(drawn.top() - expected.top())));
    QVERIFY(std::abs(drawn.height() - 24) <= 1);
    QVERIFY(std::abs(drawn.width() - size.width()) <= 3);
    // Letters on it, not more than letters are.
    const int area = drawn.width() * drawn.height();
    QVERIFY(count(picture, drawn, Qt::white) > area / 25);
    QVERIFY(count(picture, drawn, Qt::white) < area / 2);
    QVERIFY(count(picture, drawn, background()) > area / 3);
}

void tst_Labels::thePointerRunsFromTheLabelToItsObject()
{
    labelOf(m_a)->move(QVector3D(-100, -60, 0), TransformFlags::Manual);
    const QImage picture = m_view->grab();
    m_view->keep("label-with-pointer");

    const QPointF from = labelOf(m_a)->coverage().center();
    const QPointF to = m_view->pixelOf(node(m_a)->position());
    int onTheWay = 0;
    int looked = 0;
    for (double part = 0.5; part < 0.95; part += 0.02) {
        const QPoint at = (from + (to - from) * part).toPoint();
        ++looked;
        onTheWay += count(picture, QRect(at - QPoint(1, 1), QSize(3, 3)), Qt::blue, 110) > 0 ? 1 : 0;
    }
    QVERIFY2(onTheWay > looked * 8 / 10, qPrintable(QString("%1 of %2").arg(onTheWay).arg(looked)));
    QVERIFY(count(picture, areaOf(labelOf(m_a)), Qt::blue, 30) < 8);
}

void tst_Labels::noPipeHidesALabel()
{
    // From below, the pipe and the manhole's body lie before the ground.
    m_view->look({0, -30, 0.1F}, {0, 0, 0}, {0, 0, 1});
    rest();
    ImageLabel* const label = labelOf(m_a);
    const QPointF object = m_view->pixelOf(node(m_a)->position());
    label->move(QVector3D(object - label->coverage().center()), TransformFlags::Manual);

    const QImage picture = m_view->grab();

    const QRect drawn = drawnArea(picture, areaOf(label), background());
    QVERIFY(std::abs(drawn.height() - 24) <= 1 && std::abs(drawn.width() - 60) <= 3);
    QVERIFY(count(picture, drawn, Qt::white) > 60);
}

void tst_Labels::noPipeHidesAHandle()
{
    GlobalNav::instance()->setLabelsVisible(false);
    Node* const manhole = node(m_a);
    const QPoint object = m_view->pixelOf(manhole->position());
    const QRect around(object - QPoint(40, 40), QSize(81, 81));
    const QColor handle(0, 128, 0);
    manhole->allowTouchControl(true);
    manhole->touchControl()->setAxisArrowVisible(true);
    m_view->frames(10);
    const QImage open = m_view->grab();
    m_view->keep("handle-open");
    manhole->touchControl()->setAxisArrowVisible(false);

    // Wider than the handle, and between it and the eye.
    const auto bridge = m_project->addSection("BRIDGE", {}, {}, {{"OBJ_Size1", 8000}});
    const QString above =
        m_project->addInspection(bridge, "LINESTRING ZM(399990 5600000 110 64,400010 5600000 110 0)", 0)->id();
    QTRY_VERIFY(SceneEntities::instance().getPipeEntities().getByInspectionId(above));
    m_view->frames(10);
    const QImage covered = m_view->grab();
    manhole->touchControl()->setAxisArrowVisible(true);
    m_view->frames(10);
    const QImage both = m_view->grab();
    m_view->keep("handle-under-pipe");

    QVERIFY(differing(open.copy(around), covered.copy(around)) > around.width() * around.height() * 3 / 4);
    const int green = count(open, around, handle, 12);
    QVERIFY2(green > 100, qPrintable(QString::number(green)));
    QCOMPARE(count(covered, around, handle, 12), 0);
    QCOMPARE(count(both, around, handle, 12), green);
}

void tst_Labels::labelsAreGoneWhileTheViewMovesAndComeBack()
{
    const QRect place = areaOf(labelOf(m_a));
    QVERIFY(count(m_view->grab(), place, background()) > 300);

    m_view->camera()->setPosition({0, 351, 0});
    m_view->frames(4);
    const QImage moving = m_view->window()->grabWindow();
    QVERIFY(LabelBoard::instance().isHidden());
    QCOMPARE(count(moving, moving.rect(), background(), 12), 0);

    rest();
    QVERIFY(count(m_view->grab(), areaOf(labelOf(m_a)), background()) > 300);
}

void tst_Labels::theSwitchTakesAllLabelsAway()
{
    GlobalNav::instance()->setLabelsVisible(false);
    rest();
    const QImage without = m_view->grab();
    QCOMPARE(count(without, without.rect(), background(), 12), 0);

    GlobalNav::instance()->setLabelsVisible(true);
    rest();
    QVERIFY(count(m_view->grab(), areaOf(labelOf(m_a)), background()) > 300);
}

void tst_Labels::aFaceThatServesAnotherNameShowsThatName()
{
    const auto far = m_project->addNode("A MUCH LONGER NAME", "POINT ZM(400500 5600000 100 16)");
    QTRY_VERIFY(node(far));
    const QVector3D there = node(far)->position();
    m_view->lookDown(there, 350.0F);
    rest();

    const QImage picture = m_view->grab();

    const QRect place = areaOf(labelOf(far));
    const QRect drawn = drawnArea(picture, place, background());
    QVERIFY(place.width() > 200);
    QVERIFY(std::abs(drawn.width() - place.width()) <= 3 && std::abs(drawn.height() - 24) <= 1);
    // To its end.
    QVERIFY(count(picture, QRect(place.right() - 40, place.top(), 40, 24), Qt::white) > 30);
}

void tst_Labels::severalLinesCanBeRead()
{
    GlobalNav::instance()->setManholeFullInfoVisible(true);
    rest();
    m_view->keep("label-lines");

    const QImage picture = m_view->grab();

    const QRect place = areaOf(labelOf(m_a));
    QVERIFY(place.height() >= 72 && place.height() <= 74);
    for (int line = 0; line < 4; ++line) {
        const QRect row(place.left(), place.top() + line * 18, place.width(), 18);
        QVERIFY2(count(picture, row, Qt::white, 90) > 12, qPrintable(QString::number(line)));
    }
}

KX_SCENE_TEST_MAIN(tst_Labels)
#include "tst_Labels.moc"
