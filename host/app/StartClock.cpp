#include "host/app/StartClock.h"

#include "host/app/DrawingCount.h"
#include "host/app/ViewerController.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QQuickWindow>
#include <QTextStream>
#include <QTimer>

namespace Torvik::Viewer {

namespace {

/** A drawing may have begun before the last change it is to show. One that comes so much later is about something else.
 */
constexpr int drawnAgainMs = 200;

QElapsedTimer sinceMain;
qint64 beforeMain = 0;

} // namespace

void StartClock::begin()
{
    sinceMain.start();
    const qint64 started = qEnvironmentVariable("KX_STARTED_MS").toLongLong();
    beforeMain = started > 0 ? QDateTime::currentMSecsSinceEpoch() - started : 0;
    if (beforeMain > 0)
        instance().mark(QStringLiteral("the script, and loading the program"));
}

StartClock::StartClock() = default;

StartClock::~StartClock() = default;

StartClock& StartClock::instance()
{
    static StartClock clock;
    return clock;
}

qint64 StartClock::now() const
{
    return beforeMain + sinceMain.elapsed();
}

void StartClock::mark(const QString& name)
{
    m_parts.append({name, now()});
}

void StartClock::watch(QQuickWindow& window, ViewerController& controller)
{
    m_drawings = std::make_unique<DrawingCount>();
    // The clock outlives the application, which the count must not.
    connect(&window, &QObject::destroyed, this, [this] {
        m_finished = true;
        m_drawings.reset();
    });
    connect(&window, &QQuickWindow::frameSwapped, this, &StartClock::onFrame, Qt::QueuedConnection);
    connect(&controller, &ViewerController::projectChanged, this, [this, &controller] {
        if (controller.projectOpen() && !m_opened && !m_finished)
            mark(QStringLiteral("reading the project"));
    });
    connect(&controller, &ViewerController::opened, this, [this] {
        if (m_opened || m_finished)
            return;
        mark(QStringLiteral("building the scene"));
        m_drawings->restart();
        m_opened = true;
    });
}

void StartClock::onFrame()
{
    if (m_finished)
        return;
    if (!m_shown) {
        m_shown = true;
        mark(QStringLiteral("the window's first frame"));
    }
    const int drawings = m_drawings->drawings();
    if (!m_opened || drawings == 0)
        return;
    if (drawings > 1) {
        finish(now());
    } else if (m_firstDrawing < 0) {
        m_firstDrawing = now();
        QTimer::singleShot(drawnAgainMs, this, [this] { finish(m_firstDrawing); });
    }
}

void StartClock::finish(qint64 painted)
{
    if (m_finished)
        return;
    m_finished = true;
    m_parts.append({QStringLiteral("painting the network"), painted});
    m_drawings.reset();
    QTextStream(stderr) << account(m_parts);
    emit finished();
}

QString StartClock::account(const QVector<Part>& parts)
{
    QString text = QStringLiteral("      ms   until  (to the first painted network)\n");
    qint64 before = 0;
    for (const Part& part : parts) {
        text += QStringLiteral("%1%2  %3\n").arg(part.end - before, 8).arg(part.end, 8).arg(part.name);
        before = part.end;
    }
    return text;
}

} // namespace Torvik::Viewer
