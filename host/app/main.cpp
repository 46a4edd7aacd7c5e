#include "host/app/CommandLine.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

using namespace Torvik::Viewer;

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
    return 1;
}
