#pragma once

#include <QImage>
#include <QObject>

#include <functional>

class QQuickWindow;

namespace Torvik::Viewer {

/** Takes a picture of a window once it shows what it will go on to show: when several grabs in a row, some painted
 * frames apart, are the same. */
class PictureTaker : public QObject {
    Q_OBJECT

public:
    explicit PictureTaker(QQuickWindow* window, QObject* parent = nullptr);

    /** Begins to watch. taken() or, if the window does not come to rest, gaveUp() comes later. */
    void start();
    /** While this holds, what the window shows is not yet what it will go on to show. */
    void waitWhile(std::function<bool()> busy) { m_busy = std::move(busy); }

signals:
    void taken(const QImage& picture);
    void gaveUp();

private:
    void onFrameSwapped();
    void look();

    QQuickWindow* m_window;
    std::function<bool()> m_busy;
    QImage m_last;
    int m_frames = 0;
    int m_same = 0;
    int m_looks = 0;
    bool m_watching = false;
};

} // namespace Torvik::Viewer
