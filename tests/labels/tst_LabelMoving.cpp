#include "labels/LabelScene.h"

#include "labels/LabelsPositionsLoader.h"
#include "labels/PaintedTextureText.h"

#include <algorithm>

using namespace Torvik::View3d;

/** Labels that a hand has moved: where they stand, what is kept, and what puts them back. */
class tst_LabelMoving : public QObject, private Kx::Test::LabelScene {
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void aDragMovesItInPixelsAndIsStored();
    void aDoubleTapPutsItBackForGood();
    void aResetPutsAllBack();
    void aStoredPositionIsTakenUp();
    void aMovedLabelKeepsItsPlaceWithZoom();
    void aMovedLabelIsDrawnThoughItsObjectIsOffTheScreen();
    void aPositionThatMeansNoneIsNone();
    void moreMovedLabelsThanAreDrawnAreAllKept();
    void aResetAndAFileReachLabelsThatAreOffTheScreen();
    void aMovedObservationLabelStaysThroughAChange();
    void aLabelGoesOverToTheFindingThatIsMadeAnew();
    void aFindingThatIsMadeAnewKeepsItsRoom();
    void underATurnedObjectItFacesTheViewer();
    void aTremblingObjectMovesNoLabel();
};

void tst_LabelMoving::aDragMovesItInPixelsAndIsStored()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    ImageLabel* const label = labelOf(node);
    const QPointF before = label->screenPosition();
    QVERIFY(!label->hasCustomPosition());

    drag(label, QVector3D(30, -12, 0));
    drag(label, QVector3D(10, 2, 0));

    QVERIFY(label->hasCustomPosition());
    QVERIFY(distance(label->screenPosition() - before, {40, -10}) < 0.01);
    const auto stored = LabelsPositionsLoader::instance().getLabelPosition(node->guid());
    QVERIFY(stored);
    QCOMPARE(*stored, label->storedOffset());
}

void tst_LabelMoving::aDoubleTapPutsItBackForGood()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    ImageLabel* const label = labelOf(node);
    const QPointF before = label->screenPosition();
    drag(label, QVector3D(30, -12, 0));

    label->doubleTapped();

    QVERIFY(!label->hasCustomPosition());
    QVERIFY(distance(label->screenPosition(), before) < 0.01);
    QVERIFY(!LabelsPositionsLoader::instance().getLabelPosition(node->guid()));
}

void tst_LabelMoving::aResetPutsAllBack()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    LabelsPositionsLoader::instance().readLabelsPositionsForProject(m_scene->project().project());
    rest();
    ImageLabel* const label = labelOf(node);
    const QPointF before = label->screenPosition();
    drag(label, QVector3D(30, -12, 0));

    GlobalNav::instance()->resetLabelsPositions();

    QVERIFY(!label->hasCustomPosition());
    QVERIFY(distance(label->screenPosition(), before) < 0.01);
}

void tst_LabelMoving::aStoredPositionIsTakenUp()
{
    Node* const first = nodeAt("A", {0, 0, 0});
    const QVector3D offset(0.004F, -0.006F, 0.0F);
    LabelsPositionsLoader::instance().storeLabelPosition(first->guid(), offset);

    const ImageLabel* const label = labelOf(first);

    QVERIFY(label->hasCustomPosition());
    QCOMPARE(label->storedOffset(), offset);
    const auto view = *LabelBoard::instance().view();
    const double perPixel = static_cast<double>(LabelPlacement::metresPerPixel(view));
    const QPointF centre = label->coverage().center() - QPointF(0.5, 0.5);
    // x runs to the left, y up, from the label to its object.
    QVERIFY(distance(pixelOf(first->position()) - centre, QPointF(-0.004, 0.006) / perPixel) < 0.05);
}

void tst_LabelMoving::aMovedLabelKeepsItsPlaceWithZoom()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    ImageLabel* const label = labelOf(node);
    drag(label, QVector3D(120, 60, 0));
    const QPointF apart = label->screenPosition() - pixelOf(node->position());

    for (const float viewed : {50.0F, 2000.0F, 9000.0F}) {
        look({1, 0, 0}, viewed);
        QVERIFY(distance(label->screenPosition() - pixelOf(node->position()), apart) < 0.1);
    }
}

void tst_LabelMoving::aMovedLabelIsDrawnThoughItsObjectIsOffTheScreen()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    drag(labelOf(node), QVector3D(500, 0, 0));

    // A little more than half a picture to the east, which lies at the right.
    look({-14.0F, 0, 0}, 350.0F);

    QVERIFY(pixelOf(node->position()).x() < 0.0);
    QVERIFY(shown(node));
}

