#include "benchmarks/CaseRunner.h"

#include "host/domain/LogSink.h"
#include "scene/SceneRoot.h"

#include <QCommandLineParser>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QProcess>
#include <QTextStream>

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace Torvik::Bench {

namespace {

QString loadOfMachine()
{
    QFile file(QStringLiteral("/proc/loadavg"));
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().split(' ').value(0)) : QString();
}

int runCase(const BenchCase& one, Stage::Kind stage)
{
    // Opening tells of each lateral that its connection is still to come.
    Logging::LogSink::setThreshold(0);
    const QByteArray json = QJsonDocument(one.measure(stage).toJson()).toJson(QJsonDocument::Compact);
    std::puts(json.constData());
    std::fflush(stdout);
    _exit(0);
}

FigureList startCase(const BenchCase& one, Stage::Kind stage)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments {QStringLiteral("--case"), one.name};
    if (stage == Stage::Headless)
        arguments.append(QStringLiteral("--headless"));
    process.start(QCoreApplication::applicationFilePath(), arguments);
    process.waitForFinished(-1);
    const auto result = QJsonDocument::fromJson(process.readAllStandardOutput()).array();
    if (result.isEmpty())
        std::fprintf(stderr, "the case %s gave no result (exit status %d)\n", qPrintable(one.name), process.exitCode());
    return FigureList::fromJson(result);
}

bool printCase(const BenchCase& one, QTextStream& out)
{
    const QString loadBefore = loadOfMachine();
    QVector<QPair<QString, FigureList>> lists;
    if (one.inWindow)
        lists.append({QStringLiteral("window"), startCase(one, Stage::Window)});
    if (one.headless)
        lists.append({QStringLiteral("no renderer"), startCase(one, Stage::Headless)});
    out << tableOf(one.title, lists) << "\nLoad of the machine " << loadBefore << " to " << loadOfMachine() << ".\n\n";
    out.flush();
    return std::all_of(lists.begin(), lists.end(), [](const auto& list) {
        return !list.second.figures().isEmpty() && list.second.allWithinBounds();
    });
}

} // namespace

int runCases(int& argc, char** argv, const QString& description, const QVector<BenchCase>& cases)
{
    qputenv("QT3D_SCENE3D_STOP_RENDER_HIDDEN", "1");
    const QGuiApplication app(argc, argv);
    QStringList names;
    for (const BenchCase& one : cases)
        names.append(one.name);
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("only"), QStringLiteral("Measurements to make."), QStringLiteral("list"),
         names.join(QLatin1Char(','))},
        {QStringLiteral("case"), QStringLiteral("Make one measurement and print its figures as JSON."),
         QStringLiteral("name")},
        {QStringLiteral("headless"), QStringLiteral("With --case: without a window.")},
    });
    parser.process(app);
    View3d::SceneRoot::registerMetaTypes();
    if (parser.isSet(QStringLiteral("case"))) {
        const int index = names.indexOf(parser.value(QStringLiteral("case")));
        if (index >= 0)
            return runCase(cases[index], parser.isSet(QStringLiteral("headless")) ? Stage::Headless : Stage::Window);
        std::fputs("There is no such measurement.\n", stderr);
        return 1;
    }
    const QStringList asked = parser.value(QStringLiteral("only")).split(QLatin1Char(','));
    QTextStream out(stdout);
    bool kept = true;
    for (const BenchCase& one : cases) {
        if (asked.contains(one.name))
            kept = printCase(one, out) && kept;
    }
    return kept ? 0 : 1;
}

} // namespace Torvik::Bench
