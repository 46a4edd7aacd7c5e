#include "labels/LabelScene.h"

#include "labels/PaintedTextureText.h"

#include <QElapsedTimer>
#include <Qt3DRender/QParameter>

#include <array>
#include <limits>

using namespace Torvik::View3d;

/** Which labels are drawn, and with what. */
class tst_LabelBoard : public QObject, private Kx::Test::LabelScene {
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void aLabelOffTheScreenIsNotMade();
    void whatComesOntoTheScreenGetsALabelAndWhatLeavesLosesIt();
    void labelsHideWhileTheViewMoves();
    void nothingIsMadeOrShownWhileTheViewMoves();
    void whatIsSwitchedWhileTheViewMovesCountsAtRest();
    void facesAreBoundedAndReused();
    void labelsThatWouldBeAHeapAreLeftOut();
    void aPressTakesTheUppermostLabel();
    void anObjectThatGoesTakesItsLabelAlong();
    void anObjectThatGoesLeavesTheOrderOfTheOthers();
    void roomThatBecomesFreeIsTaken();
    void anObjectMayGoBeforeItsLabelIsDrawn();
    void whatIsSwitchedOffAndOnIsNotPaintedAgain();
    void linesThatAreSwitchedWhileTheViewMovesArePaintedOnceAtRest();
    void onlyTheScenesCameraHidesLabels();
    void aSecondSceneTakesOver();
    void aSecondSceneTakesOverFromALivingOne();

private:
    static float depthOf(const ImageLabel* label)
    {
        const auto parameters = label->face()->findChildren<Qt3DRender::QParameter*>();
        for (const auto* const parameter : parameters) {
            if (parameter->name() == QLatin1String("layerDepth"))
                return parameter->value().toFloat();
        }
        return std::numeric_limits<float>::quiet_NaN();
    }
};

void tst_LabelBoard::aLabelOffTheScreenIsNotMade()
{
    Node* const seen = nodeAt("A", {0, 0, 0});
    Node* const far = nodeAt("B", {500, 0, 0});
    rest();

    QVERIFY(shown(seen));
    QVERIFY(!far->findChild<ImageLabel*>());
    QCOMPARE(LabelBoard::instance().drawnCount(), 1);
    QCOMPARE(LabelBoard::instance().tagCount(), 2);
}

void tst_LabelBoard::whatComesOntoTheScreenGetsALabelAndWhatLeavesLosesIt()
{
    Node* const here = nodeAt("A", {0, 0, 0});
    Node* const there = nodeAt("B", {500, 0, 0});
    rest();

    look({500, 0, 0}, 350.0F);

    QTRY_VERIFY(!here->findChild<ImageLabel*>());
    QVERIFY(shown(there));
    QCOMPARE(shown(there)->text(), QString("B"));
    // B has what A was drawn with.
    QCOMPARE(LabelBoard::instance().faceCount(), 1);
}

void tst_LabelBoard::labelsHideWhileTheViewMoves()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    ImageLabel* const label = labelOf(node);
    QVERIFY(label->isEnabled());
    QElapsedTimer clock;

    m_camera->setPosition({0, 340, 0});
    QVERIFY(!label->isEnabled());
    QVERIFY(!LabelBoard::instance().labelAt(label->coverage().center()));
    QTest::qWait(300);
    m_camera->setPosition({0, 330, 0});
    clock.start();
    QVERIFY(!label->isEnabled());

    QTRY_VERIFY(label->isEnabled());
    QVERIFY(clock.elapsed() >= 490);
    QCOMPARE(LabelBoard::instance().labelAt(label->coverage().center()), label);
}