void tst_LabelMoving::aPositionThatMeansNoneIsNone()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    ImageLabel* const label = labelOf(node);
    drag(label, QVector3D(30, 0, 0));
    const QPointF there = label->screenPosition();

    label->setPosition({-10000.0, -10000.0}, 2.12F);

    QVERIFY(distance(label->screenPosition(), there) < 0.01);
}

void tst_LabelMoving::moreMovedLabelsThanAreDrawnAreAllKept()
{
    auto& positions = LabelsPositionsLoader::instance();
    const auto project = m_scene->project().project();
    positions.readLabelsPositionsForProject(project);
    m_scene->root->setSceneWidth(8000.0);
    m_scene->root->setSceneHeight(5600.0);
    QVector<Node*> nodes;
    for (int i = 0; i < 401; ++i)
        nodes.append(nodeAt(QString("N%1").arg(i), QVector3D(i % 21, 0, i / 21) * 3));
    look({30, 0, 30}, 2000.0F);
    QVector<QVector3D> offsets;
    for (Node* const node : qAsConst(nodes)) {
        drag(labelOf(node), QVector3D(10.0F + static_cast<float>(offsets.size()) / 10.0F, 40, 0));
        offsets.append(labelOf(node)->storedOffset());
    }
    rest();
    QCOMPARE(LabelBoard::instance().drawnCount(), LabelBoard::maxDrawn);
    const auto seen = [&nodes] {
        return std::count_if(nodes.begin(), nodes.end(), [](Node* node) { return shown(node); });
    };
    QCOMPARE(int(seen()), LabelBoard::maxDrawn);

    positions.saveLabelsPositionsForPreviousProject();
    rest();
    for (Node* const node : qAsConst(nodes))
        QVERIFY(!node->nameTag().wasMoved());
    positions.readLabelsPositionsForProject(project);
    rest();

    for (int i = 0; i < nodes.size(); ++i) {
        QVERIFY(labelOf(nodes.at(i))->hasCustomPosition());
        QCOMPARE(labelOf(nodes.at(i))->storedOffset(), offsets.at(i));
    }
    QCOMPARE(int(seen()), LabelBoard::maxDrawn);
    // The one without room has it as soon as another is put back into the heap or away.
    const auto hidden = std::find_if(nodes.begin(), nodes.end(), [](Node* node) { return !shown(node); });
    nodes.at(hidden == nodes.begin() ? 1 : 0)->setVisible(false);
    rest();
    QVERIFY(shown(*hidden));

    GlobalNav::instance()->resetLabelsPositions();
    for (Node* const node : qAsConst(nodes))
        QVERIFY(!labelOf(node)->hasCustomPosition() && !node->nameTag().wasMoved());
    QVERIFY(positions.isEmpty());
}

void tst_LabelMoving::aResetAndAFileReachLabelsThatAreOffTheScreen()
{
    Node* const node = nodeAt("FAR", {500, 0, 0});
    auto& positions = LabelsPositionsLoader::instance();
    const auto project = m_scene->project().project();
    positions.readLabelsPositionsForProject(project);
    positions.storeLabelPosition(node->guid(), {0.004F, -0.006F, 0.0F});
    positions.saveLabelsPositionsForPreviousProject();
    rest();
    QVERIFY(!node->findChild<ImageLabel*>() && !node->nameTag().wasMoved());

    positions.readLabelsPositionsForProject(project);
    QVERIFY(!node->findChild<ImageLabel*>() && node->nameTag().wasMoved());

    GlobalNav::instance()->resetLabelsPositions();
    QVERIFY(!node->findChild<ImageLabel*>() && !node->nameTag().wasMoved());
}

void tst_LabelMoving::aMovedObservationLabelStaysThroughAChange()
{
    Observation* const found = m_scene->observation(m_scene->pipe({{-4, 0, 0}, {4, 0, 0}}), "BAB", 2.0);
    rest();
    auto* const label = qobject_cast<ImageLabel*>(found->getLabel());
    drag(label, QVector3D(40, 60, 0));
    const QVector3D offset = label->storedOffset();
    const auto record = m_scene->recordOf(found);

    record->updateValue("OBS_Distance", 5.0);
    Observation* const other = found->modify();
    QVERIFY(other != found);
    delete found;
    rest();

    const ImageLabel* const anew = shown(other);
    QVERIFY(anew);
    QVERIFY(anew->hasCustomPosition());
    QCOMPARE(anew->storedOffset(), offset);
}

