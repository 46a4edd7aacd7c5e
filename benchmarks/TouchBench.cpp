/* kx_touch_bench: working on a network that stands in the scene, each measurement in a process of its own. */

#include "benchmarks/TouchCases.h"
#include "host/domain/LogSink.h"
#include "scene/SceneRoot.h"

#include <QCommandLineParser>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QProcess>
#include <QTextStream>

#include <cstdio>

#include <unistd.h>

using namespace Torvik::Bench;

namespace {

struct Case {
    const char* name;
    const char* title;
    FigureList (*measure)(Stage::Kind);
    bool headlessToo;
};

constexpr Case cases[] = {
    {"insert", "1,000 observations into 1,000 pipes", measureInserting, true},
    {"bend", "a bend amidst a chain", measureBending, true},
    {"drag", "a manhole with 8 pipes and 40 observations", measureDragging, true},
    {"pick", "1,000 objects that can be picked", measurePicking, false},
};

const Case* caseOf(const QString& name)
{
    for (const Case& one : cases) {
        if (name == QLatin1String(one.name))
            return &one;
    }
    return nullptr;
}

QString loadOfMachine()
{
    QFile file(QStringLiteral("/proc/loadavg"));
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().split(' ').value(0)) : QString();
}

int runCase(const Case& one, Stage::Kind stage)
{
    // Opening tells of each lateral that its connection is still to come.
    Torvik::Logging::LogSink::setThreshold(0);
    const QByteArray json = QJsonDocument(one.measure(stage).toJson()).toJson(QJsonDocument::Compact);
    std::puts(json.constData());
    std::fflush(stdout);
    _exit(0);
}

FigureList startCase(const Case& one, bool headless)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments {QStringLiteral("--case"), QLatin1String(one.name)};
    if (headless)
        arguments.append(QStringLiteral("--headless"));
    process.start(QCoreApplication::applicationFilePath(), arguments);
    process.waitForFinished(-1);
    const auto result = QJsonDocument::fromJson(process.readAllStandardOutput()).array();
    if (result.isEmpty())
        std::fprintf(stderr, "the case %s gave no result (exit status %d)\n", one.name, process.exitCode());
    return FigureList::fromJson(result);
}

int runAll(const QStringList& names)
{
    QTextStream out(stdout);
    bool kept = true;
    for (const Case& one : cases) {
        if (!names.contains(QLatin1String(one.name)))
            continue;
        const QString loadBefore = loadOfMachine();
        QVector<QPair<QString, FigureList>> lists {{QStringLiteral("window"), startCase(one, false)}};
        if (one.headlessToo)
            lists.append({QStringLiteral("no renderer"), startCase(one, true)});
        for (const auto& list : qAsConst(lists))
            kept = kept && !list.second.figures().isEmpty() && list.second.allWithinBounds();
        out << tableOf(QLatin1String(one.title), lists) << "\nLoad of the machine " << loadBefore << " to "
            << loadOfMachine() << ".\n\n";
        out.flush();
    }
    return kept ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT3D_SCENE3D_STOP_RENDER_HIDDEN", "1");
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures the work on a network in the scene; prints tables."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("only"), QStringLiteral("Measurements to make."), QStringLiteral("list"),
         QStringLiteral("insert,bend,drag,pick")},
        {QStringLiteral("case"), QStringLiteral("Make one measurement and print its figures as JSON."),
         QStringLiteral("name")},
        {QStringLiteral("headless"), QStringLiteral("With --case: without a window.")},
    });
    parser.process(app);
    Torvik::View3d::SceneRoot::registerMetaTypes();
    if (!parser.isSet(QStringLiteral("case")))
        return runAll(parser.value(QStringLiteral("only")).split(QLatin1Char(',')));
    const Case* const one = caseOf(parser.value(QStringLiteral("case")));
    if (!one) {
        std::fputs("There is no such measurement.\n", stderr);
        return 1;
    }
    return runCase(*one, parser.isSet(QStringLiteral("headless")) ? Stage::Headless : Stage::Window);
}