void tst_LabelBoard::nothingIsMadeOrShownWhileTheViewMoves()
{
    for (int i = 0; i < 60; ++i)
        nodeAt(QString("N%1").arg(i), QVector3D(i % 8 - 4, 0, i / 8 - 4) * 2);
    Node* const asked = nodeAt("ASKED", {30, 0, 30});
    LabelBoard::instance().arrange();
    const int paintings = PaintedTextureText::paintings();

    // Some labels were still to come.
    m_camera->setPosition({0, 340, 0});
    QTest::qWait(150);
    for (int i = 0; i < 50; ++i)
        m_camera->setPosition({0, 340.0F - static_cast<float>(i), 0});
    ImageLabel* const label = labelOf(asked);
    QTest::qWait(150);

    QVERIFY(LabelBoard::instance().isHidden());
    QVERIFY(!label->isEnabled());
    QCOMPARE(m_scene->root->findChildren<ImageLabel*>().size(), 1);
    QCOMPARE(PaintedTextureText::paintings(), paintings);

    rest();
    QVERIFY(label->isEnabled());
    QVERIFY(LabelBoard::instance().drawnCount() > 10);
    QVERIFY(PaintedTextureText::paintings() > paintings);
}

void tst_LabelBoard::whatIsSwitchedWhileTheViewMovesCountsAtRest()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    ImageLabel* const label = labelOf(node);

    m_camera->setPosition({0, 340, 0});
    GlobalNav::instance()->setLabelsVisible(false);
    rest();
    QVERIFY(!label->isEnabled());

    m_camera->setPosition({0, 330, 0});
    GlobalNav::instance()->setLabelsVisible(true);
    QVERIFY(!label->isEnabled());
    rest();
    QVERIFY(shown(node));
}

void tst_LabelBoard::facesAreBoundedAndReused()
{
    for (int i = 0; i < 2000; ++i)
        nodeAt(QString("N%1").arg(i), QVector3D(i % 50, 0, i / 50) * 3);
    m_scene->root->setSceneWidth(8000.0);
    m_scene->root->setSceneHeight(5600.0);
    look({75, 0, 60}, 5000.0F);
    QCOMPARE(LabelBoard::instance().drawnCount(), LabelBoard::maxDrawn);
    QCOMPARE(LabelBoard::instance().faceCount(), LabelBoard::maxDrawn);

    for (const float x : {0.0F, 50.0F, 100.0F})
        look({x, 0, x}, 800.0F);
    QVERIFY(LabelBoard::instance().drawnCount() > 0);
    QCOMPARE(LabelBoard::instance().faceCount(), LabelBoard::maxDrawn);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_scene->root->findChildren<ImageLabel*>().size(), LabelBoard::instance().drawnCount());
}

void tst_LabelBoard::labelsThatWouldBeAHeapAreLeftOut()
{
    Node* const first = nodeAt("FIRST", {0, 0, 0});
    Node* const second = nodeAt("SECOND", {0.1F, 0, 0});
    Node* const moved = nodeAt("MOVED", {0.2F, 0, 0});
    drag(labelOf(moved), QVector3D(1, 1, 0));
    rest();
    // What a hand has put there goes before.
    QVERIFY(shown(moved));
    QVERIFY(!shown(first));
    QVERIFY(!shown(second));

    // Also without any change of the view.
    drag(labelOf(moved), QVector3D(300, 200, 0));
    rest();
    QVERIFY(shown(moved));
    QVERIFY(shown(first));
    QVERIFY(!shown(second));

    labelOf(moved)->doubleTapped();
    rest();
    QVERIFY(shown(first));
    QVERIFY(!shown(moved));

    drag(labelOf(moved), QVector3D(300, 200, 0));
    look({0, 0, 0}, 10.0F);
    QVERIFY(shown(second));
}

void tst_LabelBoard::anObjectThatGoesTakesItsLabelAlong()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    QCOMPARE(LabelBoard::instance().drawnCount(), 1);

    delete node;

    QCOMPARE(LabelBoard::instance().drawnCount(), 0);
    QCOMPARE(LabelBoard::instance().tagCount(), 0);
    Node* const next = nodeAt("B", {0, 0, 0});
    rest();
    QVERIFY(shown(next));
    QCOMPARE(LabelBoard::instance().faceCount(), 1);

    delete shown(next);
    QVERIFY(labelOf(next));
    rest();
    QVERIFY(shown(next));
}

