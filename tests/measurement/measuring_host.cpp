// A program that measures points and ends without waiting for anything: FOLDER INSPECTION COUNT HOW.
#include "domain/boundary/AppState.h"
#include "host/domain/ProjectStore.h"
#include "measurement/MeasurementPointsHandler.h"

#include <QCoreApplication>
#include <QTimer>
#include <QVector3D>

#include <cstdio>

#include <unistd.h>

using namespace Torvik;

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const auto opened = Database::ProjectStore::instance().open(arguments.value(1));
    if (!opened.project) {
        std::fprintf(stderr, "%s\n", qPrintable(opened.error));
        return 1;
    }
    AppState::instance().setActiveProject(opened.project);

    const QString inspection = arguments.value(2);
    const int count = arguments.value(3).toInt();
    const QString how = arguments.value(4);
    auto* const handler = View3d::MeasurementPointsHandler::instance();
    if (how == QLatin1String("return"))
        handler->createNewSecMes(inspection);
    else
        handler->readSecMp(inspection);
    for (int i = 0; i < count; ++i)
        handler->addRowToSECMP(inspection, {float(i), 0.0F, 0.0F}, i, false);
    if (how != QLatin1String("quit"))
        return 0;
    // Before the first turn of the event loop delivers an answer.
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    const int status = QCoreApplication::exec();
    ::_exit(status);
}
