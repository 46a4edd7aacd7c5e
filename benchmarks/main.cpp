/* kx_bench: opening, drawing and closing projects of growing size, each in a process of its own, as one table. */

#include "benchmarks/GridTown.h"
#include "benchmarks/ProjectCase.h"
#include "benchmarks/ResultTable.h"
#include "scene/SceneRoot.h"

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdio>

#include <unistd.h>

using namespace Torvik::Bench;

namespace {

constexpr int smallProject = 1000;
constexpr int repeatsOfSmall = 5;
/** The first opening also pays for memory that the process never had before. */
constexpr int repeatsOfLarge = 2;
constexpr int largestAtOnce = 10000;

int runCase(const QCommandLineParser& parser)
{
    CaseOptions options;
    options.pipes = parser.value(QStringLiteral("case")).toInt();
    options.stage = parser.isSet(QStringLiteral("headless")) ? Stage::Headless : Stage::Window;
    options.folder = parser.value(QStringLiteral("folder"));
    options.repeats = options.pipes <= smallProject ? repeatsOfSmall : repeatsOfLarge;
    options.atOnce = options.pipes <= largestAtOnce;
    options.closing = !parser.isSet(QStringLiteral("only-open"));
    if (!QDir(options.folder).exists()) {
        if (const QString error = makeGridTown(options.folder, options.pipes); !error.isEmpty()) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 1;
        }
    }
    const QByteArray json = QJsonDocument(measureProject(options)).toJson(QJsonDocument::Compact);
    std::puts(json.constData());
    std::fflush(stdout);
    _exit(0);
}

QJsonObject startCase(int pipes, bool headless, const QString& folder)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments {QStringLiteral("--case"), QString::number(pipes), QStringLiteral("--folder"), folder};
    if (headless)
        arguments.append(QStringLiteral("--headless"));
    process.start(QCoreApplication::applicationFilePath(), arguments);
    process.waitForFinished(-1);
    const auto result = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    if (result.isEmpty())
        std::fprintf(stderr, "the case of %d pipes gave no result (exit status %d)\n", pipes, process.exitCode());
    return result;
}

int runAll(const QCommandLineParser& parser)
{
    QTemporaryDir folder;
    ResultTable table;
    const auto sizes = parser.value(QStringLiteral("sizes")).split(QLatin1Char(','));
    const int largestInWindow = parser.value(QStringLiteral("largest-in-window")).toInt();
    for (const QString& size : sizes) {
        const int pipes = size.toInt();
        const QString project = folder.filePath(size);
        if (const QString error = makeGridTown(project, pipes); !error.isEmpty()) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 1;
        }
        for (const bool headless : {false, true}) {
            if (headless || pipes <= largestInWindow)
                table.add(pipes, headless, startCase(pipes, headless, project));
        }
    }
    QTextStream(stdout) << table.text();
    return table.allWithinBounds() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT3D_SCENE3D_STOP_RENDER_HIDDEN", "1");
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures projects of growing size and prints a table."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("sizes"), QStringLiteral("Pipes of each project."), QStringLiteral("list"),
         QStringLiteral("100,1000,10000,50000")},
        {QStringLiteral("largest-in-window"), QStringLiteral("Larger projects are only opened without a window."),
         QStringLiteral("pipes"), QStringLiteral("10000")},
        {QStringLiteral("case"), QStringLiteral("Measure one project and print the figures as JSON."),
         QStringLiteral("pipes")},
        {QStringLiteral("folder"), QStringLiteral("The project of --case; made if it is not there."),
         QStringLiteral("path")},
        {QStringLiteral("headless"), QStringLiteral("With --case: without a window.")},
        {QStringLiteral("only-open"), QStringLiteral("With --case: neither close nor compare.")},
    });
    parser.process(app);
    Torvik::View3d::SceneRoot::registerMetaTypes();
    return parser.isSet(QStringLiteral("case")) ? runCase(parser) : runAll(parser);
}