void tst_LabelMoving::aLabelGoesOverToTheFindingThatIsMadeAnew()
{
    Observation* const found = m_scene->observation(m_scene->pipe({{-4, 0, 0}, {4, 0, 0}}), "BAB", 2.0);
    const auto record = m_scene->recordOf(found);
    rest();
    ImageLabel* const label = LabelBoard::instance().labelAt(shown(found)->coverage().center());
    QCOMPARE(label, shown(found));
    const QPointer<TouchControlBase> grip = label->touchControl();
    const LabelFace* const face = label->face();
    drag(label, QVector3D(40, 60, 0));
    const QPointF apart = label->coverage().center() - pixelOf(found->position());
    const int paintings = PaintedTextureText::paintings();

    record->updateValue("OBS_Distance", 5.0);
    Observation* const other = found->modify();
    QVERIFY(other != found);
    delete found;
    QVERIFY(grip);
    QCOMPARE(shown(other), label);
    QVERIFY(distance(label->coverage().center() - pixelOf(other->position()), apart) < 0.05);
    drag(label, QVector3D(10, 0, 0));
    rest();

    QCOMPARE(shown(other), label);
    QCOMPARE(label->face(), face);
    QCOMPARE(label->parentRenderable(), other);
    QVERIFY(distance(label->coverage().center() - pixelOf(other->position()), apart + QPointF(10, 0)) < 0.05);
    QCOMPARE(PaintedTextureText::paintings(), paintings);

    // What the record says now is what it says.
    record->updateValue("OBS_Code", "BAC");
    Observation* const third = other->modify();
    delete other;
    rest();
    QCOMPARE(shown(third), label);
    QCOMPARE(label->text(), QString("BAC"));
    QCOMPARE(PaintedTextureText::paintings(), paintings + 1);
    GlobalNav::instance()->setObsVisible(false);
    QVERIFY(!shown(third));
    GlobalNav::instance()->setObsVisible(true);
    rest();
    QCOMPARE(shown(third), label);
    third->transform()->setTranslation(third->position() + QVector3D(1, 0, 0), 0);
    QVERIFY(distance(label->coverage().center() - pixelOf(third->position()), apart + QPointF(10, 0)) < 0.05);

    record->updateValue("OBS_Code", " ");
    Observation* const nameless = third->modify();
    delete third;
    rest();
    QVERIFY(!shown(nameless));
}

void tst_LabelMoving::aFindingThatIsMadeAnewKeepsItsRoom()
{
    Section* const pipe = m_scene->pipe({{-4, 0, 0}, {4, 0, 0}});
    Observation* const first = m_scene->observation(pipe, "BAB", 2.0);
    const Observation* const second = m_scene->observation(pipe, "BAC", 2.1);
    rest();
    QVERIFY(shown(first) && !shown(second));

    Observation* const anew = first->modify();
    delete first;
    QVERIFY(shown(anew));
    rest();
    QVERIFY(shown(anew) && !shown(second));

    // Also while it waits for a face.
    GlobalNav::instance()->setObsVisible(false);
    rest();
    GlobalNav::instance()->setObsVisible(true);
    LabelBoard::instance().arrange();
    const Observation* const last = anew->modify();
    delete anew;
    rest();
    QVERIFY(shown(last) && !shown(second));
}

void tst_LabelMoving::underATurnedObjectItFacesTheViewer()
{
    Node* const node = nodeAt("A", {1, 0, 2});
    rest();
    const ImageLabel* const label = shown(node);
    drag(labelOf(node), QVector3D(25, 35, 0));
    const QVector3D offset = label->storedOffset();

    node->setRotation(QQuaternion::fromEulerAngles(10, 30, -20), 0);
    node->setPosition({2, 0, 1}, 0);

    const auto view = *LabelBoard::instance().view();
    const QMatrix4x4 inScene = node->transform()->matrix() * label->transform()->matrix();
    const auto anchor = *LabelPlacement::onPlane(view, node->position());
    const QVector3D centre = view.eye + LabelPlacement::sceneVector(view, anchor - offset);
    QVERIFY((inScene.column(3).toVector3D() - centre).length() < 1e-3F);
    const QQuaternion facing = LabelPlacement::facing(view);
    for (const QVector3D& axis : {QVector3D(1, 0, 0), QVector3D(0, 1, 0), QVector3D(0, 0, 1)}) {
        QVERIFY((inScene.mapVector(axis) - facing * axis).length() < 1e-4F);
        QVERIFY((label->getFaceViewRotation(nullptr) * axis - facing * axis).length() < 1e-6F);
        QVERIFY((label->getFaceViewRotation(node) * axis - node->rotation().inverted() * facing * axis).length() <
                1e-4F);
    }
    QCOMPARE(label->storedOffset(), offset);
}

void tst_LabelMoving::aTremblingObjectMovesNoLabel()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    const QSignalSpy placed(shown(node)->transform(), &Qt3DCore::QTransform::matrixChanged);

    node->setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 1), 0);
    QCOMPARE(placed.count(), 0);
    node->setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 3), 0);
    QVERIFY(placed.count() > 0);
}

QTEST_MAIN(tst_LabelMoving)
#include "tst_LabelMoving.moc"
