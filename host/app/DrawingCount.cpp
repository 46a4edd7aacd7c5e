#include "host/app/DrawingCount.h"

#include <QLoggingCategory>

#include <atomic>

namespace Torvik::Viewer {

namespace {

const char category[] = "Qt3D.Renderer.OpenGL.Rendering";
std::atomic<int> counted {0};
QtMessageHandler previousHandler = nullptr;

void count(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtDebugMsg && qstrcmp(context.category, category) == 0) {
        if (message.contains(QLatin1String("Submission Completed")))
            ++counted;
        return;
    }
    if (previousHandler)
        previousHandler(type, context, message);
}

} // namespace

DrawingCount::DrawingCount()
{
    restart();
    previousHandler = qInstallMessageHandler(count);
    QLoggingCategory::setFilterRules(QStringLiteral("%1.debug=true").arg(QLatin1String(category)));
}

DrawingCount::~DrawingCount()
{
    QLoggingCategory::setFilterRules({});
    qInstallMessageHandler(previousHandler);
}

int DrawingCount::drawings() const
{
    return counted;
}

void DrawingCount::restart()
{
    counted = 0;
}

} // namespace Torvik::Viewer
