#include "host/import/ImportReport.h"

#include "host/domain/WholeFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>
#include <QTextStream>

#include <algorithm>

namespace Torvik::Import {

namespace {

QString place(const SourceRef& source)
{
    QString text = source.file;
    if (source.line > 0)
        text += QStringLiteral(":%1").arg(source.line);
    if (!source.feature.isEmpty())
        text += QStringLiteral(" (%1)").arg(source.feature);
    return text;
}

QString severityName(ImportReport::Severity severity)
{
    switch (severity) {
    case ImportReport::Severity::Error:
        return QStringLiteral("error");
    case ImportReport::Severity::LeftOut:
        return QStringLiteral("leftOut");
    case ImportReport::Severity::Warning:
        break;
    }
    return QStringLiteral("warning");
}

} // namespace

void ImportReport::read(const QString& kind, int count)
{
    m_counts[kind].read += count;
}

void ImportReport::taken(const QString& kind, int count)
{
    m_counts[kind].taken += count;
}

void ImportReport::made(const QString& kind, int count)
{
    m_counts[kind].made += count;
}

void ImportReport::leaveOut(const QString& kind, const QString& key, const SourceRef& source, const QString& reason,
                            const QString& group)
{
    Count& count = m_counts[kind];
    ++count.leftOut;
    ++count.reasons[group.isEmpty() ? reason : group];
    m_problems.append({Severity::LeftOut, kind, key, source, reason});
}

void ImportReport::warn(const QString& kind, const QString& key, const SourceRef& source, const QString& reason)
{
    m_problems.append({Severity::Warning, kind, key, source, reason});
}

void ImportReport::fail(const SourceRef& source, const QString& reason)
{
    const QString where = place(source);
    if (m_error.isEmpty())
        m_error = where.isEmpty() ? reason : QStringLiteral("%1: %2").arg(where, reason);
    m_problems.append({Severity::Error, {}, {}, source, reason});
}

bool ImportReport::isBalanced() const
{
    return std::all_of(m_counts.cbegin(), m_counts.cend(),
                       [](const Count& count) { return count.read == count.taken + count.leftOut; });
}

QJsonObject ImportReport::toJson() const
{
    QJsonObject kinds;
    for (auto it = m_counts.cbegin(); it != m_counts.cend(); ++it) {
        QJsonObject reasons;
        for (auto reason = it->reasons.cbegin(); reason != it->reasons.cend(); ++reason)
            reasons.insert(reason.key(), reason.value());
        kinds.insert(it.key(), QJsonObject {{QStringLiteral("read"), it->read},
                                            {QStringLiteral("taken"), it->taken},
                                            {QStringLiteral("leftOut"), it->leftOut},
                                            {QStringLiteral("made"), it->made},
                                            {QStringLiteral("reasons"), reasons}});
    }
    QJsonArray problems;
    for (const Problem& problem : m_problems) {
        QJsonObject entry {{QStringLiteral("severity"), severityName(problem.severity)},
                           {QStringLiteral("kind"), problem.kind},
                           {QStringLiteral("key"), problem.key},
                           {QStringLiteral("file"), problem.source.file},
                           {QStringLiteral("reason"), problem.reason}};
        if (problem.source.line > 0)
            entry.insert(QStringLiteral("line"), problem.source.line);
        if (!problem.source.feature.isEmpty())
            entry.insert(QStringLiteral("feature"), problem.source.feature);
        problems.append(entry);
    }
    return {{QStringLiteral("ok"), !failed()},    {QStringLiteral("error"), m_error},
            {QStringLiteral("format"), format},   {QStringLiteral("crs"), crs},
            {QStringLiteral("project"), project}, {QStringLiteral("files"), QJsonArray::fromStringList(files)},
            {QStringLiteral("kinds"), kinds},     {QStringLiteral("problems"), problems}};
}

QString ImportReport::summary() const
{
    QStringList lines;
    lines << QStringLiteral("%1, %2").arg(format, crs.isEmpty() ? QStringLiteral("no coordinate system") : crs);
    for (auto it = m_counts.cbegin(); it != m_counts.cend(); ++it) {
        QString line = QStringLiteral("%1: %2 read, %3 taken, %4 left out")
                           .arg(it.key())
                           .arg(it->read)
                           .arg(it->taken)
                           .arg(it->leftOut);
        if (it->made > 0)
            line += QStringLiteral(", %1 made").arg(it->made);
        lines << line;
        for (auto reason = it->reasons.cbegin(); reason != it->reasons.cend(); ++reason)
            lines << QStringLiteral("    %1 x %2").arg(reason.value()).arg(reason.key());
    }
    return lines.join(QLatin1Char('\n'));
}

QString ImportReport::lineOf(const Problem& problem)
{
    QStringList parts;
    const QString where = place(problem.source);
    if (!where.isEmpty())
        parts << where;
    const QString what = QStringLiteral("%1 %2").arg(problem.kind, problem.key).trimmed();
    if (!what.isEmpty())
        parts << what;
    QString text = problem.reason;
    if (problem.severity == Severity::LeftOut)
        text = QStringLiteral("left out: ") + text;
    else if (problem.severity == Severity::Warning)
        text = QStringLiteral("warning: ") + text;
    parts << text;
    return parts.join(QStringLiteral(": "));
}

int ImportReport::tell(bool ok, const QString& jsonFile, QTextStream& out, QTextStream& err) const
{
    if (!jsonFile.isEmpty()) {
        const QString error = Database::WholeFile::write(jsonFile, QJsonDocument(toJson()).toJson());
        if (!error.isEmpty())
            err << "error: the report was not written: " << error << '\n';
    }
    for (const Problem& problem : m_problems) {
        if (problem.severity != Severity::Error)
            err << lineOf(problem) << '\n';
    }
    if (ok)
        out << summary() << '\n' << "project: " << project << '\n';
    else
        err << "error: " << errorText() << '\n';
    out.flush();
    err.flush();
    return ok ? 0 : 1;
}

} // namespace Torvik::Import
