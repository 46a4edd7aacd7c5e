#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "labels/LabelFace.h"
#include "labels/LabelsPositionsLoader.h"
#include "labels/LabelsSignalRouter.h"
#include "labels/PaintedTextureText.h"
#include "network/NodeInformationToggle.h"
#include "network/Observation.h"
#include "network/ObservationScene.h"
#include "scene/GlobalNav.h"

#include <QPainter>
#include <QSignalSpy>
#include <Qt3DRender/QCamera>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;

/** Labels of real objects in a scene that nobody draws: what they say and where they stand. */
class tst_ImageLabel : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aNodeHasALabelThatSaysItsName();
    void whatIsSetTwiceIsToldOnce();
    void aHeightThatDiffersByNoiseIsTheSame();
    void aLabelIsShownOnlyIfBothSwitchesAreOn();
    void aLabelStandsCentredAboveItsObject();
    void itsSizeIsInPixels_data();
    void itsSizeIsInPixels();
    void aLabelOffTheScreenIsNotMade();
    void whatComesOntoTheScreenGetsALabelAndWhatLeavesLosesIt();
    void aNamelessObjectHasNoLabelToBeSeen();
    void aDragMovesItInPixelsAndIsStored();
    void aDoubleTapPutsItBackForGood();
    void aResetPutsAllBack();
    void aStoredPositionIsTakenUp();
    void aMovedLabelKeepsItsPlaceWithZoom();
    void aMovedLabelIsDrawnThoughItsObjectIsOffTheScreen();
    void aPositionThatMeansNoneIsNone();
    void labelsHideWhileTheViewMoves();
    void nothingIsMadeOrShownWhileTheViewMoves();
    void whatIsSwitchedWhileTheViewMovesCountsAtRest();
    void aLabelFollowsItsObject();
    void aHiddenObjectHasAHiddenLabel();
    void aSectionIsNamedAtTheMiddleOfItsPipe();
    void aSectionTurnedByHandTakesItsLabelAlong();
    void aStubHasNoLabel();
    void anObservationObeysTwoSwitches();
    void severalLinesOnAndOff();
    void aNameThatComesWhileLinesAreShownGetsThemToo();
    void afterAChangeTheLinesStay();
    void longAndForeignNames_data();
    void longAndForeignNames();
    void nothingIsPaintedTwice();
    void facesAreBoundedAndReused();
    void labelsThatWouldBeAHeapAreLeftOut();
    void anObjectThatGoesTakesItsLabelAlong();
    void anObjectThatGoesLeavesTheOrderOfTheOthers();
    void aSecondSceneTakesOver();
    void aSecondSceneTakesOverFromALivingOne();

private:
    Node* nodeAt(const QString& name, const QVector3D& place)
    {
        return m_scene->node(name, NetworkScene::storedPoint(place, TransformFlags::GIS));
    }
    ImageLabel* labelOf(Node* node) { return qobject_cast<ImageLabel*>(node->getLabel()); }
    static void drag(ImageLabel* label, const QVector3D& pixels) { label->move(pixels, TransformFlags::Flags(4)); }
    ImageLabel* shown(const Qt3DCore::QEntity* object) const
    {
        auto* const label = object->findChild<ImageLabel*>({}, Qt::FindDirectChildrenOnly);
        return label && label->face() && label->isShown() && label->face()->isEnabled() ? label : nullptr;
    }
    void look(const QVector3D& centre, float distance)
    {
        m_camera->setUpVector({0, 0, 1});
        m_camera->setPosition(centre + QVector3D(0, distance, 0));
        m_camera->setViewCenter(centre);
        rest();
    }
    /** Until the labels have come back. */
    static void rest() { QTRY_VERIFY(!LabelBoard::instance().isBusy()); }
    QPointF pixelOf(const QVector3D& point) const
    {
        const auto view = *LabelBoard::instance().view();
        return LabelPlacement::pixelOf(view, *LabelPlacement::onPlane(view, point));
    }
    static double distance(QPointF a, QPointF b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); }

    std::unique_ptr<ObservationScene> m_scene;
    std::unique_ptr<Qt3DRender::QCamera> m_camera;
};

