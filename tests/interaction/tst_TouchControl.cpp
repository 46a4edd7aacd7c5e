#include "interaction/TouchControl.h"

#include "interaction/CameraController.h"
#include "interaction/ManualScene.h"
#include "interaction/ObjectPicker.h"
#include "interaction/RotationRing.h"
#include "scene/GlobalNav.h"
#include "scene/Renderable.h"
#include "scene/SceneRoot.h"
#include "scene/SelectionAwareness.h"

#include <QMetaEnum>
#include <QSignalSpy>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QPhongAlphaMaterial>
#include <Qt3DInput/QMouseHandler>
#include <Qt3DLogic/QFrameAction>
#include <Qt3DRender/QPickEvent>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;

namespace {

/** What a control does to its object. */
class Thing : public Renderable {
public:
    Thing(Qt3DCore::QEntity* parent, QString type, QString guid = {})
        : Renderable(parent)
        , m_type(std::move(type))
        , m_guid(std::move(guid))
    {
    }
    QString renderableType() const override { return m_type; }
    QString guid() override { return m_guid.isEmpty() ? Renderable::guid() : m_guid; }
    using Renderable::move;
    void move(QVector3D vector, MeasurementType flags) override
    {
        moves << vector;
        flagsOfMoves << int(flags);
        Renderable::move(vector, flags);
    }
    void doubleTapped() override { ++taps; }

    QVector<QVector3D> moves;
    QVector<int> flagsOfMoves;
    int taps = 0;

private:
    QString m_type;
    QString m_guid;
};

const QString nodeType = QStringLiteral("node");
const QString sectionType = QStringLiteral("section");
const QString labelType = QStringLiteral("label");
/** Odd, so that one pixel is the very middle. */
constexpr double width = 601.0;
constexpr double height = 401.0;
const QPoint centre(300, 200);

bool isAt(const QVector3D& a, const QVector3D& b)
{
    return near(a, b, 0.01F);
}

} // namespace

/** One control on an object of its own, without a window: presses, movements and frames are told by hand. The camera
 *  looks straight down from 200 m. */
class tst_TouchControl : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        SelectionAwareness::instance().deselectAll();
        m_root = std::make_unique<SceneRoot>();
        m_root->setSceneWidth(width);
        m_root->setSceneHeight(height);
        m_camera = new Qt3DRender::QCamera(m_root.get());
        m_camera->lens()->setPerspectiveProjection(45.0F, static_cast<float>(width / height), 1.0F, 10000.0F);
        look({0, 200, 0}, {0, 0, 0}, {0, 0, 1});
        m_root->setCamera(m_camera);
        m_controller = new CameraController(m_root.get());
        GlobalNav::instance()->registerCameraController(m_controller);
        freeAxes(true, false, true);
        GlobalNav::instance()->setTranslateMode(true);
        GlobalNav::instance()->setConnectionMode(false);
        make(nodeType);
    }
    void cleanup()
    {
        freeAxes(true, false, true);
        GlobalNav::instance()->setTranslateMode(true);
        GlobalNav::instance()->setConnectionMode(false);
        m_root->setCamera(nullptr);
        m_root.reset();
    }

    void aControlStartsLockedAndPickable();
    void itsNamesAreWhatHostsCall();
    void everyChangeIsToldOnce();
    void arrowsNeedPermissionAndVisibility();
    void theLayoutSaysWhichArrowsThereAre();
    void anArrowTakesTheAxisUntilItsRelease();
    void lockedAxesDoNotMove();
    void movementIsAppliedByTheFrame();
    void aRayBesideThePlaneMovesNothing();
    void aPressWhoseRayMissesThePlaneBeginsNoDrag();
    void whatTakesTheCamera();
    void aSectionWithoutArrowsMovesAllTheSame();
    void aControlThatGoesLeavesNothing();
    void aLabelIsDraggedInPixels();
    void aTapIsNoDragOfALabel();
    void everyPressWithin400MsOfTheFirstIsADoubleTap();
    void aPressSelectsAndTakesTheModeOfNavigation();
    void theModeOfNavigationReachesTheSelectedOnly();
    void aConnectionPointIsSelectedInConnectionModeOnly();
    void theRingFollowsTheView();
    void theRingBelongsToRotation();
    void aTurnTakesTheCameraWithItsFirstMovement();

