#include "host/app/PictureTaker.h"

#include <QQuickWindow>

namespace Torvik::Viewer {

namespace {

/** A change of the scene is in the window after two or three frames; a fuller one gets the double. */
constexpr int framesBetweenLooks = 6;
constexpr int equalLooksNeeded = 3;
constexpr int mostLooks = 400;

} // namespace

PictureTaker::PictureTaker(QQuickWindow* window, QObject* parent)
    : QObject(parent)
    , m_window(window)
{
    // Queued: the frame is counted on this thread, whichever thread paints.
    connect(window, &QQuickWindow::frameSwapped, this, &PictureTaker::onFrameSwapped, Qt::QueuedConnection);
}

void PictureTaker::start()
{
    m_last = {};
    m_frames = 0;
    m_same = 0;
    m_looks = 0;
    m_watching = true;
    m_window->update();
}

void PictureTaker::onFrameSwapped()
{
    if (!m_watching)
        return;
    // The scene may have stopped asking for frames; a still window would never be looked at again.
    m_window->update();
    if (++m_frames >= framesBetweenLooks) {
        m_frames = 0;
        look();
    }
}

void PictureTaker::look()
{
    const QImage picture = m_window->grabWindow();
    const bool busy = m_busy && m_busy();
    m_same = picture == m_last && !busy ? m_same + 1 : 0;
    m_last = picture;
    ++m_looks;
    if (m_same >= equalLooksNeeded - 1) {
        m_watching = false;
        emit taken(picture);
    } else if (m_looks >= mostLooks) {
        m_watching = false;
        emit gaveUp();
    }
}

} // namespace Torvik::Viewer
