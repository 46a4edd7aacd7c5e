#pragma once

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class QQuickItem;
class QQuickWindow;

namespace Torvik::Viewer {

/** Takes a picture of a window once it shows what it will go on to show: when several grabs in a row, some painted
 * frames apart, are the same. */
class PictureTaker : public QObject {
    Q_OBJECT

public:
    explicit PictureTaker(QQuickWindow* window, QObject* parent = nullptr);

    /** Begins to watch. taken() or, if the window does not come to rest or paints nothing any more, gaveUp() comes
     *  later. */
    void start();
    /** While this holds, what the window shows is not yet what it will go on to show. */
    void waitWhile(std::function<bool()> busy) { m_busy = std::move(busy); }
    /** The picture is of this item and what it holds, without what lies over it; on white where that is seen through.
     */
    void pictureOf(QQuickItem* item);
    /** How long a window may go without painting; 10 s. */
    void setPatience(int ms) { m_patience.setInterval(ms); }

signals:
    void taken(const QImage& picture);
    void gaveUp();

private:
    void onFrameSwapped();
    void look();
    void lookAtItem();
    void compare(const QImage& picture);
    void end() { m_watching = false, m_patience.stop(); }

    QQuickWindow* m_window;
    QPointer<QQuickItem> m_item;
    std::function<bool()> m_busy;
    QTimer m_patience;
    QImage m_last;
    int m_frames = 0;
    int m_same = 0;
    int m_looks = 0;
    bool m_watching = false;
    bool m_looking = false;
};

} // namespace Torvik::Viewer
