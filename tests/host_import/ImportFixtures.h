#pragma once

#include "common/SharedData.h"
#include "host/import/ImportReport.h"
#include "host/import/IsybauReader.h"
#include "host/import/NetworkAssembler.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QString>

/** What the tests of the import share: sources of the repository, real data where it lies beside it, short ways in. */
namespace ImportFixtures {

inline QString own(const QString& name)
{
    return QStringLiteral(KX_SOURCE_DIR "/tests/host_import/data/") + name;
}

struct Imported {
    Torvik::Import::NetworkModel model;
    Torvik::Import::ImportReport report;
    Torvik::Import::AssembledProject project;
    bool ok = true;

    const Torvik::Import::NodeRow* node(const QString& key) const
    {
        for (const auto& row : project.nodes) {
            if (row.key == key)
                return &row;
        }
        return nullptr;
    }
    const Torvik::Import::PipeRow* pipe(const QString& key) const
    {
        for (const auto& row : project.pipes) {
            if (row.key == key)
                return &row;
        }
        return nullptr;
    }
    QVector<Torvik::Import::InspectionRow> inspections(const QString& pipeKey) const
    {
        QVector<Torvik::Import::InspectionRow> found;
        for (const auto& row : project.inspections) {
            if (pipe(pipeKey) && row.pipeId == pipe(pipeKey)->id)
                found.append(row);
        }
        return found;
    }
    /** How many problems of that key mention the text. */
    int problems(const QString& key, const QString& text) const
    {
        int count = 0;
        for (const auto& problem : report.problems()) {
            if (problem.key == key && problem.reason.contains(text))
                ++count;
        }
        return count;
    }
    int lineOfProblem(const QString& key) const
    {
        for (const auto& problem : report.problems()) {
            if (problem.key == key)
                return problem.source.line;
        }
        return -1;
    }
};

inline Imported isybau(const QStringList& paths)
{
    Imported result;
    Torvik::Import::IsybauReader reader(result.model, result.report);
    for (const QString& path : paths) {
        QFile file(path);
        result.ok = result.ok && file.open(QIODevice::ReadOnly) && reader.read(file, QFileInfo(path).fileName());
    }
    if (result.ok)
        result.project = Torvik::Import::NetworkAssembler(result.model, result.report).assemble();
    return result;
}

} // namespace ImportFixtures
