#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>

#include <optional>

/** What the readers of all formats deliver: a network in the source's own coordinate system, with the source's own
 * keys. Lengths and heights are metres, heights are absolute (above the system's datum), profiles are millimetres.
 *  Values only; nothing here knows a database. */
namespace Torvik::Import {

/** Where something stood in the source. */
struct SourceRef {
    QString file;
    int line = 0;    ///< counted from 1; 0 where a format has no lines
    QString feature; ///< layer and feature id, for formats that have them
};

/** A point of the source; the height may be missing. */
struct Point {
    double x = 0.0; ///< easting
    double y = 0.0; ///< northing
    std::optional<double> z;
};

enum class NodeKind { Manhole, Connection, Building };
enum class PipeKind { Section, Lateral };
/** The values are those of the project's inspections. */
enum class Direction { Unknown = 0, Downstream = 1, Upstream = 2 };

/** What is known of a structure beside its shape; empty where the source says nothing. */
struct Details {
    QString street;
    QString district;
    QString year;
    QString material;
    QString sewerType;
    QString status;
    QString remarks;
};

struct NodeData {
    QString key;
    NodeKind kind = NodeKind::Manhole;
    std::optional<Point> position; ///< where pipes meet; its z is the level at which they do, if the source says so
    std::optional<double> cover;   ///< height of the cover, or of the ground
    std::optional<double> invert;
    std::optional<double> depth; ///< as stated; used where cover or invert is missing
    std::optional<double> diameterMm;
    Details details;
    QJsonObject attributes; ///< everything else that the source says, and its own word for the kind
    SourceRef source;
};

/** A pipe, in the direction of its flow: "from" is the upstream end. */
struct PipeData {
    QString key;
    PipeKind kind = PipeKind::Section;
    QString fromKey;
    QString toKey;
    std::optional<NodeKind> fromKind; ///< for sources whose keys are unique only within a kind of node
    std::optional<NodeKind> toKind;
    std::optional<double> fromInvert;
    std::optional<double> toInvert;
    std::optional<double> fromDepth; ///< below the cover of the node; used where the invert is missing
    std::optional<double> toDepth;
    std::optional<double> heightMm; ///< the diameter of a circular pipe
    std::optional<double> widthMm;
    QString profile;
    std::optional<double> length;
    std::optional<double> offset;
    QVector<Point> course;              ///< from end to end, or empty; heights may be missing
    QString sectionKey;                 ///< of a lateral: the section that it joins
    std::optional<double> joinDistance; ///< of a lateral: where, in metres from the downstream end of that section
    Details details;
    QJsonObject attributes;
    SourceRef source;
};

/** One finding of an inspection of a pipe, in the project's meaning. */
struct FindingData {
    QString code; ///< main code
    QString ch1;
    QString ch2;
    std::optional<double> q1; ///< of a connection: its diameter in millimetres
    std::optional<double> q2;
    double distance = 0.0; ///< metres from the start of the inspection
    std::optional<double> distanceEnd;
    QString range;             ///< mark of a continuous finding: A, B or C and its number
    std::optional<int> clock1; ///< hours, 1 to 12, as seen in the direction of the inspection
    std::optional<int> clock2;
    std::optional<int> bendClock; ///< hour towards which a bend turns the pipe
    std::optional<double> angle;  ///< degrees; of a bend from straight on, of a connection from the way back
    bool isAtJoint = false;
    QString lateralKey; ///< of a connection: the lateral, where the source names it
    QString photo;
    QString videoTime;
    QString remarks;
    QJsonObject attributes;
    SourceRef source;
};

struct InspectionData {
    QString pipeKey;
    PipeKind pipeKind = PipeKind::Section;
    Direction direction = Direction::Unknown;
    QString fromKey; ///< the pipe's upstream node as the inspection names it; may be empty
    QString toKey;
    std::optional<double> inspectedLength;
    bool underWay = false; ///< neither finished nor given up: its shape ends where it stands
    QString date;          ///< ISO 8601
    QString time;          ///< hh:mm:ss
    QString inspector;
    QString remarks;
    QJsonObject attributes;        ///< the inspection as the source tells it
    QVector<FindingData> findings; ///< those that can be taken
    SourceRef source;
};

/** What belongs to a node or pipe but has no row of its own in a project (the inspection of a manhole, a tightness
 * test): it is kept with the object's attributes. */
struct AttachedRecord {
    QString reportKind;
    bool toPipe = false;
    QString key;
    std::optional<NodeKind> nodeKind;
    PipeKind pipeKind = PipeKind::Section;
    QJsonObject attributes;
    int observations = 0; ///< how many findings are among them
    SourceRef source;
};

struct NetworkModel {
    QString format; ///< for the report: "ISYBAU XML 2013-02"
    QString crs;    ///< any text that GDAL takes for a coordinate system; empty when the source names none
    QVector<NodeData> nodes;
    QVector<PipeData> pipes;
    QVector<InspectionData> inspections;
    QVector<AttachedRecord> attached;
};

} // namespace Torvik::Import
