#include "host/app/PictureTaker.h"

#include <QPainter>
#include <QQuickItem>
#include <QQuickItemGrabResult>
#include <QQuickWindow>

namespace Torvik::Viewer {

namespace {

/** A change of the scene is in the window after two or three frames; a fuller one gets the double. */
constexpr int framesBetweenLooks = 6;
constexpr int equalLooksNeeded = 3;
constexpr int mostLooks = 400;
/** A window that is hidden or minimised paints nothing. */
constexpr int longestWithoutFrameMs = 10000;

QImage onWhite(const QImage& picture)
{
    QImage whole(picture.size(), QImage::Format_RGB32);
    whole.fill(Qt::white);
    QPainter(&whole).drawImage(QRect(QPoint(), whole.size()), picture);
    return whole;
}

} // namespace

PictureTaker::PictureTaker(QQuickWindow* window, QObject* parent)
    : QObject(parent)
    , m_window(window)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(longestWithoutFrameMs);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        end();
        emit gaveUp();
    });
    // Queued: the frame is counted on this thread, whichever thread paints.
    connect(window, &QQuickWindow::frameSwapped, this, &PictureTaker::onFrameSwapped, Qt::QueuedConnection);
}

void PictureTaker::pictureOf(QQuickItem* item)
{
    m_item = item;
}

void PictureTaker::start()
{
    m_last = {};
    m_frames = 0;
    m_same = 0;
    m_looks = 0;
    m_watching = true;
    m_looking = false;
    m_patience.start();
    m_window->update();
}

void PictureTaker::onFrameSwapped()
{
    if (!m_watching)
        return;
    m_patience.start();
    // The scene may have stopped asking for frames; a still window would never be looked at again.
    m_window->update();
    if (!m_looking && ++m_frames >= framesBetweenLooks) {
        m_frames = 0;
        look();
    }
}

void PictureTaker::look()
{
    if (m_item)
        lookAtItem();
    else
        compare(m_window->grabWindow());
}

void PictureTaker::lookAtItem()
{
    const QSize size = (m_item->size() * m_window->effectiveDevicePixelRatio()).toSize();
    const auto grab = m_item->grabToImage(size);
    if (!grab)
        return;
    m_looking = true;
    // The result lives as long as somebody holds it.
    connect(grab.data(), &QQuickItemGrabResult::ready, this, [this, grab] {
        QObject::disconnect(grab.data(), nullptr, this, nullptr);
        m_looking = false;
        if (m_watching)
            compare(onWhite(grab->image()));
    });
}

void PictureTaker::compare(const QImage& picture)
{
    const bool busy = m_busy && m_busy();
    m_same = picture == m_last && !busy ? m_same + 1 : 0;
    m_last = picture;
    ++m_looks;
    if (m_same >= equalLooksNeeded - 1) {
        end();
        emit taken(picture);
    } else if (m_looks >= mostLooks) {
        end();
        emit gaveUp();
    }
}

} // namespace Torvik::Viewer
