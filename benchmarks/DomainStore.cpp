// What the project store costs: writing, opening, changing and closing projects of growing size.
#include "benchmarks/ResidentMemory.h"
#include "domain/boundary/AppState.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "host/domain/ProjectStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>

using namespace Torvik::Database;

namespace {

StoreStatus writePipe(BulkWriter& writer, int i)
{
    const QString number = QString::number(i);
    const QString next = QString::number(i + 1);
    QString pipe;
    QString inspection;
    StoreStatus status = writer.insert(NodeObjectType, {},
                                       {{"OBJ_PK", "node-" + next},
                                        {"OBJ_Key", "S" + next},
                                        {"OBJ_Type", "Manhole"},
                                        {"OBJ_Shape_WKT", QString("POINT ZM(400000.%1 5600000.%1 100 16)").arg(i)},
                                        {"OBJ_DepthToInvert", 2.5},
                                        {"OBJ_Street", "Street"}});
    if (status) {
        status = writer.insert(SectionObjectType, {},
                               {{"OBJ_Key", number + "-" + next},
                                {"OBJ_FromNode_REF", "node-" + number},
                                {"OBJ_ToNode_REF", "node-" + next},
                                {"OBJ_Size1", 300},
                                {"OBJ_Length", 42.5},
                                {"OBJ_Material", "STZ"}},
                               &pipe);
    }
    if (status) {
        status = writer.insert(
            PipeInspectionObjectType, pipe,
            {{"INS_InspectionDir", 1},
             {"INS_StartNode_REF", "node-" + number},
             {"INS_EndNode_REF", "node-" + next},
             {"INS_Shape_WKT", QString("LINESTRING ZM(400000.%1 5600000.%1 97 272,400001 5600001 97 0)").arg(i)}},
            &inspection);
    }
    if (status) {
        status = writer.insert(PipeObservationObjectType, inspection, {{"OBS_Code", "BCC"}, {"OBS_Distance", 12.5}});
    }
    return status;
}

bool measure(int pipes)
{
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("p"));
    QElapsedTimer timer;
    timer.start();
    const StoreStatus made = ProjectStore::create(folder, {}, [&](BulkWriter& writer) {
        StoreStatus status;
        for (int i = 0; status && i < pipes; ++i) {
            status = writePipe(writer, i);
        }
        return status;
    });
    const qint64 writeMs = timer.restart();
    const double before = ResidentMemory::megabytes();
    const OpenedProject opened = ProjectStore::instance().open(folder);
    const qint64 openMs = timer.restart();
    if (!made || !opened.project) {
        std::fprintf(stderr, "%s\n", qPrintable(made.error + opened.error));
        return false;
    }
    const double memory = ResidentMemory::megabytes() - before;
    constexpr int updates = 200;
    for (int i = 0; i < updates; ++i) {
        opened.project->node(i % pipes)->updateValue(QStringLiteral("OBJ_Key"), QStringLiteral("new %1").arg(i));
        CDatabaseLibrary::dbAccessManager()->updateObject(opened.project->node(i % pipes), 5000);
    }
    const double updateMs = double(timer.restart()) / updates;
    ProjectStore::instance().close(opened.project);
    std::printf(
        "%6d pipes: write %6lld ms, open %6lld ms (%.3f ms a pipe, %.2f KB a pipe), change %.2f ms, close %lld ms\n",
        pipes, static_cast<long long>(writeMs), static_cast<long long>(openMs), double(openMs) / pipes,
        memory * 1024.0 / pipes, updateMs, static_cast<long long>(timer.elapsed()));
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    for (int pipes : {100, 1000, 10000, 50000}) {
        if (!measure(pipes)) {
            return 1;
        }
    }
    return 0;
}
