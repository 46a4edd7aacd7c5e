#pragma once

#include "domain/boundary/Vector3D.h"
#include "host/app/CameraPose.h"

#include <QJsonObject>
#include <QMatrix4x4>
#include <QString>
#include <QVector>

namespace Torvik::Viewer {

using Polyline = QVector<QVector3D>;

/** The scene at one moment, as plain values: what a support case, a check and the camera need to know of it. Positions
 * are scene coordinates in metres: x west, y up, z north. */
struct SceneSnapshot {
    struct Node {
        QString key;
        QString guid;
        QString type;
        QVector3D position;
        /** Where the position comes from, TransformFlags. */
        int flags = 0;
        float depth = 0;
        float radius = 0;
        float seaLevel = 0;
        bool visible = false;
        bool isVirtual = false;
    };

    struct Section {
        QString key;
        /** Of the inspection, under which the scene knows the section. */
        QString guid;
        QString sectionId;
        bool lateral = false;
        /** Guids; empty where there is none. */
        QString startNode;
        QString endNode;
        /** "downstream", "upstream" or "unknown". */
        QString direction;
        int flags = 0;
        float radius = 0;
        Polyline points;
        /** Of a second pipe in the same section; mostly empty. */
        Polyline secondPoints;
        double length = 0;
    };

    struct Observation {
        QString id;
        QString code;
        /** "bend", "connection", "end" or "plain". */
        QString kind;
        /** Ids of the pipe and of its inspection. */
        QString section;
        QString inspection;
        /** Metres along the pipe. */
        double distance = 0;
        QVector3D position;
        /** Hours. */
        int clock = 0;
        int bendClock = 0;
        /** Degrees. */
        double angle = 0;
        /** Id of the lateral that the record names; mostly empty. */
        QString lateral;
    };

    /** A lateral on the pipe that carries it. */
    struct Connection {
        /** Ids of the lateral, of the observation that tells of the joint, and of the pipe on which the joint is. */
        QString lateral;
        QString observation;
        QString section;
        /** Where the lateral begins. */
        QVector3D point;
    };

    /** What lies under the network, or on a floor. */
    struct Plan {
        /** "imagebackground", "pdfimagebackground" or "dxfbackground". */
        QString kind;
        QString file;
        /** From the plan to the scene. */
        QMatrix4x4 matrix;
        /** The corner by which it is anchored, in the plan. */
        QVector3D anchor;
        float elevation = 0;
        bool locked = false;
        bool visible = false;
        /** It waits for the user's confirmation, and the project does not hold it. */
        bool toConfirm = false;
        /** -1 under the network. */
        int floor = -1;
    };

    /** Of the building. */
    struct Floors {
        /** The one that is shown, or -1. */
        int shown = -1;
        /** In metres, each above the one below; empty before any were told. */
        QVector<double> heights;
    };

    /** Scene = cartesian * scale - origin, cartesian = (-easting, height, northing). */
    View3d::Vector3D<double> origin;
    double scale = 1;
    QString projection;
    QVector<Node> nodes;
    QVector<Section> sections;
    QVector<Observation> observations;
    QVector<Connection> connections;
    /** The project's own, the one that waits for confirmation, and those of the floors from below. */
    QVector<Plan> plans;
    Floors floors;
};

/** Sorted by key, then by guid; observations by their pipe, then along it; connections by their lateral. Numbers with
 * as many digits as tell them apart from all others. */
QJsonObject toJson(const SceneSnapshot& snapshot);

/** A pipe of this length has no course yet. Metres. */
constexpr double longestStub = 0.011;

/** What is to be seen of the scene: nodes that show, down to their invert, and pipes longer than the stub that stands
 * for a course yet unknown. */
Bounds boundsOf(const SceneSnapshot& snapshot);
Bounds boundsOf(const SceneSnapshot::Node& node);
Bounds boundsOf(const SceneSnapshot::Section& section);

/** Easting, northing, height of a scene point. */
View3d::Vector3D<double> projectedFromScene(const QVector3D& point, const SceneSnapshot& snapshot);

} // namespace Torvik::Viewer