private:
    void look(QVector3D position, QVector3D at, QVector3D up)
    {
        m_camera->setPosition(position);
        m_camera->setViewCenter(at);
        m_camera->setUpVector(up);
    }
    static void freeAxes(bool x, bool y, bool z)
    {
        GlobalNav::instance()->setAxisX(x);
        GlobalNav::instance()->setAxisY(y);
        GlobalNav::instance()->setAxisZ(z);
    }
    void make(const QString& type, const QString& guid = {})
    {
        m_thing = new Thing(m_root.get(), type, guid);
        m_control = new TouchControl(m_thing, true);
        m_thing->setTouchControl(m_control);
        m_control->allow(true);
    }
    static Qt3DRender::QPickEvent pickAt(const QPointF& at) { return {at, {}, {}, 0.0F}; }
    void press(const QPointF& at)
    {
        auto pick = pickAt(at);
        m_control->customPicker()->press(&pick);
    }
    void pressArrow(int index, const QPointF& at)
    {
        auto pick = pickAt(at);
        emit m_control->axisArrows().at(index)->picker()->pressed(&pick);
    }
    void pressRing(const QPointF& at)
    {
        auto pick = pickAt(at);
        emit m_control->rotationRing()->picker()->pressed(&pick);
    }
    void moveTo(QPoint at) { emit m_root->touchInput()->mouseHandler()->positionChanged(Touch(at.x(), at.y())); }
    void frame() { emit m_root->touchInput()->frameAction()->triggered(0.02F); }
    void drag(QPoint from, QPoint to)
    {
        press(from);
        moveTo(to);
        frame();
        m_control->finishGesture();
    }
    /** Of the ground, per pixel in the middle of the view. */
    float metresPerPixel() const
    {
        return 2.0F * 200.0F * std::tan(qDegreesToRadians(22.5F)) / static_cast<float>(height);
    }

    std::unique_ptr<SceneRoot> m_root;
    Qt3DRender::QCamera* m_camera = nullptr;
    CameraController* m_controller = nullptr;
    Thing* m_thing = nullptr;
    TouchControl* m_control = nullptr;
};

void tst_TouchControl::aControlStartsLockedAndPickable()
{
    auto* const other = new Thing(m_root.get(), nodeType);
    const TouchControl control(other, false);
    QCOMPARE(control.mode(), TouchControlBase::Translation);
    QVERIFY(!control.isAllowed() && !control.axisArrowVisible() && !control.isEnabled());
    QCOMPARE(control.axisArrowMode(), QString("top"));
    QVERIFY(control.axisArrows().isEmpty());
    QVERIFY(control.customPicker()->isPickEnabled() && !control.containsMouse());
    QCOMPARE(control.rotationRing(), static_cast<RotationRing*>(nullptr));

    auto* const shut = new Thing(m_root.get(), nodeType);
    shut->setEnablePicker(false);
    QVERIFY(!TouchControl(shut, false).customPicker()->isPickEnabled());
}

void tst_TouchControl::itsNamesAreWhatHostsCall()
{
    const QMetaObject& base = TouchControlBase::staticMetaObject;
    for (const char* property : {"allowed", "axisArrowVisible", "axisArrowMode"}) {
        const int index = base.indexOfProperty(property);
        QVERIFY2(index >= 0 && base.property(index).isWritable() && base.property(index).hasNotifySignal(), property);
    }
    for (const char* signal : {"allowedChanged(bool)", "axisArrowVisibleChanged(bool)", "axisArrowModeChanged()"})
        QVERIFY2(base.indexOfSignal(signal) >= 0, signal);
    const QMetaEnum mode = base.enumerator(base.indexOfEnumerator("Mode"));
    QCOMPARE(mode.keyToValue("Translation"), 0);
    QCOMPARE(mode.keyToValue("Rotation"), 1);
    QCOMPARE(mode.keyToValue("ScreenTranslation"), 2);
    for (const char* slot : {"setupMouseHandler()", "frameTriggered(float)", "movedXZ(Qt3DInput::QMouseEvent*)",
                             "rotated(Qt3DInput::QMouseEvent*)", "onPressedObject(Qt3DRender::QPickEvent*)",
                             "setControlAxis(QVector3D)", "resetControlAxis()", "moveParent(QVector3D)"})
        QVERIFY2(m_control->metaObject()->indexOfSlot(slot) >= 0, slot);
    QVERIFY(QMetaObject::invokeMethod(m_control, "setMode",
                                      Q_ARG(Torvik::View3d::TouchControlBase::Mode, TouchControlBase::Rotation)));
    QCOMPARE(m_control->mode(), TouchControlBase::Rotation);
}

