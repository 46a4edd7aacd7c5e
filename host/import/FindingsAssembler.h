#pragma once

#include "host/import/AssembledProject.h"
#include "host/import/CourseFrame.h"
#include "host/import/FindingsFile.h"
#include "host/import/ImportReport.h"

#include <QHash>
#include <QSet>

namespace Torvik::Import {

/** Makes the observations of a project out of findings: finds the laterals that connections mean, and collects the
 * bends that shape a pipe without a surveyed course. Knows pipes and inspections only by what it needs of them, so that
 * it serves an import and a project that is there already.
 *
 *  A lateral may be the one of a connection when its end lies on the inspected pipe (half a metre in plan), or when it
 * is said to join that pipe at a distance. Of these the nearest one within two metres is taken. A lateral has one
 *  connection; the first that claims it keeps it. */
class FindingsAssembler {
public:
    /** How far a counted station and a surveyed joint of the same connection may lie apart. */
    static constexpr double StationToleranceM = 2.0;
    /** How far the end of a lateral may lie beside the pipe's axis, in plan. */
    static constexpr double OffsetToleranceM = 0.5;

    struct Pipe {
        QString id;
        QString key;
        PipeKind kind = PipeKind::Section;
        QString fromNodeId;
        QString toNodeId;
        QString sectionId;                  ///< of a lateral: the section that it is said to join
        std::optional<double> joinDistance; ///< from the downstream end of that section
        QVector<Point> course;              ///< from the upstream end; may be empty
        bool isSurveyed = false;            ///< the course is not just the line between its nodes
        std::optional<double> length;       ///< as stated
    };

    struct Inspection {
        QString id;
        int pipe = -1;
        Direction direction = Direction::Downstream;
        std::optional<double> inspectedLength;
        QString when; ///< date and time, as text that sorts; may be empty
    };

    FindingsAssembler(const QVector<Pipe>& pipes, ImportReport& report);

    const Pipe& pipe(int index) const { return m_pipes[index]; }
    /** Index of the inspection, in the order of the calls. */
    int addInspection(const Inspection& inspection);
    /** An observation that the project has already: its bend counts, and the lateral is its. */
    void addExisting(int inspection, const ObservationRow& row);
    /** Takes a finding; one beyond the end of its pipe is taken with a warning. */
    void take(int inspection, const FindingData& finding);
    /** Takes a finding that names its pipe (a section, or else a lateral) and perhaps its lateral; it belongs to the
     *  latest inspection of that pipe. One that does not fit the network is left out. */
    void take(const FindingRecord& record);
    /** Gives connections without a lateral the one that they mean. */
    void connectLaterals();

    /** The new observations of one inspection after the other, without ids of their own. */
    QVector<ObservationRow> rows() const;
    /** Whether an inspection has new bends. */
    bool hasNewBends(int inspection) const;
    enum class Which { All, Existing };
    /** Bends of an inspection that say whereto and how much. */
    QVector<Course::Bend> bends(int inspection, Which which = Which::All) const;
    /** The longest that anything says about a pipe; 0 when nothing does. */
    double knownLength(int inspection) const;

private:
    struct Joint {
        int lateral = -1;
        double distance = 0.0; ///< from the start of the inspection
        std::optional<Course::Branch> branch;
    };

    /** An end of a lateral. */
    struct LateralEnd {
        double x;
        double y;
        int lateral;
    };

    QVector<int> lateralsNear(const QVector<Point>& course, const QString& pipeId) const;
    QVector<Joint> jointsOf(const Inspection& inspection) const;
    std::optional<Joint> jointOf(const Pipe& lateral, const Pipe& pipe, const QVector<Point>& walked,
                                 Direction direction) const;
    void connect(int inspection);
    int latestInspection(int pipe) const;
    std::optional<QString> refusal(const FindingRecord& record, int pipe, int inspection) const;
    int pipeByKey(const QString& key) const;

    QVector<Pipe> m_pipes;
    ImportReport& m_report;
    QVector<Inspection> m_inspections;
    QVector<QVector<ObservationRow>> m_rows; ///< of m_inspections
    QHash<QString, int> m_pipeByKey[2];      ///< of each kind
    QVector<LateralEnd> m_lateralEnds;       ///< from west to east
    QMultiHash<QString, int> m_lateralsOf;   ///< by the section that they are said to join
    QSet<QString> m_claimed;                 ///< laterals that have their connection
};

} // namespace Torvik::Import
