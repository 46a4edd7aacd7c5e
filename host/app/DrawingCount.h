#pragma once

namespace Torvik::Viewer {

/** Counts what Qt 3D's renderer draws while it lives. The renderer reports every drawing when its log is on; nothing
 * else tells a drawing from a frame of the window. One at a time, made and ended on the main thread. */
class DrawingCount {
public:
    DrawingCount();
    ~DrawingCount();
    DrawingCount(const DrawingCount&) = delete;
    DrawingCount& operator=(const DrawingCount&) = delete;

    /** From any thread. */
    int drawings() const;
    void restart();
};

} // namespace Torvik::Viewer