void tst_TouchControl::everyChangeIsToldOnce()
{
    QSignalSpy allowed(m_control, &TouchControlBase::allowedChanged);
    QSignalSpy visible(m_control, &TouchControlBase::axisArrowVisibleChanged);
    QSignalSpy layout(m_control, &TouchControlBase::axisArrowModeChanged);
    for (int time = 0; time < 2; ++time) {
        m_control->allow(false);
        m_control->setAxisArrowVisible(true);
        m_control->setAxisArrowMode("front");
    }
    QCOMPARE(allowed, (QList<QVariantList> {{false}}));
    QCOMPARE(visible, (QList<QVariantList> {{true}}));
    QCOMPARE(layout.count(), 1);
    QVERIFY(!m_control->isAllowed() && m_control->axisArrowVisible());
    QCOMPARE(m_control->axisArrowMode(), QString("front"));
}

void tst_TouchControl::arrowsNeedPermissionAndVisibility()
{
    m_control->setAxisArrowVisible(true);
    QCOMPARE(m_control->axisArrows().size(), 2);
    m_control->allow(false);
    QVERIFY(m_control->axisArrows().isEmpty());
    m_control->allow(true);
    QCOMPARE(m_control->axisArrows().size(), 2);
    m_control->setAxisArrowVisible(false);
    QVERIFY(m_control->axisArrows().isEmpty());
    m_control->allow(false);
    m_control->setAxisArrowVisible(true);
    QVERIFY(m_control->axisArrows().isEmpty());
    m_control->allow(true);
    QCOMPARE(m_control->axisArrows().size(), 2);
    m_control->addAxisControlArrows(0.1F); // there already
    QCOMPARE(m_control->axisArrows().size(), 2);
}

void tst_TouchControl::theLayoutSaysWhichArrowsThereAre()
{
    const auto axes = [this] {
        QVector<QVector3D> all;
        for (const auto& arrows : m_control->axisArrows())
            all << arrows->axis();
        return all;
    };
    m_control->setAxisArrowVisible(true);
    const QVector<QVector3D> top {{1, 0, 0}, {0, 0, 1}};
    QCOMPARE(axes(), top);
    QCOMPARE(m_control->axisArrows().first()->renderable(), m_thing);
    m_control->setAxisArrowMode("front"); // those that are there stay
    QCOMPARE(axes(), top);
    m_control->setAxisArrowVisible(false);
    m_control->setAxisArrowVisible(true);
    QCOMPARE(axes(), (QVector<QVector3D> {{0, 1, 0}}));
    m_control->setAxisArrowVisible(false);
    m_control->setAxisArrowMode("side");
    m_control->setAxisArrowVisible(true);
    QVERIFY(axes().isEmpty());
}

void tst_TouchControl::anArrowTakesTheAxisUntilItsRelease()
{
    m_control->setAxisArrowVisible(true);
    freeAxes(false, false, true); // whatever the lock says
    pressArrow(0, centre);
    moveTo(centre + QPoint(50, -50));
    frame();
    const QVector3D moved = m_thing->position();
    QVERIFY(isAt(moved, {-50 * metresPerPixel(), 0, 0}));
    emit m_control->axisArrows().first()->picker()->released(nullptr);
    m_control->finishGesture();
    freeAxes(true, false, true);
    drag(centre, centre + QPoint(0, -50));
    QVERIFY(isAt(m_thing->position() - moved, {0, 0, 50 * metresPerPixel()}));
}

void tst_TouchControl::lockedAxesDoNotMove()
{
    drag(centre, centre + QPoint(-20, -30));
    QVERIFY(isAt(m_thing->position(), QVector3D(20, 0, 30) * metresPerPixel()));
    QCOMPARE(m_thing->flagsOfMoves, (QVector<int> {TransformFlags::Manual}));
    freeAxes(false, false, true); // heard by a control that is there
    const QVector3D before = m_thing->position();
    drag(centre, centre + QPoint(-20, -30));
    QVERIFY(isAt(m_thing->position() - before, QVector3D(0, 0, 30) * metresPerPixel()));
    make(nodeType); // and read by a new one
    drag(centre, centre + QPoint(-20, -30));
    QVERIFY(isAt(m_thing->position(), QVector3D(0, 0, 30) * metresPerPixel()));
}