void tst_LabelBoard::anObjectThatGoesLeavesTheOrderOfTheOthers()
{
    Node* const gone = nodeAt("GONE", {20, 0, 20});
    Node* const first = nodeAt("FIRST", {0, 0, 0});
    Node* const second = nodeAt("SECOND", {0.1F, 0, 0});
    rest();
    QVERIFY(shown(first) && !shown(second));

    delete gone;
    QCOMPARE(LabelBoard::instance().tagCount(), 2);
    look({0, 0, 0}, 340.0F);

    QVERIFY(shown(first) && !shown(second));
    delete first;
    rest();
    QVERIFY(shown(second));
}

void tst_LabelBoard::roomThatBecomesFreeIsTaken()
{
    Node* const first = nodeAt("FIRST", {0, 0, 0});
    Node* const second = nodeAt("SECOND", {0.1F, 0, 0});
    Node* const third = nodeAt("THIRD", {0.2F, 0, 0});
    rest();
    QVERIFY(shown(first) && !shown(second) && !shown(third));

    first->setPosition({5, 0, 0}, 0);
    rest();
    QVERIFY(shown(first) && shown(second) && !shown(third));

    delete second;
    rest();
    QVERIFY(shown(third));
}

void tst_LabelBoard::anObjectMayGoBeforeItsLabelIsDrawn()
{
    QVector<Node*> nodes;
    for (int i = 0; i < 60; ++i)
        nodes.append(nodeAt(QString::number(i), QVector3D(1.5F * float(i % 10) - 7, 0, 1.5F * float(i / 10) - 4)));
    LabelBoard::instance().arrange();
    QVERIFY(LabelBoard::instance().drawnCount() > 40);

    qDeleteAll(nodes);
    rest();

    QCOMPARE(LabelBoard::instance().drawnCount(), 0);
    QCOMPARE(LabelBoard::instance().tagCount(), 0);
}

void tst_LabelBoard::whatIsSwitchedOffAndOnIsNotPaintedAgain()
{
    const std::array<Node*, 3> nodes {nodeAt("A", {-5, 0, 0}), nodeAt("B", {0, 0, 0}), nodeAt("C", {5, 0, 0})};
    rest();
    const int paintings = PaintedTextureText::paintings();

    GlobalNav::instance()->setLabelsVisible(false);
    rest();
    QCOMPARE(LabelBoard::instance().drawnCount(), 0);
    GlobalNav::instance()->setLabelsVisible(true);
    rest();

    for (const Node* const node : nodes)
        QVERIFY(shown(node));
    QCOMPARE(PaintedTextureText::paintings(), paintings);
}

void tst_LabelBoard::linesThatAreSwitchedWhileTheViewMovesArePaintedOnceAtRest()
{
    const std::array<Node*, 3> nodes {nodeAt("A", {-6, 0, 0}), nodeAt("B", {0, 0, 0}), nodeAt("C", {6, 0, 0})};
    auto* const nav = GlobalNav::instance();
    rest();
    const int paintings = PaintedTextureText::paintings();

    m_camera->setPosition({0, 340, 0});
    nav->setManholeFullInfoVisible(true);
    QTest::qWait(150);
    m_camera->setPosition({0, 335, 0});
    QTest::qWait(150);
    QVERIFY(LabelBoard::instance().isHidden());
    QCOMPARE(PaintedTextureText::paintings(), paintings);

    rest();
    for (const Node* const node : nodes) {
        QVERIFY(shown(node));
        QVERIFY(shown(node)->isMultiline());
    }
    QCOMPARE(PaintedTextureText::paintings(), paintings + 3);

    // Off and on again in one move leaves them as they were painted.
    m_camera->setPosition({0, 330, 0});
    nav->setManholeFullInfoVisible(false);
    QTest::qWait(150);
    nav->setManholeFullInfoVisible(true);
    rest();
    QCOMPARE(PaintedTextureText::paintings(), paintings + 3);
}

