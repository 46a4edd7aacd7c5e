#pragma once

#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

class QQuickWindow;

namespace Torvik::Viewer {

class DrawingCount;
class ViewerController;

/** Times the way from the start of the program, or of the script that says in KX_STARTED_MS when it began (milliseconds
 *  since 1970), to the first painted network. Main thread only. */
class StartClock : public QObject {
    Q_OBJECT

public:
    ~StartClock() override;

    /** Once, as the first thing that the program does. */
    static void begin();
    static StartClock& instance();

    struct Part {
        QString name;
        /** Milliseconds from the start to this part's end. */
        qint64 end;
    };

    /** A part has ended. */
    void mark(const QString& name);
    /** Marks what is still to come of the way, and writes the account on stderr at its end. */
    void watch(QQuickWindow& window, ViewerController& controller);

    /** Each part's length and end, a line each. */
    static QString account(const QVector<Part>& parts);

signals:
    void finished();

private:
    StartClock();
    void onFrame();
    void finish(qint64 painted);
    qint64 now() const;

    QVector<Part> m_parts;
    /** From watch() to the end of the way. */
    std::unique_ptr<DrawingCount> m_drawings;
    bool m_shown = false;
    bool m_opened = false;
    bool m_finished = false;
    /** When the scene was drawn for the first time after the project had opened; -1 before. */
    qint64 m_firstDrawing = -1;
};

} // namespace Torvik::Viewer
