/* What creating and deleting many entities costs in Qt 3D itself, by the way it is done. */

#include "benchmarks/BareNetwork.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickView>
#include <QTimer>
#include <Qt3DCore/QAspectEngine>
#include <Qt3DCore/QEntity>
#include <Qt3DCore/QTransform>
#include <Qt3DInput/QInputAspect>
#include <Qt3DLogic/QLogicAspect>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <unistd.h>

using namespace Torvik::Bench;

namespace {

const char windowQml[] = R"(
import QtQuick 2.15
import QtQuick.Scene3D 2.15
import Qt3D.Core 2.15
import Qt3D.Render 2.15
import Qt3D.Input 2.15
import Qt3D.Extras 2.15
Scene3D {
    width: 600; height: 500; multisample: false
    aspects: ["input", "logic"]
    Entity {
        components: [
            RenderSettings {
                renderPolicy: RenderSettings.OnDemand
                activeFrameGraph: ForwardRenderer { clearColor: "black"; camera: eye }
            },
            InputSettings {}
        ]
        Camera { id: eye; position: Qt.vector3d(200, 300, -200); viewCenter: Qt.vector3d(200, 0, 200); farPlane: 10000 }
        Entity { objectName: "content"; Component.onCompleted: harness.content = this }
    }
}
)";

class Harness : public QObject {
    Q_OBJECT
    Q_PROPERTY(QObject* content MEMBER content)
public:
    QObject* content = nullptr;
};

long residentKb()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLong() * (sysconf(_SC_PAGESIZE) / 1024);
}

void waitSwaps(QQuickView* view, int swaps)
{
    if (view == nullptr) {
        QCoreApplication::processEvents();
        return;
    }
    QEventLoop loop;
    int left = swaps;
    const auto connection = QObject::connect(
        view, &QQuickWindow::frameSwapped, &loop,
        [&] {
            if (--left <= 0)
                loop.quit();
        },
        Qt::QueuedConnection);
    loop.exec();
    QObject::disconnect(connection);
}

void removeComponents(Qt3DCore::QEntity* entity)
{
    for (Qt3DCore::QComponent* component : entity->components())
        entity->removeComponent(component);
    for (Qt3DCore::QNode* child : entity->childNodes()) {
        if (auto* childEntity = qobject_cast<Qt3DCore::QEntity*>(child))
            removeComponents(childEntity);
    }
}

