#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DCore/QEntity>

namespace Qt3DRender {
class QPickEvent;
}

namespace Torvik::View3d {

class Renderable;

/** The presses on one object. They come from the scene's TouchInput, which picks for all objects. */
class KXVIEW3D_EXPORT CustomPicker : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    explicit CustomPicker(Renderable* parent);

    Renderable* renderable() const { return m_renderable; }
    bool isPickEnabled() const { return m_pickEnabled; }
    /** Whether the last press of the scene was on this object and its finger is still down. */
    bool containsMouse() const { return m_containsMouse; }
    /** A press on the object; passed on unless picking is disabled. */
    void press(Qt3DRender::QPickEvent* pick);

public slots:
    void disablePick();
    void enablePick();
    void released();

signals:
    void pressed(Qt3DRender::QPickEvent* pick);
    /** Never emitted by the view. */
    void transformControlsAllowedChanged(bool allowed);

private:
    Renderable* m_renderable;
    bool m_pickEnabled = true;
    bool m_containsMouse = false;
};

} // namespace Torvik::View3d