void tst_LabelBoard::onlyTheScenesCameraHidesLabels()
{
    nodeAt("A", {0, 0, 0});
    rest();
    Qt3DRender::QCamera next;
    next.setViewCenter({0, 0, 0});
    m_scene->root->setCamera(&next);
    rest();

    m_camera->setPosition({0, 300, 0});
    QVERIFY(!LabelBoard::instance().isHidden());
    next.setPosition({0, 300, 0});
    QVERIFY(LabelBoard::instance().isHidden());
    m_scene->root->setCamera(m_camera.get());
}

void tst_LabelBoard::aSecondSceneTakesOver()
{
    nodeAt("A", {0, 0, 0});
    rest();

    tearDown();
    QVERIFY(!LabelBoard::instance().view());
    setUp();
    Node* const node = nodeAt("B", {0, 0, 0});
    rest();

    QVERIFY(shown(node));
    QCOMPARE(LabelBoard::instance().faceCount(), 1);
}

void tst_LabelBoard::aSecondSceneTakesOverFromALivingOne()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    ImageLabel* const label = labelOf(node);
    Qt3DRender::QCamera camera;
    camera.lens()->setPerspectiveProjection(3.0F, 1000.0F / 700.0F, 1.0F, 10000.0F);
    {
        SceneRoot other;
        other.setSceneWidth(1000.0);
        other.setSceneHeight(700.0);
        LabelBoard::instance().watch(&other, &camera);
        QVERIFY(!label->face());
        // Its objects live on, in a scene that nobody sees.
        camera.setUpVector({0, 0, 1});
        camera.setPosition({0, 350, 0});
        camera.setViewCenter({0, 0, 0});
        rest();
        QCOMPARE(LabelBoard::instance().drawnCount(), 0);
        // What the scene that was left does concerns nobody.
        LabelBoard::instance().watch(m_scene->root.get(), nullptr);
        QVERIFY(LabelBoard::instance().view());
        m_camera->setPosition({0, 340, 0});
        QVERIFY(!LabelBoard::instance().isHidden());
    }
    LabelBoard::instance().watch(m_scene->root.get(), m_camera.get());
    look({0, 0, 0}, 330.0F);
    QVERIFY(shown(node));
}

void tst_LabelBoard::aPressTakesTheUppermostLabel()
{
    const QVector<Node*> nodes {nodeAt("FIRST", {0, 0, 0}), nodeAt("SECOND", {5, 0, 0}), nodeAt("AUTO", {0.2F, 0, 0})};
    auto& board = LabelBoard::instance();
    for (Node* const node : nodes.mid(0, 2))
        drag(labelOf(node), QVector3D(0, 50, 0));
    rest();
    ImageLabel* const first = labelOf(nodes.at(0));
    ImageLabel* const second = labelOf(nodes.at(1));
    // The finger lets it go on the other, one half on one half.
    ImageLabel* pressed = board.labelAt(second->coverage().center());
    QCOMPARE(pressed, second);
    drag(second, QVector3D(first->coverage().center() - second->coverage().center() + QPointF(30, 0)));
    const QPointF common = first->coverage().intersected(second->coverage()).center();

    QVERIFY(depthOf(second) < depthOf(first));
    rest();
    QVERIFY(depthOf(second) < depthOf(first));
    QCOMPARE(board.labelAt(common), second);

    QCOMPARE(board.labelAt(first->coverage().center() - QPointF(25, 0)), first);
    QVERIFY(depthOf(first) < depthOf(second));
    QCOMPARE(board.labelAt(common), first);
    look({0, 0, 0}, 340.0F);
    QVERIFY(depthOf(first) < depthOf(second));
    // What nobody touches is behind what a hand has put there, and all are over the pointers.
    QVERIFY(shown(nodes.at(2)));
    QVERIFY(depthOf(second) < depthOf(shown(nodes.at(2))));
    QVERIFY(depthOf(shown(nodes.at(2))) <= 0.0F);
}

QTEST_MAIN(tst_LabelBoard)
#include "tst_LabelBoard.moc"
