#pragma once

#include "host/import/AssembledProject.h"
#include "host/import/CourseFrame.h"
#include "host/import/FindingsFile.h"
#include "host/import/ImportReport.h"
#include "host/import/NodeIndex.h"

#include <QHash>

namespace Torvik::Import {

/** Makes the rows of a project out of what a reader delivered: resolves references, matches ends to nodes by position,
 *  computes depths, gives every pipe an inspection, and writes shapes. Pure: the same model gives the same rows and
 * ids.
 *
 *  What it settles:
 *  - A second object of the same key and kind is left out, and a pipe that leads from a node to the same place again.
 *  - A pipe with an unknown end is taken if it has a course of its own; without one it is left out.
 *  - A node without a position is taken; where the course of a pipe ends at it, it stands there.
 *  - A node without any height lies at its lowest pipe, a pipe without any between its nodes, along the network as far
 * as heights reach; what is left lies at the median of all heights.
 *  - A pipe without a course of its own runs straight between its nodes; where an inspection has found bends, its shape
 *    begins at the start node and turns at each of them.
 *  - The depth of a pipe at a node is the node's height less the height of the course at that end. */
class NetworkAssembler {
public:
    /** Ends without a key are matched to nodes within this distance in plan. */
    static constexpr double DefaultToleranceM = 0.5;

    NetworkAssembler(const NetworkModel& model, ImportReport& report, double toleranceM = DefaultToleranceM);

    /** Findings besides those of the model; they must be set before assemble(). */
    void setFindings(const QVector<FindingRecord>& records) { m_records = records; }
    AssembledProject assemble();

private:
    struct Ends {
        int from = -1;
        int to = -1;
    };
    /** Where a row of an inspection comes from. */
    struct Inspected {
        int pipe = -1;
        int startNode = -1;
        const InspectionData* data = nullptr; ///< null for one that was made
    };

    void takeNodes();
    void takePipes();
    void takeInspections();
    void takeRecords();
    void makeMissingInspections();
    void takeInspection(const InspectionData& data, int pipe);
    void writeNodes();
    void writePipes();

    std::optional<double> heightOf(int index) const;
    void takePipe(PipeData pipe);
    Ends resolveEnds(PipeData& pipe);
    int resolveEnd(const PipeData& pipe, bool isFrom);
    void setEndHeights(PipeData& pipe, const Ends& ends) const;
    void completeCourse(PipeData& pipe, const Ends& ends);
    void settleHeights();
    bool levelNodesAtPipes();
    bool levelPipesAtNodes();
    void placeNodesAtCourse(const PipeData& pipe, const Ends& ends);
    std::optional<double> depthAt(int node, const std::optional<double>& height,
                                  const std::optional<double>& stated) const;
    void addInspection(const InspectionData* data, int pipe, Direction direction, int startNode, int endNode);
    int shapeFlags(Direction direction, int startNode, const Point& start) const;
    void takeFindings();
    std::optional<Point> startOf(int pipe, Direction direction, int startNode) const;
    void bendCourse(int inspection, const QVector<Course::Bend>& bends);
    QString freshId(const QString& kind, const QString& key);

    const NetworkModel& m_model;
    ImportReport& m_report;
    double m_tolerance;
    AssembledProject m_project;
    NodeIndex m_index;
    QVector<NodeData> m_nodes;  ///< those that are taken
    QVector<QString> m_nodeIds; ///< of m_nodes
    QVector<PipeData> m_pipes;  ///< those that are taken, with courses and heights settled
    QVector<Ends> m_ends;       ///< of m_pipes
    QVector<bool> m_isSurveyed; ///< of m_pipes: the course came from the source
    QVector<FindingRecord> m_records;
    QVector<Inspected> m_inspected; ///< of the project's inspections
    QHash<QString, int> m_pipeByKey[2];
    QVector<int> m_inspectionCount;
    QHash<QString, int> m_ids;
};

} // namespace Torvik::Import