void tst_ImageLabel::init()
{
    GlobalNav::instance()->setLabelsVisible(true);
    GlobalNav::instance()->setObsVisible(true);
    GlobalNav::instance()->setManholeFullInfoVisible(false);
    GlobalNav::instance()->setLabelLineHeight(10.0F);
    m_scene = std::make_unique<ObservationScene>();
    m_camera = std::make_unique<Qt3DRender::QCamera>();
    m_camera->lens()->setPerspectiveProjection(3.0F, 1000.0F / 700.0F, 1.0F, 10000.0F);
    m_scene->root->setSceneWidth(1000.0);
    m_scene->root->setSceneHeight(700.0);
    m_scene->root->setCamera(m_camera.get());
    look({0, 0, 0}, 350.0F);
}

void tst_ImageLabel::cleanup()
{
    m_scene.reset();
    m_camera.reset();
}

void tst_ImageLabel::aNodeHasALabelThatSaysItsName()
{
    Node* const node = nodeAt("M12", {1, 0, 2});

    ImageLabel* const label = labelOf(node);

    QVERIFY(label);
    QCOMPARE(label->text(), QString("M12"));
    QCOMPARE(label->property("text").toString(), QString("M12"));
    QCOMPARE(label->renderableType(), QString("label"));
    QCOMPARE(label->guid(), node->guid());
    QCOMPARE(label->parentNode(), static_cast<Qt3DCore::QNode*>(node));
    QCOMPARE(label->parentRenderable(), static_cast<Renderable*>(node));
    QCOMPARE(label->orientation(), node->orientation());
    QCOMPARE(label->textColor(), QColor("white"));
    QCOMPARE(label->backgroundColor(), QColor(64, 135, 249));
    QCOMPARE(label->font().family(), QString("DejaVu Sans Mono"));
    QCOMPARE(label->font().pointSize(), 24);
    QCOMPARE(node->getLabel(), static_cast<Label*>(label));
}

void tst_ImageLabel::whatIsSetTwiceIsToldOnce()
{
    ImageLabel* const label = labelOf(nodeAt("A", {0, 0, 0}));
    const QSignalSpy texts(label, &Label::textChanged);
    const QSignalSpy fonts(label, &Label::fontChanged);
    const QSignalSpy visibilities(label, &Label::visibleChanged);
    QFont larger = label->font();
    larger.setPointSize(30);

    for (int i = 0; i < 2; ++i) {
        label->setText("B");
        label->setFont(larger);
        label->setVisible(false);
    }

    QCOMPARE(texts.count(), 1);
    QCOMPARE(texts.first().first().toString(), QString("B"));
    QCOMPARE(fonts.count(), 1);
    QCOMPARE(visibilities.count(), 1);
    QCOMPARE(visibilities.first().first().toBool(), false);
}

void tst_ImageLabel::aHeightThatDiffersByNoiseIsTheSame()
{
    ImageLabel* const label = labelOf(nodeAt("A", {0, 0, 0}));
    label->setHeight(2.0F);
    const QSignalSpy heights(label, &Label::heightChanged);
    const float width = label->width();

    label->setHeight(2.00001F);
    QCOMPARE(heights.count(), 0);
    QCOMPARE(label->height(), 2.0F);

    label->setHeight(4.0F);
    QCOMPARE(heights.count(), 1);
    QCOMPARE(label->width(), 2.0F * width);
}

void tst_ImageLabel::aLabelIsShownOnlyIfBothSwitchesAreOn()
{
    GlobalNav::instance()->setLabelsVisible(false);
    ImageLabel* const label = labelOf(nodeAt("A", {0, 0, 0}));
    QVERIFY(!label->isEnabled());

    label->setVisible(false);
    label->setVisible(true);
    QVERIFY(!label->isEnabled());

    GlobalNav::instance()->setLabelsVisible(true);
    QVERIFY(label->isEnabled());

    label->setVisible(false);
    QVERIFY(!label->isEnabled());
    GlobalNav::instance()->setLabelsVisible(false);
    GlobalNav::instance()->setLabelsVisible(true);
    QVERIFY(!label->isEnabled());
}

