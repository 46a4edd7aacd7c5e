// libFuzzer's target: any bytes as a project's plan.xml; what was read is stored and read again. scripts/fuzz.sh builds
// and runs it.
#include "domain/boundary/BaseServices.h"
#include "fuzz/Scratch.h"
#include "host/domain/LogSink.h"
#include "plans/PlanSettingsIO.h"

#include <QDir>
#include <QFileInfo>
#include <Qt3DCore/QTransform>

#include <cmath>

using namespace Torvik::View3d;
using namespace Kx::Fuzz;
using Torvik::Base::CFileSystemNames;

namespace {

bool isFinite(const QVector3D& v)
{
    return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}

void check(const PlanSettings& settings, const QString& project)
{
    promise(isFinite(settings.translation) && isFinite(settings.scale) && isFinite(settings.rotation));
    promise(std::isfinite(settings.referencePoint.x()) && std::isfinite(settings.referencePoint.y()) &&
            std::isfinite(settings.referencePoint.z()));
    promise(settings.planPath.isEmpty() || settings.planPath.startsWith(project));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    static const QString project = scratchName("plan") + QLatin1Char('/');
    static const QString folder = project + CFileSystemNames::graphics3DPathPart();
    Torvik::Logging::LogSink::setThreshold(0);
    promise(QDir().mkpath(folder));
    write(folder + QStringLiteral("plan.xml"), data, size);

    PlanSettingsIO io;
    io.tryToLoadPlanSettings(project);
    const PlanSettings read = io.getPlanSettings();
    check(read, project);
    Qt3DCore::QTransform transform;
    transform.setTranslation(read.translation);
    transform.setScale3D(read.scale);
    transform.setRotationY(read.rotation.y());
    if (PlanSettingsIO::savePlanFile(project, transform, read.planPath, {})) {
        io.tryToLoadPlanSettings(project);
        promise(io.problem().isEmpty());
        promise(QFileInfo(io.getPathToPlanImage()).fileName() == QFileInfo(read.planPath).fileName());
        check(io.getPlanSettings(), project);
    }
    QDir(project).removeRecursively();
    return 0;
}
