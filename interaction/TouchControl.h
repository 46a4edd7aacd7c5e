#pragma once

#include "interaction/AxisControlArrows.h"
#include "interaction/CustomPicker.h"
#include "interaction/TouchInput.h"
#include "scene/KxView3dExport.h"
#include "scene/TouchControlBase.h"
#include "scene/TransformFlags.h"

#include <QList>
#include <QMetaObject>
#include <QPointF>
#include <QPointer>
#include <QTimer>
#include <QVector3D>

#include <optional>

namespace Qt3DInput {
class QMouseEvent;
}
namespace Qt3DRender {
class QPickEvent;
}

namespace Torvik::View3d {

class RotationRing;

/** Turns a press on its object into selection, a double tap, a drag on a plane or along one axis, a turn about the
 *  vertical, or, for a label, a drag in pixels of the screen. All that it does to the object is marked Manual.
 *
 *  Input events only note where the finger is; a drag is applied once a frame. While an object is dragged the camera is
 *  off; that of a section without arrows leaves it on. Only an allowed object can be dragged; any can be selected.
 *  Owned by its renderable. Main thread only. */
class KXVIEW3D_EXPORT TouchControl : public TouchControlBase {
    Q_OBJECT

public:
    /** Disabled until setMode() when `enabled` is false; the rotation ring is made when it is enabled first. */
    TouchControl(Renderable* parent, bool enabled);
    ~TouchControl() override;

    void disableArrows() override;
    void enablePick() override;
    void disablePick() override;
    void allow(bool allowed) override;
    bool isAllowed() const override { return m_allowed; }
    void addAxisControlArrows(float size) override;
    void clearAxisControlArrows() override;
    bool axisArrowVisible() const override { return m_axisArrowVisible; }
    void setAxisArrowVisible(bool visible) override;
    QString axisArrowMode() const override { return m_axisArrowMode; }
    /** "top" or "front"; any other layout has no arrows. */
    void setAxisArrowMode(QString const& mode) override;

    Mode mode() const { return m_mode; }
    bool containsMouse() const;
    QVector3D renderableWorldPos() const;
    CustomPicker* customPicker() const { return m_customPicker; }
    RotationRing* rotationRing() const { return m_ring; }
    const QList<QPointer<AxisControlArrows>>& axisArrows() const { return m_axisArrows; }
    /** Whether a drag of the object takes the gestures from the camera. */
    bool objectDragAllowed() const;
    /** Turns the object about the vertical by degrees. */
    void rotateAroundY(float angle);
    float calculateRotationTorusRadius() const;
    /** The selection that a press on the object brings about. */
    void selectOnPress();
    /** The same for a tap whose press the renderer has not told of, or not yet. */
    void selectOnTap();
    /** Ends a drag or turn under way as a release does, for a finger whose release was not seen. */
    void finishGesture();

public slots:
    /** Enables the control. ScreenTranslation is final. */
    void setMode(Torvik::View3d::TouchControlBase::Mode const& mode) override;
    /** Takes the scene's source of movement; done by the constructor. */
    void setupMouseHandler();
    void frameTriggered(float dt);
    void movedXZ(Qt3DInput::QMouseEvent* mouse);
    void rotated(Qt3DInput::QMouseEvent* mouse);
    void onPressedObject(Qt3DRender::QPickEvent* pick);
    void torusPicked(Qt3DRender::QPickEvent* pick);
    void setControlAxis(QVector3D controlAxis);
    void resetControlAxis();
    void moveParent(QVector3D vector, Torvik::View3d::TransformFlags::Flags flags);
    /** As the user's hand does. */
    void moveParent(QVector3D vector);

private:
    using PointerSlot = void (TouchControl::*)(Qt3DInput::QMouseEvent*);
    using Finish = void (TouchControl::*)();

    void createHelperTorus();
    void onEnabledChanged(bool enabled);
    void updateAxisControlArrows();
    void createAxisControlArrowsForOneAxis(const QVector3D& normal, const QVector3D& axis, float size);
    void setTranslationMode();
    void setRotationMode();
    void setScreenTranslationMode();
    bool isLabel() const;

    void startGesture(PointerSlot moved, Finish finish);
    void stopGesture();
    void takeCamera();
    void giveCameraBack();
    void finishTranslation();
    void finishRotation();
    /** Scene point on the plane through the object under a position on the screen. */
    std::optional<QVector3D> pointUnder(const QPointF& position, const QVector3D& planeNormal) const;
    QVector3D dragPlaneNormal() const;

    Renderable* m_renderable;
    QPointer<CustomPicker> m_customPicker;
    RotationRing* m_ring = nullptr;
    QList<QPointer<AxisControlArrows>> m_axisArrows;
    QTimer m_doubleTapTimer;
    QPointer<TouchInput> m_input;
    QList<QMetaObject::Connection> m_gesture; ///< between press and release
    Finish m_finish = nullptr;
    QVector3D m_lastPoint;
    QPointF m_screenPoint;
    Mode m_mode = Translation;
    QPointF m_mouse;
    bool m_moved = false;
    bool m_dragged = false; ///< further than a tap does
    bool m_holdsCamera = false;
    bool m_selectedByTap = false;
    bool m_allowed = false;
    QVector3D m_axisLock;
    QVector3D m_controlAxis;
    bool m_axisArrowVisible = false;
    QString m_axisArrowMode;
};

} // namespace Torvik::View3d
