#pragma once

#include <memory>

class QQuickView;

namespace Qt3DCore {
class QEntity;
}
namespace Qt3DRender {
class QCamera;
}

namespace Torvik::Bench {

/** A window with a 3D scene that draws on demand, or, without one, a root that no renderer knows. */
class Stage {
public:
    enum Kind { Window, Headless };
    static constexpr int width = 800;
    static constexpr int height = 600;

    explicit Stage(Kind kind);
    ~Stage();

    Kind kind() const { return m_kind; }
    /** What is measured hangs below this. */
    Qt3DCore::QEntity* root() const { return m_root; }
    Qt3DRender::QCamera* camera() const { return m_camera; }

    /** Only of a stage with a window. */
    QQuickView& window() const { return *m_view; }

    /** Lets the window show so many frames; without a window lets the event loop turn once. */
    void waitFrames(int frames) const;
    /** Lets the window live so long. */
    void waitMs(int ms) const;
    /** Frames of the window and drawings of the 3D scene while the window lives so long. */
    struct Activity {
        int frames = 0;
        int drawings = 0;
    };
    Activity watch(int ms) const;
    /** Mean time of a frame while the camera circles around what it looks at. */
    double orbitFrameMs(int frames) const;

private:
    Kind m_kind;
    std::unique_ptr<QQuickView> m_view;
    std::unique_ptr<Qt3DCore::QEntity> m_headlessTop;
    Qt3DCore::QEntity* m_root = nullptr;
    Qt3DRender::QCamera* m_camera = nullptr;
};

} // namespace Torvik::Bench
