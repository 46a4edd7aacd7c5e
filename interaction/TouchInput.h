#pragma once

#include "interaction/ObjectPicker.h"
#include "scene/KxView3dExport.h"

#include <Qt3DCore/QEntity>

#include <QPointer>

namespace Qt3DInput {
class QMouseDevice;
class QMouseEvent;
class QMouseHandler;
} // namespace Qt3DInput
namespace Qt3DLogic {
class QFrameAction;
}
namespace Qt3DRender {
class QPickEvent;
}

namespace Torvik::View3d {

class Renderable;
class TouchControl;

/** The finger on the scene's objects: one picker, one source of movement and one tick per frame for all of them, so
 * that an object that nobody touches costs nothing. A press goes to the object that it hits, or to the handle of one;
 * whoever drags listens to the handler and the tick while it does. Handles have pickers of their own to speak through,
 * which are on no entity: the renderer would let one that has been pressed keep the next press as well. Must be a child
 * of the scene's root, whose picker it is. Main thread only. */
class KXVIEW3D_EXPORT TouchInput : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    explicit TouchInput(Qt3DCore::QEntity* root);

    ObjectPicker* picker() const { return m_picker; }
    Qt3DInput::QMouseHandler* mouseHandler() const { return m_mouseHandler; }
    Qt3DLogic::QFrameAction* frameAction() const { return m_frameAction; }

    /** The object that the present press has hit, or null. */
    Renderable* hit() const;
    /** Whether that is a label: no selection, and no tap on the ground. */
    bool hitLabel() const;
    /** Ends what the finger does, as its release would: something else has taken it over. */
    void cancel();

private:
    void onMousePressed(Qt3DInput::QMouseEvent* mouse);
    void onPressed(Qt3DRender::QPickEvent* pick);
    void pressHandle(ObjectPicker* handle, Qt3DRender::QPickEvent* pick);
    void pressObject(Renderable* renderable, Qt3DRender::QPickEvent* pick);
    TouchControl* pressed() const;
    void onReleased();

    ObjectPicker* m_picker;
    Qt3DInput::QMouseDevice* m_mouseDevice;
    Qt3DInput::QMouseHandler* m_mouseHandler;
    Qt3DLogic::QFrameAction* m_frameAction;
    QPointer<ObjectPicker> m_pressedHandle;
    QPointer<QObject> m_hit;
    bool m_cancelled = false;
    bool m_hitLabel = false;
    QPointer<QObject> m_pressed; ///< the control of the object under the finger
};

} // namespace Torvik::View3d
