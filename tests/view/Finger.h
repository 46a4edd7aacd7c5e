#pragma once

#include "view/SceneWindow.h"

namespace Kx::Test {

/** A finger on a scene's window, in pixels of the scene. */
class Finger {
public:
    explicit Finger(SceneWindow& view)
        : m_view(view)
    {
    }

    void press(QPoint at)
    {
        QTest::touchEvent(m_view.window(), device()).press(0, m_view.inWindow(at));
        m_view.frames(4);
    }
    void moveTo(QPoint at)
    {
        QTest::touchEvent(m_view.window(), device()).move(0, m_view.inWindow(at));
        m_view.frames(3);
    }
    void release(QPoint at)
    {
        QTest::touchEvent(m_view.window(), device()).release(0, m_view.inWindow(at));
        m_view.frames(4);
    }
    /** Press and release in one go: a tap also where frames are slow. */
    void tap(QPoint at)
    {
        auto touch = QTest::touchEvent(m_view.window(), device(), false);
        touch.press(0, m_view.inWindow(at));
        touch.commit(false);
        touch.release(0, m_view.inWindow(at));
        touch.commit(false);
        m_view.frames(5);
    }
    void drag(QPoint from, QPoint to, int steps = 4)
    {
        press(from);
        for (int step = 1; step <= steps; ++step)
            moveTo(from + (to - from) * step / steps);
        release(to);
    }
    /** One finger that drags; then, without its release, a second one comes 60 pixels beside and the two spread. */
    void dragThenSpread(QPoint from, QPoint to, int by)
    {
        press(from);
        for (int step = 1; step <= 4; ++step)
            moveTo(from + (to - from) * step / 4);
        QPoint first = to;
        QPoint second = to + QPoint(60, 0);
        QTest::touchEvent(m_view.window(), device()).move(0, m_view.inWindow(first)).press(1, m_view.inWindow(second));
        m_view.frames(3);
        for (int step = 1; step <= 4; ++step) {
            first -= QPoint(by / 4, 0);
            second += QPoint(by / 4, 0);
            QTest::touchEvent(m_view.window(), device())
                .move(0, m_view.inWindow(first))
                .move(1, m_view.inWindow(second));
            m_view.frames(3);
        }
        QTest::touchEvent(m_view.window(), device())
            .release(0, m_view.inWindow(first))
            .release(1, m_view.inWindow(second));
        m_view.frames(4);
    }
    /** Two fingers that begin there and spread sideways by so much each. */
    void spread(QPoint middle, int by)
    {
        const QPoint apart(30, 0);
        const auto both = [&](int more) {
            const QPoint out = apart + QPoint(more, 0);
            return std::make_pair(m_view.inWindow(middle - out), m_view.inWindow(middle + out));
        };
        const auto begin = both(0);
        QTest::touchEvent(m_view.window(), device()).press(0, begin.first);
        m_view.frames(2);
        // It stays, but a new event would not know where.
        QTest::touchEvent(m_view.window(), device()).move(0, begin.first).press(1, begin.second);
        m_view.frames(3);
        for (int step = 1; step <= 4; ++step) {
            const auto at = both(by * step / 4);
            QTest::touchEvent(m_view.window(), device()).move(0, at.first).move(1, at.second);
            m_view.frames(3);
        }
        const auto end = both(by);
        QTest::touchEvent(m_view.window(), device()).release(0, end.first).release(1, end.second);
        m_view.frames(4);
    }

private:
    static QTouchDevice* device()
    {
        static QTouchDevice* const screen = QTest::createTouchDevice();
        return screen;
    }

    SceneWindow& m_view;
};

} // namespace Kx::Test