void tst_ImageLabel::aLabelStandsCentredAboveItsObject()
{
    Node* const node = nodeAt("M12", {1, 0, 2});
    rest();

    const ImageLabel* const label = shown(node);

    QVERIFY(label);
    const QPointF object = pixelOf(node->position());
    const QRectF covered = label->coverage();
    QVERIFY(std::abs(covered.center().x() - 0.5 - object.x()) < 0.01);
    QVERIFY(std::abs(covered.top() - 0.5 - (object.y() - 2.12 * 24)) < 0.01);
    // The pointer ends at the object.
    const auto view = *LabelBoard::instance().view();
    const QVector3D tip = label->storedOffset();
    const double perPixel = static_cast<double>(LabelPlacement::metresPerPixel(view));
    QVERIFY(std::abs(static_cast<double>(-tip.x()) / perPixel) < 0.01);
    QVERIFY(std::abs(static_cast<double>(-tip.y()) / perPixel - (2.12 * 24 - 12)) < 0.01);
}

void tst_ImageLabel::itsSizeIsInPixels_data()
{
    QTest::addColumn<float>("viewed");
    for (const float viewed : {50.0F, 350.0F, 2000.0F, 100000.0F})
        QTest::newRow(qPrintable(QString::number(static_cast<double>(viewed)))) << viewed;
}

void tst_ImageLabel::itsSizeIsInPixels()
{
    QFETCH(float, viewed);
    Node* const node = nodeAt("M12345", {0.3F, 0, 0.2F});
    m_camera->setFarPlane(viewed * 2);
    look({0, 0, 0}, viewed);

    const ImageLabel* const label = shown(node);

    QVERIFY(label);
    QVERIFY(std::abs(label->coverage().height() - 24.0) < 0.001);
    const QFontMetricsF metrics(label->font());
    const double aspect = metrics.horizontalAdvance("M12345") / metrics.height();
    QVERIFY(std::abs(label->coverage().width() - 24.0 * aspect) < 0.01);
    QCOMPARE(label->face()->texturePixels(), label->coverage().size().toSize());
}

void tst_ImageLabel::aLabelOffTheScreenIsNotMade()
{
    Node* const seen = nodeAt("A", {0, 0, 0});
    Node* const far = nodeAt("B", {500, 0, 0});
    rest();

    QVERIFY(shown(seen));
    QVERIFY(!far->findChild<ImageLabel*>());
    QCOMPARE(LabelBoard::instance().drawnCount(), 1);
    QCOMPARE(LabelBoard::instance().tagCount(), 2);
}

void tst_ImageLabel::whatComesOntoTheScreenGetsALabelAndWhatLeavesLosesIt()
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

void tst_ImageLabel::aNamelessObjectHasNoLabelToBeSeen()
{
    Node* const node = nodeAt("", {0, 0, 0});
    rest();
    QVERIFY(!node->findChild<ImageLabel*>());
    ImageLabel* const label = labelOf(node);
    QVERIFY(!label->hasMesh());
    QVERIFY(!label->textBoundingBoxNotEmpty());

    const QSignalSpy told(label, &Renderable::visibilityChanged);
    node->setName("A");
    rest();
    QVERIFY(shown(node));
    QCOMPARE(told.count(), 1);

    Node* const blank = nodeAt(" \t", {3, 0, 0});
    rest();
    QVERIFY(!blank->findChild<ImageLabel*>());
    QCOMPARE(LabelBoard::instance().drawnCount(), 1);

    node->setName("");
    rest();
    QVERIFY(!shown(node));
    QVERIFY(!label->hasMesh());
    QCOMPARE(told.count(), 2);
    QCOMPARE(told.last().first().toBool(), false);
}

void tst_ImageLabel::aDragMovesItInPixelsAndIsStored()
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

