#include "host/app/PdfPages.h"

#include <QProcess>

namespace Torvik::Viewer {

namespace {
constexpr int patienceMs = 5000;
}

int pagesOfPdf(const QString& file)
{
    QProcess process;
    process.start(QStringLiteral("pdfinfo"), {file}, QIODevice::ReadOnly);
    if (!process.waitForFinished(patienceMs)) {
        process.kill();
        process.waitForFinished(patienceMs);
        return 0;
    }
    const QByteArray name("Pages:");
    for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).trimmed().toInt();
    }
    return 0;
}

} // namespace Torvik::Viewer
