#include "labels/LabelScene.h"

using namespace Torvik::View3d;

/** Labels follow what they name: place, course, turn and visibility of nodes, sections and observations. */
class tst_LabelOwners : public QObject, private Kx::Test::LabelScene {
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void aLabelFollowsItsObject();
    void aHiddenObjectHasAHiddenLabel();
    void aSectionIsNamedAtTheMiddleOfItsPipe();
    void aSectionTurnedByHandTakesItsLabelAlong();
    void aStubHasNoLabel();
    void anObservationObeysTwoSwitches();
};

void tst_LabelOwners::aLabelFollowsItsObject()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    const ImageLabel* const label = shown(node);
    const QPointF before = label->screenPosition();
    const QPointF object = pixelOf(node->position());

    node->setPosition({2, 0, 1}, 0);
    QVERIFY(distance(label->screenPosition() - before, pixelOf(node->position()) - object) < 0.01);
    QVERIFY(distance(label->screenPosition(), before) > 50.0);

    node->setPosition({300, 0, 0}, 0);
    Node* const other = nodeAt("B", {300, 0, 300});
    rest();
    other->setPosition({0, 0, 0}, 0);
    QTRY_VERIFY(shown(other));
}

void tst_LabelOwners::aHiddenObjectHasAHiddenLabel()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    QVERIFY(shown(node));

    node->setVisible(false);
    rest();
    QVERIFY(!shown(node));

    node->setVisible(true);
    rest();
    QVERIFY(shown(node));

    Node* const unseen = Node::createVirtual(m_scene->root.get(), false, "V", "NOD");
    Node* const seen = Node::createVirtual(m_scene->root.get(), true, "W", "NOD");
    seen->setPosition({3, 0, 0}, 0);
    rest();
    QVERIFY(!shown(unseen));
    QVERIFY(shown(seen));
}

void tst_LabelOwners::aSectionIsNamedAtTheMiddleOfItsPipe()
{
    Section* const section = m_scene->section(nodeAt("A", {-4, 0, 0}), nodeAt("B", {4, 0, 0}), {},
                                              {{-4, 0, 0}, {4, 0, 0}}, TransformFlags::PipeShape);
    section->setName("A-B");
    rest();

    const ImageLabel* const label = shown(section);

    QVERIFY(label);
    QCOMPARE(label->text(), QString("A-B"));
    const QMatrix4x4 middle = section->pipeTransMatrixAtDistance(static_cast<float>(section->length()) / 2);
    const QPointF point = pixelOf(middle.column(3).toVector3D());
    QVERIFY(distance(label->coverage().center() - QPointF(0.5, 0.5), point - QPointF(0, 2.12 * 24 - 12)) < 0.1);
}

void tst_LabelOwners::aSectionTurnedByHandTakesItsLabelAlong()
{
    Section* const section = m_scene->section(nodeAt("A", {0, 0, 0}), nodeAt("B", {6, 0, 0}), {},
                                              {{0, 0, 0}, {6, 0, 0}}, TransformFlags::PipeShape);
    section->setName("A-B");
    rest();
    const ImageLabel* const label = shown(section);
    const QPointF before = label->screenPosition();

    section->transform()->setRotationY(section->transform()->rotationY() + 90.0F, TransformFlags::Manual);

    const QMatrix4x4 middle = section->pipeTransMatrixAtDistance(static_cast<float>(section->length()) / 2);
    const QPointF point = pixelOf(middle.column(3).toVector3D());
    QVERIFY(distance(label->coverage().center() - QPointF(0.5, 0.5), point - QPointF(0, 2.12 * 24 - 12)) < 0.1);
    QVERIFY(distance(label->screenPosition(), before) > 50.0);
}

void tst_LabelOwners::aStubHasNoLabel()
{
    Section* const section = m_scene->section(nodeAt("", {0, 0, 0}), nullptr);
    section->setName("stub");
    rest();
    QVERIFY(section->length() <= 0.0101);
    QVERIFY(!shown(section));

    section->onDistanceCounterChanged(5.0);
    rest();
    QVERIFY(shown(section));
}

void tst_LabelOwners::anObservationObeysTwoSwitches()
{
    Observation* const observation = m_scene->observation(m_scene->pipe({{-4, 0, 0}, {4, 0, 0}}), "BAB", 2.0);
    rest();
    auto* const nav = GlobalNav::instance();
    const ImageLabel* const label = shown(observation);
    QVERIFY(label);
    QCOMPARE(label->text(), QString("BAB"));
    QCOMPARE(label->backgroundColor(), QColor(63, 175, 249));

    for (const auto set : {&GlobalNav::setObsVisible, &GlobalNav::setLabelsVisible}) {
        (nav->*set)(false);
        rest();
        QVERIFY(!shown(observation));
        (nav->*set)(true);
        rest();
        QVERIFY(shown(observation));
    }

    nav->setObsVisible(false);
    nav->setLabelsVisible(false);
    nav->setObsVisible(true);
    rest();
    QVERIFY(!shown(observation));
    nav->setLabelsVisible(true);
    rest();
    QVERIFY(shown(observation));
}

QTEST_MAIN(tst_LabelOwners)
#include "tst_LabelOwners.moc"
