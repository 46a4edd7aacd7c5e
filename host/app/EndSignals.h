#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace Torvik::Viewer {

/** The system's request to end: SIGTERM (shutting down), SIGINT (Ctrl+C), SIGHUP (the terminal is gone). Ends the event
 * loop instead of the process, so that what is measured and changed is stored; the second of a kind ends the process at
 * once. One at a time, on the main thread; those that the process was started to ignore stay ignored. */
class EndSignals : public QObject {
    Q_OBJECT

public:
    explicit EndSignals(QObject* parent = nullptr);
    ~EndSignals() override;

    bool came() const { return m_number != 0; }
    /** Of a process that ended because of it, as shells have it. */
    int exitStatus() const { return 128 + m_number; }

signals:
    void asked();

private:
    void read();

    int m_sockets[2] = {-1, -1};
    QSocketNotifier m_notifier;
    int m_number = 0;
};

} // namespace Torvik::Viewer
