#include "host/app/CommandLine.h"
#include "host/app/Commands.h"
#include "host/app/ViewerWindow.h"

#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>
#include <unistd.h>

using namespace Torvik::Viewer;

namespace {

/** Ends the process without taking the scene down entity by entity, which Qt 3D does slowly. Everything that is to last
 *  has been stored before. */
[[noreturn]] void endQuickly(int status)
{
    std::fflush(nullptr);
    ::_exit(status);
}

int run(const Options& options, int& argc, char** argv)
{
    const bool needsScreen = options.command == Command::Window || options.command == Command::Screenshot;
    if (!needsScreen)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    else if (const QString missing = ViewerWindow::whatIsMissingForIt(); !missing.isEmpty())
        return Commands::failure(missing);
    ViewerWindow::prepareProcess();
    QGuiApplication application(argc, argv);
    switch (options.command) {
    case Command::Info:
        return Commands::info(options);
    case Command::Import:
        return Commands::import(options);
    case Command::Dump:
        endQuickly(Commands::dump(options));
    default:
        endQuickly(ViewerWindow::run(options));
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("kxviewer"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KX_VERSION));

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const ParsedArguments parsed = parseArguments(arguments);
    if (!parsed.options) {
        QTextStream(stderr) << "kxviewer: " << parsed.error << " (kxviewer --help tells more)\n";
        return 2;
    }
    const Options& options = *parsed.options;
    if (options.command == Command::Help) {
        QTextStream(stdout) << helpText();
        return 0;
    }
    if (options.command == Command::Version) {
        QTextStream(stdout) << "kxviewer " << QCoreApplication::applicationVersion() << '\n';
        return 0;
    }
    // What the library takes for options of its own stays ours.
    int ownArguments = 1;
    return run(options, ownArguments, argv);
}