void tst_TouchControl::movementIsAppliedByTheFrame()
{
    press(centre);
    frame();
    QVERIFY(m_thing->moves.isEmpty());
    moveTo(centre + QPoint(10, 0));
    QVERIFY(m_thing->moves.isEmpty());
    frame();
    QCOMPARE(m_thing->moves.size(), 1);
    // From now on every frame counts, also one in which the finger rests.
    frame();
    QCOMPARE(m_thing->moves.size(), 2);
    QVERIFY(isAt(m_thing->moves.last(), {}));
    m_control->finishGesture();
    moveTo(centre + QPoint(20, 0));
    frame();
    QCOMPARE(m_thing->moves.size(), 2);
    press(centre); // nothing of the earlier movement is left
    frame();
    QCOMPARE(m_thing->moves.size(), 2);
}

void tst_TouchControl::aRayBesideThePlaneMovesNothing()
{
    look({0, 10, -200}, {0, 10, 0}, {0, 1, 0});
    const QPoint onGround(300, 300);
    press(onGround);
    moveTo(centre); // level, never meets the ground
    frame();
    QVERIFY(m_thing->moves.isEmpty());
    moveTo(onGround); // what counts is where the finger was before
    frame();
    QCOMPARE(m_thing->moves.size(), 1);
    QVERIFY(isAt(m_thing->moves.first(), {}));
}

void tst_TouchControl::aPressWhoseRayMissesThePlaneBeginsNoDrag()
{
    look({0, 10, -200}, {0, 10, 0}, {0, 1, 0});
    press(centre);
    QVERIFY(!m_control->customPicker()->isPickEnabled());
    QVERIFY(!m_controller->isEnabled());
    moveTo({300, 300});
    frame();
    QVERIFY(m_thing->moves.isEmpty());
    m_control->finishGesture();
    QVERIFY(m_control->customPicker()->isPickEnabled());
    QVERIFY(m_controller->isEnabled());
}

void tst_TouchControl::whatTakesTheCamera()
{
    QVERIFY(m_control->objectDragAllowed());
    press(centre);
    QVERIFY(!m_controller->isEnabled());
    QVERIFY(!m_control->customPicker()->isPickEnabled());
    QVERIFY(m_control->containsMouse());
    m_control->finishGesture();
    QVERIFY(m_controller->isEnabled());
    QVERIFY(m_control->customPicker()->isPickEnabled());
    m_control->customPicker()->released();
    QVERIFY(!m_control->containsMouse());

    m_control->allow(false);
    press(centre);
    QVERIFY(m_controller->isEnabled());

    make(labelType);
    QVERIFY(m_control->objectDragAllowed());
    make(sectionType);
    QVERIFY(!m_control->objectDragAllowed());
    m_control->setAxisArrowVisible(true);
    QVERIFY(m_control->objectDragAllowed());
    press(centre);
    QVERIFY(!m_controller->isEnabled());
    m_control->allow(false); // the arrows go, the camera comes back nevertheless
    QVERIFY(!m_control->objectDragAllowed());
    m_control->finishGesture();
    QVERIFY(m_controller->isEnabled());
}

void tst_TouchControl::aSectionWithoutArrowsMovesAllTheSame()
{
    make(sectionType);
    press(centre);
    QVERIFY(m_controller->isEnabled());
    moveTo(centre + QPoint(-20, 0));
    frame();
    QVERIFY(isAt(m_thing->position(), QVector3D(20, 0, 0) * metresPerPixel()));
    m_control->finishGesture();
}

void tst_TouchControl::aControlThatGoesLeavesNothing()
{
    m_control->setAxisArrowVisible(true);
    const QList<QPointer<AxisControlArrows>> arrows = m_control->axisArrows();
    const QPointer<CustomPicker> picker = m_control->customPicker();
    press(centre);
    QVERIFY(!m_controller->isEnabled());
    auto* const next = new TouchControl(m_thing, true);
    m_thing->setTouchControl(next);
    QTRY_VERIFY(!arrows.first() && !arrows.last() && !picker);
    QVERIFY(m_controller->isEnabled());
    QCOMPARE(m_thing->touchControl(), next);
    moveTo(centre + QPoint(20, 0));
    frame();
    QVERIFY(m_thing->moves.isEmpty());
}