void tst_ImageLabel::aDoubleTapPutsItBackForGood()
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

void tst_ImageLabel::aResetPutsAllBack()
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

void tst_ImageLabel::aStoredPositionIsTakenUp()
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

void tst_ImageLabel::aMovedLabelKeepsItsPlaceWithZoom()
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

void tst_ImageLabel::aMovedLabelIsDrawnThoughItsObjectIsOffTheScreen()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    drag(labelOf(node), QVector3D(500, 0, 0));

    // A little more than half a picture to the east, which lies at the right.
    look({-14.0F, 0, 0}, 350.0F);

    QVERIFY(pixelOf(node->position()).x() < 0.0);
    QVERIFY(shown(node));
}

void tst_ImageLabel::aPositionThatMeansNoneIsNone()
{
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    ImageLabel* const label = labelOf(node);
    drag(label, QVector3D(30, 0, 0));
    const QPointF there = label->screenPosition();

    label->setPosition({-10000.0, -10000.0}, 2.12F);

    QVERIFY(distance(label->screenPosition(), there) < 0.01);
}

void tst_ImageLabel::labelsHideWhileTheViewMoves()
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

void tst_ImageLabel::nothingIsMadeOrShownWhileTheViewMoves()
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

void tst_ImageLabel::whatIsSwitchedWhileTheViewMovesCountsAtRest()
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

void tst_ImageLabel::aLabelFollowsItsObject()
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

void tst_ImageLabel::aHiddenObjectHasAHiddenLabel()
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

void tst_ImageLabel::aSectionIsNamedAtTheMiddleOfItsPipe()
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

void tst_ImageLabel::aSectionTurnedByHandTakesItsLabelAlong()
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

void tst_ImageLabel::aStubHasNoLabel()
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

void tst_ImageLabel::anObservationObeysTwoSwitches()
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

void tst_ImageLabel::severalLinesOnAndOff()
{
    Node* const node = nodeAt("M12", {0, 0, 0});
    rest();
    const QString info = node->getFullManholeInfo();

    GlobalNav::instance()->setManholeFullInfoVisible(true);
    rest();
    const ImageLabel* label = shown(node);
    QVERIFY(label);
    QCOMPARE(label->text(), " M12" + info);
    QCOMPARE(node->name(), " M12" + info);
    QVERIFY(label->isMultiline());
    QCOMPARE(label->font().pointSize(), 288);
    QCOMPARE(label->font().stretch(), 8);
    QVERIFY(std::abs(label->coverage().height() - 72.0) < 0.001);
    // Its texture is as large as what is seen of it, not as its letters.
    QCOMPARE(label->face()->texturePixels(), label->coverage().size().toSize());

    GlobalNav::instance()->setManholeFullInfoVisible(false);
    rest();
    label = shown(node);
    QVERIFY(label);
    QCOMPARE(node->name(), QString("M12"));
    QVERIFY(!label->isMultiline());
    QCOMPARE(label->font().pointSize(), 24);
    QVERIFY(std::abs(label->coverage().height() - 24.0) < 0.001);
}

void tst_ImageLabel::aNameThatComesWhileLinesAreShownGetsThemToo()
{
    GlobalNav::instance()->setManholeFullInfoVisible(true);
    Node* const node = nodeAt("M12", {0, 0, 0});
    ImageLabel* const label = labelOf(node);
    const float height = label->height();
    QVERIFY(label->isMultiline());
    QVERIFY(label->text().startsWith(" M12\n DN + "));

    // The factor is applied once more; the next look at the screen sets it right.
    node->setName("M13");
    QVERIFY(label->text().startsWith(" M13\n DN + "));
    QVERIFY(std::abs(label->height() / height - 3.0F) < 1e-4F);
    rest();
    QVERIFY(std::abs(label->coverage().height() - 72.0) < 0.001);
}

