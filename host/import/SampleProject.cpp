#include "host/import/SampleProject.h"

#include "host/domain/ProjectStore.h"
#include "host/import/Import.h"

#include <QDir>
#include <QFileInfo>

/** Resources of a static library are linked in only by name, and the name works only outside of namespaces. */
static void initSampleResource()
{
    Q_INIT_RESOURCE(samples);
}

namespace Torvik::Import {

QString sampleSource()
{
    initSampleResource();
    return QStringLiteral(":/kxviewer/samples/muehlenviertel.xml");
}

QString ensureSampleProject(const QString& writableFolder, QString* error)
{
    const QString folder = QDir(writableFolder).filePath(QStringLiteral("Muehlenviertel"));
    if (QFileInfo::exists(Torvik::Database::ProjectStore::databaseFile(folder)))
        return folder;
    if (!QDir().mkpath(writableFolder)) {
        if (error)
            *error = QStringLiteral("%1: the folder cannot be made").arg(writableFolder);
        return {};
    }
    ImportOptions options;
    options.source = sampleSource();
    options.project = folder;
    ImportReport report;
    if (importProject(options, report))
        return folder;
    if (error)
        *error = report.errorText();
    return {};
}

} // namespace Torvik::Import
