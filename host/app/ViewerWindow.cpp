#include "host/app/ViewerWindow.h"

#include "geo/GdalGeoProjector.h"
#include "host/app/Commands.h"
#include "host/app/EndSignals.h"
#include "host/app/PhotoDesk.h"
#include "host/app/PictureTaker.h"
#include "host/app/PlanDesk.h"
#include "host/app/PlanMessages.h"
#include "host/app/ReplayCommand.h"
#include "host/app/ReplayRun.h"
#include "host/app/StartClock.h"
#include "host/app/StoringTime.h"
#include "host/app/TroubleReport.h"
#include "host/app/ViewerController.h"
#include "host/domain/WholeFile.h"
#include "host/map/MapEndpoints.h"
#include "host/modules/GpsSimulation.h"
#include "host/modules/HostModules.h"
#include "host/modules/Language.h"
#include "host/modules/Ostel.h"
#include "labels/LabelBoard.h"
#include "scene/SceneRoot.h"

#include <QBuffer>
#include <QEventLoop>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageWriter>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTextStream>
#include <QTimer>
#include <Qt3DRender/QCamera>

#include <algorithm>
#include <functional>

namespace Torvik::Viewer::ViewerWindow {

namespace {

constexpr int finerPainting = 2;
/** In pixels; what a modest graphics memory holds. */
constexpr int largestPainting = 8192;

/** Degrees. */
const View3d::GeoCoord placeOfEmptyScene(10.0, 51.0, 0.0);

/** The error; empty when the picture is there. */
QString writePicture(const QImage& picture, const QString& path)
{
    QBuffer bytes;
    QImageWriter writer(&bytes, QFileInfo(path).suffix().toLatin1());
    if (!writer.write(picture))
        return QStringLiteral("%1: %2").arg(path, writer.errorString());
    return Database::WholeFile::write(path, bytes.data());
}

/** What the options, or else the settings, say of the map; false, with a line on stderr, if that cannot be. */
bool chooseMap(Map::MapEndpoints& endpoints, const Options& options)
{
    if (options.noMap)
        return true;
    QObject::connect(&endpoints, &Map::MapEndpoints::problem, [](const QString& text) { Commands::failure(text); });
    const QString tiles = options.tiles.isEmpty() ? Map::MapEndpoints::tilesOfSettings() : options.tiles;
    const QString error = endpoints.setTiles(tiles);
    if (!error.isEmpty()) {
        Commands::failure(error);
        return options.tiles.isEmpty();
    }
    return true;
}

QQuickWindow* loadWindow(QQmlApplicationEngine& engine, ViewerController& controller, Map::MapEndpoints& endpoints,
                         const Options& options)
{
    registerHostModules(engine);
    engine.rootContext()->setContextProperty(QStringLiteral("mapEndpoints"), &endpoints);
    controller.desk()->photos()->waitWhile([&endpoints] { return endpoints.busy(); });
    Language::instance().restore(options.language);
    engine.rootContext()->setContextProperty(QStringLiteral("viewer"), &controller);
    engine.load(QUrl(QStringLiteral("qrc:/viewer/MainWindow.qml")));
    auto* window =
        engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
    // Without a map under it nothing else ties the scene to the earth, and the scene waits for that. The first node of
    // a project ties it anew.
    View3d::GdalGeoProjector::instance()->initFromMap(placeOfEmptyScene.lat(), placeOfEmptyScene.lon(), 0);
    if (window) {
        window->resize(options.size);
        window->show();
    }
    return window;
}

/** The receiver that the options name; false, with a line on stderr, if it cannot be. */
bool startGps(QQmlApplicationEngine& engine, ViewerController& controller, const Options& options)
{
    if (options.gps.isEmpty())
        return true;
    auto* const device = engine.rootContext()->contextProperty(QStringLiteral("ostel")).value<Ostel*>();
    auto* const gps = new GpsSimulation(*device->system(), &engine);
    const QString problem = gps->choose(options.gps);
    if (!problem.isEmpty())
        Commands::failure(problem);
    QObject::connect(&controller, &ViewerController::opened, gps, [gps] {
        const QVector3D middle = View3d::SceneRoot::camera()->viewCenter();
        const QVector3D place = View3d::GdalGeoProjector::instance()->geoCoordsDegFromPointOnGround(
            double(middle.x()), double(middle.y()), double(middle.z()));
        gps->setPlace(double(place.y()), double(place.x()));
    });
    return gps->isChosen();
}

void storeWhatIsPending(ViewerController& controller)
{
    if (!controller.projectOpen())
        return;
    QEventLoop untilStored;
    QTimer::singleShot(untilEverythingIsStoredMs, &untilStored, &QEventLoop::quit);
    untilStored.exec();
    controller.closeProject();
}

/** Gives the vehicle what the options have for it; false, with a line on stderr, if that cannot be. */
bool startVehicle(VehicleDesk& vehicle, const Options& options, const std::optional<ReplayRun::Wishes>& recording)
{
    if (options.listenPort) {
        const QString error = vehicle.listen(QHostAddress(options.listenAddress), *options.listenPort);
        if (!error.isEmpty())
            return Commands::failure(error), false;
        QTextStream(stdout) << "listening on " << options.listenAddress << " port " << vehicle.server().port()
                            << Qt::endl;
        QObject::connect(&vehicle, &VehicleDesk::malformedLine,
                         [](const Vehicle::LineProblem& problem) { Commands::failure(Vehicle::toText(problem)); });
    }
    if (recording) {
        vehicle.setSpeed(options.speed.value_or(1.0));
        vehicle.load(recording->readings);
    }
    if (options.realTime)
        vehicle.setMeasuring(true);
    return true;
}

/** Under the network, as soon as that is in view. */
void layPlan(ViewerController& controller, const Options& options, const std::function<void(const QString&)>& done)
{
    auto* const desk = new PlanDesk(&controller);
    desk->lay({options.planFile, options.planScale, options.planPlace}, done);
}

int showWindow(ViewerController& controller, bool hasMap, const QString& folder, const Options& options)
{
    const auto recording = options.replayFile.isEmpty() ? std::nullopt : readReplay(options);
    if (!options.replayFile.isEmpty() && !recording)
        return 1;
    const bool hasVehicle = recording || options.listenPort;
    // The project that the program was started with ends it when it cannot be opened; of one that is chosen in the
    // window the window tells.
    QObject starting;
    QObject::connect(&controller, &ViewerController::openingFailed, &starting,
                     [&controller] { QGuiApplication::exit(Commands::failure(controller.errorText())); });
    QObject::connect(&controller, &ViewerController::opened, &starting, [&] {
        controller.disconnect(&starting);
        if (!hasMap && !options.noMap)
            Commands::failure(QStringLiteral("no map, since no tiles are chosen: --tiles FOLDER|URL, or --no-map"));
        if (hasVehicle && !controller.inspectionOfKey(options.inspectKey))
            QGuiApplication::exit(Commands::failure(noSuchInspection(options)));
        else if (!startVehicle(*controller.vehicle(), options, recording))
            QGuiApplication::exit(1);
        layPlan(controller, options, [&controller, file = options.planFile](const QString& error) {
            const QString notes = PlanMessages::notes(file);
            if (!error.isEmpty())
                controller.showError(error);
            else if (!notes.isEmpty())
                emit controller.plans()->noted(notes);
        });
    });
    const EndSignals endSignals;
    QObject::connect(&endSignals, &EndSignals::asked, &QGuiApplication::quit);
    QObject::connect(&controller, &ViewerController::opened,
                     [&controller] { controller.desk()->recent()->add(controller.projectFolder()); });
    controller.openFolder(folder);
    const int status = QGuiApplication::exec();
    controller.vehicle()->stop();
    // The window that has told of trouble is gone.
    TroubleReport trouble;
    storeWhatIsPending(controller);
    return trouble.somethingIsLost() ? 1 : status;
}

/** Plays the recording of the options into the active inspection; null, with a line on stderr, when it has none. */
ReplayRun* playBeforeThePicture(ViewerController& controller, const Options& options)
{
    const auto wishes = readReplay(options);
    if (!wishes)
        return nullptr;
    auto* run = new ReplayRun(&controller);
    run->start(controller.inspectionOfKey(options.inspectKey), *wishes);
    return run;
}

QQuickItem* viewOf(QQuickWindow* window)
{
    return window->property("window3d").value<QQuickItem*>();
}

/** The picture or the page; the error, empty when it is there. */
QString writeWhatWasPainted(const QImage& painted, QQuickWindow* window, const Options& options)
{
    QImage picture = painted;
    picture.setDevicePixelRatio(1.0);
    if (options.print) {
        const double ratio = double(painted.width()) / options.size.width();
        return Database::WholeFile::write(options.outputFile, PhotoDesk::pageOf(picture, ratio, viewOf(window)));
    }
    picture = picture.scaled(options.size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return writePicture(PhotoDesk::labelled(picture, viewOf(window)), options.outputFile);
}

int paintPicture(ViewerController& controller, QQuickWindow* window, Map::MapEndpoints& endpoints,
                 const QString& folder, const Options& options)
{
    PictureTaker taker(window);
    if (options.print)
        viewOf(window)->setProperty("screenshotPending", true);
    taker.waitWhile([&endpoints] { return endpoints.busy() || View3d::LabelBoard::instance().isBusy(); });
    int status = 1;
    const auto giveUp = [](const QString& message) { Commands::failure(message), QGuiApplication::quit(); };
    QObject::connect(&controller, &ViewerController::openingFailed, [&] { giveUp(controller.errorText()); });
    QObject::connect(&controller, &ViewerController::opened, [&] {
        if (!controller.errorText().isEmpty())
            giveUp(controller.errorText());
        else if (options.replayFile.isEmpty())
            layPlan(controller, options,
                    [&](const QString& error) { error.isEmpty() ? taker.start() : giveUp(error); });
        else if (ReplayRun* run = playBeforeThePicture(controller, options)) {
            QObject::connect(run, &ReplayRun::finished, [&, run] {
                status = report(run->outcome());
                if (!options.fit && options.goToKey.isEmpty())
                    controller.lookAt(run->pipeId(), options.view, options.distance, false);
                status == 0 ? taker.start() : QGuiApplication::quit();
            });
        } else {
            QGuiApplication::quit();
        }
    });
    QObject::connect(&taker, &PictureTaker::taken, [&](const QImage& painted) {
        const QString error = writeWhatWasPainted(painted, window, options);
        status = error.isEmpty() ? 0 : Commands::failure(error);
        QGuiApplication::quit();
    });
    QObject::connect(&taker, &PictureTaker::gaveUp, [&] {
        status = 1;
        giveUp(QStringLiteral("the picture does not come to rest"));
    });
    controller.openFolder(folder);
    QGuiApplication::exec();
    return status;
}

int takePicture(ViewerController& controller, QQuickWindow* window, Map::MapEndpoints& endpoints, const QString& folder,
                const Options& options)
{
    TroubleReport trouble;
    const EndSignals endSignals;
    QObject::connect(&endSignals, &EndSignals::asked, &QGuiApplication::quit);
    const int status = paintPicture(controller, window, endpoints, folder, options);
    if (!options.replayFile.isEmpty()) {
        controller.vehicle()->stop();
        controller.closeProject();
    }
    const bool lost = trouble.somethingIsLost();
    if (endSignals.came())
        return endSignals.exitStatus();
    return lost ? 1 : status;
}

} // namespace

QString whatIsMissingForIt()
{
    const bool display = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (display || platform.startsWith("eglfs"))
        return {};
    return QStringLiteral("there is no display for a window; run.sh, or xvfb-run kxviewer --screenshot FILE, paint "
                          "without one");
}

void prepareProcess(const Options& options)
{
    // Pipes are thin: a picture is painted larger than it is asked for, which leaves fine lines instead of dots.
    const int longest = std::max(options.size.width(), options.size.height());
    if (options.command == Command::Screenshot && longest * finerPainting <= largestPainting)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(finerPainting));
    // A hidden scene would otherwise hold up the main thread at its next change.
    qputenv("QT3D_SCENE3D_STOP_RENDER_HIDDEN", "1");
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
}

int run(const Options& options)
{
    const QString folder = Commands::projectFolder(options);
    if (folder.isEmpty())
        return 1;
    // All outlive this function: taking the scene down would cost more than it is worth at the end of the process.
    auto* controller = new ViewerController;
    auto* engine = new QQmlApplicationEngine;
    auto* endpoints = new Map::MapEndpoints;
    if (!chooseMap(*endpoints, options))
        return 1;
    controller->setSceneOnly(options.command == Command::Screenshot && !options.wholeWindow);
    controller->setOpeningView({options.view, options.distance, options.goToKey, options.inspectKey});
    QQuickWindow* window = loadWindow(*engine, *controller, *endpoints, options);
    if (options.timing && window) {
        StartClock::instance().mark(QStringLiteral("application and window"));
        StartClock::instance().watch(*window, *controller);
    }
    if (window && !startGps(*engine, *controller, options))
        return 1;
    if (!window)
        return Commands::failure(QStringLiteral("the window could not be built; is a QML module missing?"));
    const int status = options.command == Command::Screenshot
                           ? takePicture(*controller, window, *endpoints, folder, options)
                           : showWindow(*controller, endpoints->available(), folder, options);
    endpoints->removeScratch();
    return status;
}

} // namespace Torvik::Viewer::ViewerWindow