void deleteAll(const BareNetwork& network)
{
    for (Qt3DCore::QEntity* entity : network.nodes())
        entity->deleteLater();
    for (Qt3DCore::QEntity* entity : network.sections())
        entity->deleteLater();
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT3D_SCENE3D_STOP_RENDER_HIDDEN", "1");
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"mode", "", "mode", "window"},
                       {"n", "", "n", "1000"},
                       {"close", "", "way", "plain"},
                       {"share", "", "users", "500"},
                       {"live", ""},
                       {"reverse", ""},
                       {"signals", ""},
                       {"timers", ""},
                       {"disabled", ""},
                       {"build", "", "how", "plain"},
                       {"chunk", "", "objects", "500"}});
    parser.process(app);
    const QString mode = parser.value("mode");
    const QString way = parser.value("close");
    BareOptions options;
    options.pipes = parser.value("n").toInt();
    options.usersPerShare = parser.value("share").toInt();
    options.detached = !parser.isSet("live");
    options.withSignals = parser.isSet("signals");
    options.withTimers = parser.isSet("timers");
    options.disabled = parser.isSet("disabled");

    std::unique_ptr<QQuickView> view;
    std::unique_ptr<Qt3DCore::QAspectEngine> engine;
    Harness harness;
    Qt3DCore::QEntity* root = nullptr;
    if (mode == "window") {
        view = std::make_unique<QQuickView>();
        view->rootContext()->setContextProperty("harness", &harness);
        QQmlComponent component(view->engine());
        component.setData(windowQml, QUrl());
        auto* item = component.create(view->rootContext());
        if (item == nullptr)
            qFatal("%s", qPrintable(component.errorString()));
        view->setContent(QUrl(), &component, item);
        view->resize(600, 500);
        view->show();
        waitSwaps(view.get(), 10);
        root = qobject_cast<Qt3DCore::QEntity*>(harness.content);
    } else {
        auto* top = new Qt3DCore::QEntity;
        root = new Qt3DCore::QEntity(top);
        if (mode == "engine") {
            engine = std::make_unique<Qt3DCore::QAspectEngine>();
            engine->setRunMode(Qt3DCore::QAspectEngine::Manual);
            engine->registerAspect(new Qt3DLogic::QLogicAspect);
            engine->setRootEntity(Qt3DCore::QEntityPtr(top));
        }
    }
    const auto frame = [&] {
        if (engine)
            engine->processFrame();
        waitSwaps(view.get(), 4);
    };

    QElapsedTimer clock;
    const long before = residentKb();
    clock.start();
    BareNetwork network;
    Qt3DCore::QEntity* content = root;
    if (parser.value("build") == "container") { // everything under one detached container, attached last
        content = new Qt3DCore::QEntity;
        network.build(content, options);
        content->setParent(root);
    } else if (parser.value("build") == "detachroot") {
        Qt3DCore::QNode* up = root->parentNode();
        root->setParent(static_cast<Qt3DCore::QNode*>(nullptr));
        network.build(root, options);
        root->setParent(up);
    } else {
        network.build(content, options);
    }
    const double createMs = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    frame();
    const double createFrameMs = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    const long grown = residentKb() - before;
    const int count = network.nodeCount();

    std::fprintf(stderr, "CLOSE\n");
    clock.start();
    Qt3DCore::QNode* reattach = nullptr;
    if (way == "plain") {
        deleteAll(network);
    } else if (way == "components") {
        for (Qt3DCore::QEntity* entity : network.nodes() + network.sections())
            removeComponents(entity);
        deleteAll(network);
    } else if (way == "disable") {
        root->setEnabled(false);
        frame();
        deleteAll(network);
    } else if (way == "unparent") {
        for (Qt3DCore::QEntity* entity : network.nodes() + network.sections())
            entity->setParent(static_cast<Qt3DCore::QNode*>(nullptr));
        deleteAll(network);
    } else if (way == "grave") {
        auto* grave = new Qt3DCore::QEntity(root);
        for (Qt3DCore::QEntity* entity : network.nodes() + network.sections())
            entity->setParent(grave);
        grave->deleteLater();
    } else if (way == "detach") { // the container leaves the scene first, then objects one by one
        reattach = content->parentNode();
        content->setParent(static_cast<Qt3DCore::QNode*>(nullptr));
        deleteAll(network);
    } else if (way == "detachframe") {
        reattach = content->parentNode();
        content->setParent(static_cast<Qt3DCore::QNode*>(nullptr));
        frame();
        deleteAll(network);
    } else if (way == "container") {
        content->deleteLater();
    } else if (way == "spread" || way == "hiddenspread") {
        if (way == "hiddenspread")
            root->setEnabled(false);
        const int chunk = parser.value("chunk").toInt();
        auto all = network.nodes() + network.sections();
        if (parser.isSet("reverse"))
            std::reverse(all.begin(), all.end());
        int pending = 0;
        for (Qt3DCore::QEntity* entity : all) {
            entity->deleteLater();
            if (++pending >= chunk) {
                pending = 0;
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                if (engine)
                    engine->processFrame();
                waitSwaps(view.get(), 1);
            }
        }
    }
    const double detachMs = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const double deletedMs = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    if (reattach != nullptr)
        content->setParent(reattach);
    frame();
    const double closedMs = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    std::printf("%s n=%d qnodes=%d share=%d build=%s%s%s%s create=%.0f +frame=%.0f rssKB/pipe=%.1f | %s prepare=%.0f "
                "deleted=%.0f "
                "+frame=%.0f\n",
                qPrintable(mode), options.pipes, count, options.usersPerShare, qPrintable(parser.value("build")),
                options.detached ? "" : " live", options.withSignals ? " signals" : "",
                options.withTimers ? " timers" : "", createMs, createFrameMs,
                static_cast<double>(grown) / options.pipes, qPrintable(way), detachMs, deletedMs, closedMs);
    std::fflush(stdout);
    _exit(0);
}

#include "Qt3dExperiments.moc"