void tst_TouchControl::aLabelIsDraggedInPixels()
{
    make(labelType);
    GlobalNav::instance()->setCameraFollow(true);
    press({300.4, 200.6});
    QVERIFY(!GlobalNav::instance()->cameraFollow());
    QCOMPARE(m_control->mode(), TouchControlBase::ScreenTranslation);
    QVERIFY(!m_controller->isEnabled());
    moveTo({310, 220});
    frame();
    moveTo({300, 230});
    frame();
    QCOMPARE(m_thing->moves.size(), 2);
    QVERIFY(near(m_thing->moves.first(), {9.6F, 19.4F, 0}, 0.001F));
    QCOMPARE(m_thing->moves.last(), QVector3D(-10, 10, 0));
    QCOMPARE(m_thing->flagsOfMoves, (QVector<int> {4, 4}));
    m_control->finishGesture();
    QVERIFY(m_controller->isEnabled());
    // It never leaves that mode.
    m_control->setMode(TouchControlBase::Rotation);
    QCOMPARE(m_control->mode(), TouchControlBase::ScreenTranslation);
    QVERIFY(!m_control->rotationRing()->isEnabled());
    SelectionAwareness::instance().selectOne(m_thing->guid());
    GlobalNav::instance()->setTranslateMode(false);
    QCOMPARE(m_control->mode(), TouchControlBase::ScreenTranslation);
}

void tst_TouchControl::aTapIsNoDragOfALabel()
{
    make(labelType);
    press({300, 200});
    moveTo({303, 203});
    frame();
    QVERIFY(m_thing->moves.isEmpty());
    // Nothing of the way is lost.
    moveTo({320, 203});
    frame();
    moveTo({319, 203});
    frame();
    QCOMPARE(m_thing->moves, (QVector<QVector3D> {{20, 3, 0}, {-1, 0, 0}}));
    m_control->finishGesture();

    m_thing->moves.clear();
    press({319, 203});
    QCOMPARE(m_thing->taps, 1);
    QVERIFY(!m_controller->isEnabled());
    moveTo({350, 250});
    frame();
    QVERIFY(m_thing->moves.isEmpty());
    m_control->finishGesture();
    QVERIFY(m_controller->isEnabled());
}

void tst_TouchControl::everyPressWithin400MsOfTheFirstIsADoubleTap()
{
    const auto tap = [this] {
        press(centre);
        m_control->finishGesture();
    };
    QElapsedTimer sinceFirst;
    sinceFirst.start();
    tap();
    QCOMPARE(m_thing->taps, 0);
    QTest::qWait(20);
    tap();
    QTest::qWait(130);
    tap();
    QCOMPARE(m_thing->taps, 2);
    // Counted from the first press, not from the last.
    QTest::qWait(qMax(0, 470 - int(sinceFirst.elapsed())));
    tap();
    QCOMPARE(m_thing->taps, 2);
}

void tst_TouchControl::aPressSelectsAndTakesTheModeOfNavigation()
{
    m_root->setMaxSelection(2);
    QSignalSpy exceeded(m_root.get(), &SceneRoot::maxSelectionExceeded);
    SelectionAwareness::instance().selectOne("a");
    SelectionAwareness::instance().selectNext("b");
    m_control->allow(false);
    press(centre);
    QCOMPARE(exceeded.count(), 1); // one more of several
    QCOMPARE(m_control->mode(), TouchControlBase::Translation);
    m_root->setMaxSelection(1);
    GlobalNav::instance()->setTranslateMode(false);
    press(centre);
    QCOMPARE(exceeded.count(), 1); // the only one
    QCOMPARE(m_control->mode(), TouchControlBase::Rotation);
    // From now on the object lets presses through.
    m_root->setMaxSelection(2);
    press(centre);
    QCOMPARE(exceeded.count(), 1);
    m_control->disableArrows();
    QVERIFY(!m_control->isEnabled());
    press(centre);
    QCOMPARE(exceeded.count(), 2);
    QVERIFY(m_control->isEnabled());
}

void tst_TouchControl::theModeOfNavigationReachesTheSelectedOnly()
{
    TouchControl* const first = m_control;
    make(nodeType);
    SelectionAwareness::instance().selectOne(m_thing->guid());
    GlobalNav::instance()->setTranslateMode(false);
    QCOMPARE(m_control->mode(), TouchControlBase::Rotation);
    QCOMPARE(first->mode(), TouchControlBase::Translation);
    GlobalNav::instance()->setTranslateMode(true);
    QCOMPARE(m_control->mode(), TouchControlBase::Translation);
}

