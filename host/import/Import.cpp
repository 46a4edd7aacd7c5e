#include "host/import/Import.h"

#include "host/domain/Foot.h"
#include "host/domain/ObservationCodes.h"
#include "host/import/CoordinateSystem.h"
#include "host/import/IsybauReader.h"
#include "host/import/NetworkAssembler.h"
#include "host/import/OgrReader.h"
#include "host/import/ProjectWriter.h"
#include "host/import/SwmmReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Torvik::Import {

namespace {

/** One import from options to rows. Every step returns false once the report has failed. */
class Run {
public:
    Run(const ImportOptions& options, ImportReport& report)
        : m_options(options)
        , m_report(report)
    {
    }

    bool read()
    {
        if (!m_options.crs.isEmpty()) {
            QString error;
            m_wanted = CoordinateSystem::fromText(m_options.crs, &error);
            if (!m_wanted)
                return fail({}, error);
        }
        m_report.files = QStringList {m_options.source} + m_options.with;
        for (const QString& file : qAsConst(m_report.files)) {
            // A source of GDAL need not be a file.
            if (m_options.mapping.isEmpty() && !QFileInfo::exists(file))
                return fail({file, 0, {}}, QStringLiteral("no such file"));
        }
        const QString suffix = QFileInfo(m_options.source).suffix().toLower();
        bool ok = false;
        if (!m_options.mapping.isEmpty())
            ok = readOgr();
        else if (suffix == QLatin1String("inp"))
            ok = readSwmm();
        else if (suffix == QLatin1String("xml"))
            ok = readIsybau();
        else
            return fail(
                {m_options.source, 0, {}},
                QStringLiteral("neither ISYBAU XML (.xml) nor SWMM (.inp); any other source needs --mapping FILE"));
        return ok && !m_report.failed() && readFindings();
    }

    AssembledProject assemble()
    {
        AssembledProject project = assembleNetwork();
        project.crsWkt = m_crs.wkt();
        m_report.format = m_model.format;
        m_report.crs = m_crs.label();
        if (project.nodes.isEmpty() && project.pipes.isEmpty())
            fail({m_options.source, 0, {}}, QStringLiteral("nothing to import: no node and no pipe could be taken"));
        return project;
    }

private:
    bool fail(const SourceRef& source, const QString& reason)
    {
        m_report.fail(source, reason);
        return false;
    }

    bool open(QFile& file)
    {
        if (file.open(QIODevice::ReadOnly))
            return true;
        return fail({file.fileName(), 0, {}}, file.errorString());
    }

    AssembledProject assembleNetwork()
    {
        NetworkAssembler assembler(m_model, m_report, m_tolerance);
        assembler.setFindings(m_records);
        return assembler.assemble();
    }

    bool readFindings()
    {
        m_report.files += m_options.findings;
        for (const QString& path : m_options.findings) {
            QFile file(path);
            if (!open(file))
                return false;
            m_records += FindingsFile::read(file.readAll(), path, m_report);
        }
        return !m_report.failed();
    }

    bool refuseFurtherFiles()
    {
        return m_options.with.isEmpty() || fail({}, QStringLiteral("--with is for ISYBAU XML only"));
    }

    bool readIsybau()
    {
        IsybauReader reader(m_model, m_report);
        for (const QString& path : qAsConst(m_report.files)) {
            QFile file(path);
            if (!open(file) || !reader.read(file, path))
                return false;
        }
        CoordinateSystem system;
        if (m_wanted) {
            system = *m_wanted;
        } else if (!m_model.crs.isEmpty()) {
            const std::optional<CoordinateSystem> own = CoordinateSystem::fromText(m_model.crs, nullptr);
            if (own)
                system = *own;
        }
        return settle(system);
    }

    bool readSwmm()
    {
        QFile file(m_options.source);
        SwmmReader reader(m_model, m_report);
        if (!refuseFurtherFiles() || !open(file) || !reader.read(file, m_options.source))
            return false;
        // What the file says about its ordinates counts first; then the system that the user names; then the model's
        // units.
        using Unit = SwmmReader::OrdinateUnit;
        const Unit unit = reader.ordinateUnit();
        const bool isInMetres = !m_wanted || m_wanted->isGeographic() || qFuzzyCompare(m_wanted->metresPerUnit(), 1.0);
        const bool isInFeet = unit == Unit::Feet || (unit == Unit::NotSaid && !m_wanted && reader.isUsUnits());
        if (isInFeet && isInMetres && !(m_wanted && m_wanted->isGeographic()))
            scale(metresPerFoot);
        else if (unit == Unit::Metres && !isInMetres)
            scale(1.0 / m_wanted->metresPerUnit());
        return settle(m_wanted.value_or(CoordinateSystem()));
    }

    bool readOgr()
    {
        QFile file(m_options.mapping);
        if (!refuseFurtherFiles() || !open(file))
            return false;
        QString error;
        const std::optional<OgrMapping> mapping = OgrMapping::parse(file.readAll(), &error);
        if (!mapping)
            return fail({m_options.mapping, 0, {}}, error);
        m_tolerance = mapping->tolerance;
        OgrReader reader(m_model, m_report, *mapping, m_options.crs);
        return reader.read(m_options.source) && settle(reader.crs());
    }

    void scale(double factor)
    {
        for (NodeData& node : m_model.nodes) {
            if (node.position)
                node.position = Point {node.position->x * factor, node.position->y * factor, node.position->z};
        }
        for (PipeData& pipe : m_model.pipes) {
            for (Point& point : pipe.course)
                point = Point {point.x * factor, point.y * factor, point.z};
        }
    }

    bool settle(const CoordinateSystem& system)
    {
        if (system.isLocal())
            m_report.warn(
                {}, {}, {m_options.source, 0, {}},
                QStringLiteral("no coordinate system; the network gets a plane of its own (--crs EPSG:N names one)"));
        m_crs = settleCoordinates(m_model, system, m_report);
        return !m_report.failed();
    }

    const ImportOptions& m_options;
    ImportReport& m_report;
    NetworkModel m_model;
    QVector<FindingRecord> m_records;
    std::optional<CoordinateSystem> m_wanted;
    CoordinateSystem m_crs;
    double m_tolerance = NetworkAssembler::DefaultToleranceM;
};

bool isFree(const QString& folder)
{
    const QFileInfo info(folder);
    if (!info.exists() && !info.isSymLink())
        return true;
    return info.isDir() && QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

bool importProject(const ImportOptions& options, ImportReport& report)
{
    report.project = options.project;
    if (!isFree(options.project)) {
        report.fail({options.project, 0, {}},
                    QStringLiteral("exists already and is not empty; nothing is overwritten"));
        return false;
    }
    for (const QString& problem : Database::ObservationCodes::useFiles({Database::ObservationCodes::settingsFile()}))
        report.warn(Kinds::Observations, {}, {}, problem);
    Run run(options, report);
    if (!run.read())
        return false;
    const AssembledProject project = run.assemble();
    if (report.failed())
        return false;
    const QString name = QFileInfo(options.project).fileName();
    const QString error = ProjectWriter::write(project, options.project, name);
    if (!error.isEmpty())
        report.fail({}, error);
    return error.isEmpty();
}

int runImport(const ImportOptions& options, QTextStream& out, QTextStream& err)
{
    ImportReport report;
    const bool ok = importProject(options, report);
    return report.tell(ok, options.report, out, err);
}

} // namespace Torvik::Import
