#pragma once

#include "host/import/NetworkModel.h"

#include <QJsonObject>
#include <QMap>

class QTextStream;

namespace Torvik::Import {

/** The account of an import: how much of each kind was read, taken and left out, and every problem with its place.
 *  For every kind read = taken + leftOut holds once the import has run; isBalanced() tells. */
class ImportReport {
public:
    struct Count {
        int read = 0;
        int taken = 0;
        int leftOut = 0;
        int made = 0; ///< not in the source, but needed by the project
        QMap<QString, int> reasons;
    };

    enum class Severity { Error, LeftOut, Warning };

    struct Problem {
        Severity severity = Severity::Warning;
        QString kind;
        QString key;
        SourceRef source;
        QString reason;
    };

    QString format;
    QString crs;
    QString project;
    QStringList files;

    void read(const QString& kind, int count = 1);
    void taken(const QString& kind, int count = 1);
    void made(const QString& kind, int count = 1);
    /** One object that does not reach the project. `group` is the reason without the particulars, for the summary;
     *  where it is empty the reason stands for itself. */
    void leaveOut(const QString& kind, const QString& key, const SourceRef& source, const QString& reason,
                  const QString& group = {});
    /** Something that the user should look at; the object itself is taken. */
    void warn(const QString& kind, const QString& key, const SourceRef& source, const QString& reason);
    /** What ends the import. The first one is errorText(). */
    void fail(const SourceRef& source, const QString& reason);

    bool failed() const { return !m_error.isEmpty(); }
    /** "FILE:LINE: reason". */
    QString errorText() const { return m_error; }
    bool isBalanced() const;
    Count count(const QString& kind) const { return m_counts.value(kind); }
    QStringList kinds() const { return m_counts.keys(); }
    const QVector<Problem>& problems() const { return m_problems; }

    QJsonObject toJson() const;
    /** Tells a user at a terminal: the summary if it went well, the problems, one line "error: ..." if not; and writes
     * the JSON into a file, if one is named. Gives the program's exit status. */
    int tell(bool ok, const QString& jsonFile, QTextStream& out, QTextStream& err) const;
    /** The summary for a terminal: a line a kind, a line a reason. */
    QString summary() const;
    /** "FILE:LINE: sections KEY: reason". */
    static QString lineOf(const Problem& problem);

private:
    QMap<QString, Count> m_counts;
    QVector<Problem> m_problems;
    QString m_error;
};

/** Names of the kinds in a report. */
namespace Kinds {
inline const QString Nodes = QStringLiteral("nodes");
inline const QString Sections = QStringLiteral("sections");
inline const QString Laterals = QStringLiteral("laterals");
inline const QString Inspections = QStringLiteral("inspections");
inline const QString NodeInspections = QStringLiteral("nodeInspections");
inline const QString Observations = QStringLiteral("observations");
inline const QString NodeObservations = QStringLiteral("nodeObservations");
inline const QString TightnessTests = QStringLiteral("tightnessTests");
inline const QString Objects = QStringLiteral("objects"); ///< neither a node nor a pipe, as far as can be told
inline QString ofPipe(PipeKind kind)
{
    return kind == PipeKind::Section ? Sections : Laterals;
}
} // namespace Kinds

} // namespace Torvik::Import