void tst_TouchControl::aConnectionPointIsSelectedInConnectionModeOnly()
{
    make(QStringLiteral("connectionPoint"), QStringLiteral("connection_1"));
    GlobalNav::instance()->setTranslateMode(false);
    m_root->setMaxSelection(0); // whoever selects one more is refused
    QSignalSpy refused(m_root.get(), &SceneRoot::maxSelectionExceeded);
    drag(centre, centre + QPoint(-20, 0));
    QCOMPARE(refused.count(), 0);
    QCOMPARE(m_control->mode(), TouchControlBase::Translation);
    // It can be dragged though.
    QVERIFY(isAt(m_thing->position(), QVector3D(20, 0, 0) * metresPerPixel()));
    GlobalNav::instance()->setConnectionMode(true);
    press(centre);
    QCOMPARE(refused.count(), 1);
    m_control->finishGesture();
}

void tst_TouchControl::theRingFollowsTheView()
{
    const RotationRing* const ring = m_control->rotationRing();
    QVERIFY(ring && !ring->isEnabled());
    QCOMPARE(ring->parentEntity(), m_control);
    QVERIFY(ring->componentsOfType<Qt3DExtras::QCylinderMesh>().isEmpty());
    m_control->setMode(TouchControlBase::Rotation);
    const auto* const mesh = ring->componentsOfType<Qt3DExtras::QCylinderMesh>().value(0);
    QVERIFY(mesh);
    QCOMPARE(mesh->radius(), 25.0F);
    QCOMPARE(mesh->length(), 0.1F);
    QCOMPARE(mesh->slices(), 42);
    look({0, 80, 0}, {0, 0, 0}, {0, 0, 1});
    QCOMPARE(mesh->radius(), 10.0F);
    QCOMPARE(m_control->calculateRotationTorusRadius(), 10.0F);
    look({0, 8, 0}, {0, 0, 0}, {0, 0, 1});
    QCOMPARE(mesh->radius(), 2.5F);
    QCOMPARE(ring->componentsOfType<Qt3DCore::QTransform>().value(0)->translation(), QVector3D(0, -0.2F, 0));
    const auto* const material = ring->componentsOfType<Qt3DExtras::QPhongAlphaMaterial>().value(0);
    QCOMPARE(material->specular(), QColor(1, 1, 1));
    QCOMPARE(material->diffuse().rgb(), QColor(Qt::white).rgb());
    QCOMPARE(material->ambient(), QColor(Qt::white));
    QCOMPARE(material->shininess(), 0.0F);
    QCOMPARE(material->alpha(), 0.85F);
}

void tst_TouchControl::theRingBelongsToRotation()
{
    auto* const late = new Thing(m_root.get(), nodeType);
    auto* const control = new TouchControl(late, false);
    control->setMode(TouchControlBase::Rotation);
    QVERIFY(control->isEnabled());
    QVERIFY(control->rotationRing()->isEnabled() && control->rotationRing()->picker()->isEnabled());
    QVERIFY(!control->customPicker()->isPickEnabled());
    control->disableArrows();
    QVERIFY(!control->rotationRing()->isEnabled() && !control->rotationRing()->picker()->isEnabled());
    QVERIFY(control->customPicker()->isPickEnabled());
    control->setMode(TouchControlBase::Translation);
    QVERIFY(!control->rotationRing()->isEnabled() && !control->rotationRing()->picker()->isEnabled());
    QVERIFY(control->rotationRing()->componentsOfType<Qt3DExtras::QCylinderMesh>().isEmpty());
}

void tst_TouchControl::aTurnTakesTheCameraWithItsFirstMovement()
{
    m_control->setMode(TouchControlBase::Rotation);
    m_control->allow(false);
    pressRing(centre + QPoint(0, -50));
    moveTo(centre + QPoint(-50, 0));
    QCOMPARE(m_thing->transform()->rotationY(), 0.0F);
    m_control->allow(true);
    pressRing(centre + QPoint(0, -50));
    QVERIFY(m_controller->isEnabled());
    QVERIFY(!m_control->customPicker()->isPickEnabled());
    moveTo(centre + QPoint(-50, 0)); // at once, without a frame; +z to +x
    QVERIFY(!m_controller->isEnabled());
    QVERIFY(qAbs(m_thing->transform()->rotationY() - 90.0F) < 0.1F);
    QCOMPARE(m_thing->transformFlags(), int(TransformFlags::Manual));
    m_control->finishGesture();
    QVERIFY(m_controller->isEnabled());
    QVERIFY(m_control->customPicker()->isPickEnabled());
    moveTo(centre + QPoint(0, 50));
    QVERIFY(qAbs(m_thing->transform()->rotationY() - 90.0F) < 0.1F);
    QVERIFY(m_thing->moves.isEmpty());
}

QTEST_MAIN(tst_TouchControl)
#include "tst_TouchControl.moc"
