#pragma once

#include "host/import/AssembledProject.h"
#include "host/import/CourseFrame.h"
#include "host/import/ImportReport.h"

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
    };

    FindingsAssembler(const QVector<Pipe>& pipes, ImportReport& report);

    const Pipe& pipe(int index) const { return m_pipes[index]; }
    /** Index of the inspection, in the order of the calls. */
    int addInspection(const Inspection& inspection);
    /** A lateral that has its connection already. */
    void claim(const QString& lateralId) { m_claimed.insert(lateralId); }
    /** Takes a finding; one beyond the end of its pipe is taken with a warning. */
    void take(int inspection, const FindingData& finding);
    /** Gives connections their laterals; to be called once, when all findings are taken. */
    void connectLaterals();

    /** The observations of one inspection after the other, without ids of their own. */
    QVector<ObservationRow> rows() const;
    /** Bends of an inspection that say whereto and how much. */
    QVector<Course::Bend> bends(int inspection) const;
    /** The longest that anything says about a pipe; 0 when nothing does. */
    double knownLength(int inspection) const;

private:
    struct Joint {
        int lateral = -1;
        double distance = 0.0; ///< from the start of the inspection
        std::optional<Course::Branch> branch;
    };

    QVector<Joint> jointsOf(const Inspection& inspection) const;
    std::optional<Joint> jointOf(const Pipe& lateral, const Pipe& pipe, const QVector<Point>& walked,
                                 Direction direction) const;
    void connect(int inspection);

    QVector<Pipe> m_pipes;
    ImportReport& m_report;
    QVector<Inspection> m_inspections;
    QVector<QVector<ObservationRow>> m_rows; ///< of m_inspections
    QSet<QString> m_claimed;
};

} // namespace Torvik::Import