void tst_ImageLabel::afterAChangeTheLinesStay()
{
    Node* const node = nodeAt("M12", {0, 0, 0});
    GlobalNav::instance()->setManholeFullInfoVisible(true);
    const QString lines = node->name();
    node->setDepth(7.5);

    GlobalNav::instance()->setManholeFullInfoVisible(false);

    QCOMPARE(node->name(), lines.trimmed());
}

void tst_ImageLabel::longAndForeignNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("umlauts") << QStringLiteral("Mühlenstraße Ä7");
    QTest::newRow("Polish") << QStringLiteral("Łódź-żółć 12");
    QTest::newRow("Greek") << QStringLiteral("Φρεάτιο Ω3");
    QTest::newRow("Cyrillic") << QStringLiteral("Колодец Й-9");
    QTest::newRow("beyond the first plane") << QStringLiteral("𝟙𝟚 M");
    QTest::newRow("200 letters") << QString(200, 'W');
    QTest::newRow("lines") << QStringLiteral("one\ntwo");
}

void tst_ImageLabel::longAndForeignNames()
{
    QFETCH(QString, name);
    Node* const node = nodeAt(name, {0, 0, 0});
    rest();

    const ImageLabel* const label = shown(node);

    QVERIFY(label);
    QCOMPARE(label->text(), name);
    QVERIFY(std::abs(label->coverage().height() - 24.0) < 0.001);
    const QSize pixels = label->face()->texturePixels();
    QVERIFY(pixels.width() > 20 && pixels.width() <= 4096);
    QImage picture(pixels, QImage::Format_RGB32);
    QPainter painter(&picture);
    paintLabel(painter, pixels, {name, label->font(), Qt::white, label->backgroundColor(), false});
    painter.end();
    // Every tenth of the label has letters: none is cut off, and none is a gap.
    for (int part = 0; part < 10; ++part) {
        int letters = 0;
        for (int x = part * pixels.width() / 10; x < (part + 1) * pixels.width() / 10; ++x) {
            for (int y = 0; y < pixels.height(); ++y)
                letters += qGray(picture.pixel(x, y)) > 200 ? 1 : 0;
        }
        QVERIFY2(letters > 0 || name.contains(' '), qPrintable(QString::number(part)));
    }
}

void tst_ImageLabel::nothingIsPaintedTwice()
{
    const int atFirst = PaintedTextureText::paintings();
    Node* const node = nodeAt("A", {0, 0, 0});
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 1);

    look({1, 0, 1}, 200.0F);
    GlobalNav::instance()->setLabelsVisible(false);
    rest();
    GlobalNav::instance()->setLabelsVisible(true);
    rest();
    drag(labelOf(node), QVector3D(5, 5, 0));
    node->setPosition({1, 0, 0}, 0);
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 1);

    node->setName("AB");
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 2);

    GlobalNav::instance()->setManholeFullInfoVisible(true);
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 3);
    node->setName("ABC");
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 4);
    GlobalNav::instance()->setManholeFullInfoVisible(false);
    rest();
    QCOMPARE(PaintedTextureText::paintings(), atFirst + 5);
    QVERIFY(shown(node));
}

void tst_ImageLabel::facesAreBoundedAndReused()
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

void tst_ImageLabel::labelsThatWouldBeAHeapAreLeftOut()
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

void tst_ImageLabel::anObjectThatGoesTakesItsLabelAlong()
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

void tst_ImageLabel::anObjectThatGoesLeavesTheOrderOfTheOthers()
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
    look({0, 0, 0}, 350.0F);
    QVERIFY(shown(second));
}

void tst_ImageLabel::aSecondSceneTakesOverFromALivingOne()
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

void tst_ImageLabel::aSecondSceneTakesOver()
{
    nodeAt("A", {0, 0, 0});
    rest();

    cleanup();
    QVERIFY(!LabelBoard::instance().view());
    init();
    Node* const node = nodeAt("B", {0, 0, 0});
    rest();

    QVERIFY(shown(node));
    QCOMPARE(LabelBoard::instance().faceCount(), 1);
}

QTEST_MAIN(tst_ImageLabel)
#include "tst_ImageLabel.moc"
