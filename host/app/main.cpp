#include "host/app/CommandLine.h"
#include "host/app/Commands.h"
#include "host/app/StartClock.h"
#include "host/app/ViewerWindow.h"
#include "scene/SceneApplication.h"

#include <QDir>
#include <QFile>
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

/** Where no session has set one, Qt makes a run-time folder up and tells the user about it. */
void haveRuntimeFolder()
{
    if (qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"))
        return;
    const QString folder = QDir::temp().filePath(QStringLiteral("kxviewer-%1").arg(::getuid()));
    if (QDir().mkpath(folder) && QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        qputenv("XDG_RUNTIME_DIR", folder.toLocal8Bit());
}

int run(const Options& options, int& argc, char** argv)
{
    haveRuntimeFolder();
    for (const auto& [command, execute] :
         {std::pair(Command::Info, &Commands::info), std::pair(Command::Import, &Commands::import),
          std::pair(Command::Findings, &Commands::findings), std::pair(Command::Record, &Commands::record)}) {
        if (options.command != command)
            continue;
        QCoreApplication application(argc, argv);
        return execute(options);
    }
    const bool headless = options.command == Command::Dump || options.command == Command::Replay;
    if (headless)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    else if (const QString missing = ViewerWindow::whatIsMissingForIt(); !missing.isEmpty())
        return Commands::failure(missing);
    ViewerWindow::prepareProcess(options);
    Torvik::View3d::SceneApplication application(argc, argv);
    if (options.command == Command::Replay)
        endQuickly(Commands::replay(options));
    endQuickly(headless ? Commands::dump(options) : ViewerWindow::run(options));
}

} // namespace

int main(int argc, char* argv[])
{
    StartClock::begin();
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
