#include "host/app/Commands.h"

#include "host/app/HeadlessScene.h"
#include "host/app/ProjectInfo.h"
#include "host/app/SceneReader.h"
#include "host/domain/ProjectStore.h"
#include "host/domain/WholeFile.h"
#include "host/import/Import.h"
#include "host/import/ProjectFindings.h"
#include "host/import/SampleProject.h"

#include <QDir>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTextStream>

namespace Torvik::Viewer::Commands {

using Database::ProjectStore;

int failure(const QString& message)
{
    QTextStream(stderr) << "kxviewer: " << QString(message).replace(QLatin1Char('\n'), QLatin1Char(' ')) << '\n';
    return 1;
}

QString projectFolder(const Options& options)
{
    if (!options.project.isEmpty())
        return options.project;
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QString error;
    const QString sample = QDir().mkpath(data) ? Import::ensureSampleProject(data, &error) : QString();
    if (sample.isEmpty())
        failure(QStringLiteral("the sample cannot be made in %1: %2").arg(data, error));
    return sample;
}

int info(const Options& options)
{
    const auto opened = ProjectStore::instance().open(options.project, ProjectStore::ReadOnly);
    if (!opened.project)
        return failure(opened.error);
    const ProjectInfo content = collectInfo(*opened.project);
    ProjectStore::instance().close(opened.project);
    QTextStream out(stdout);
    if (options.infoAsJson)
        out << QString::fromUtf8(QJsonDocument(toJson(content)).toJson());
    else
        out << toText(content);
    return 0;
}

int import(const Options& options)
{
    Import::ImportOptions wishes;
    wishes.source = options.source;
    wishes.project = options.project;
    wishes.crs = options.crs;
    wishes.mapping = options.mappingFile;
    wishes.with = options.furtherSources;
    wishes.findings = options.findingsFiles;
    wishes.report = options.reportFile;
    QTextStream out(stdout);
    QTextStream err(stderr);
    return Import::runImport(wishes, out, err);
}

int findings(const Options& options)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    return Import::runFindings({options.project, options.findingsFiles, options.reportFile}, out, err);
}

int dump(const Options& options)
{
    const QString folder = projectFolder(options);
    if (folder.isEmpty())
        return 1;
    const auto opened = ProjectStore::instance().open(folder);
    if (!opened.project)
        return failure(opened.error);

    HeadlessScene::show(opened.project);
    const QString planError = HeadlessScene::layPlan({options.planFile, options.planScale, options.planPlace});
    if (!planError.isEmpty())
        return failure(planError);
    const QByteArray json = QJsonDocument(toJson(SceneReader::snapshot())).toJson();
    const QString error = Database::WholeFile::write(options.outputFile, json);
    return error.isEmpty() ? 0 : failure(error);
}

} // namespace Torvik::Viewer::Commands
