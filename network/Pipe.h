#pragma once

#include "domain/boundary/Vector3D.h"
#include "network/ChainLengths.h"
#include "network/CylinderSegment.h"
#include "network/PipeAppearance.h"
#include "network/SegmentModifier.h"
#include "scene/KxView3dExport.h"

#include <Qt3DCore/QEntity>

#include <QColor>
#include <QMatrix4x4>
#include <QPointer>
#include <QQuaternion>
#include <QVector3D>
#include <QVector>

namespace Qt3DCore {
class QTransform;
}

namespace Torvik::View3d {

/** The course of a section: a chain of straight segments, addressed by the distance along it.
 *
 *  Frames: a pipe is built from points in the scene, and these stay the chain's coordinates. Building it moves the
 *  parent to the first point and turns it along the first segment; from then on moving or turning the parent moves the
 *  pipe, the chain's coordinates stay, and worldMatrix() leads from the chain to the scene. Metres, y up.
 *
 *  Every segment's length counts rounded to centimetres. A segment begins where the one before it ends, and there is at
 *  least one. Removed segments leave the chain at once and the scene with the next turn of the event loop. Owned by its
 *  parent. Main thread only. */
class KXVIEW3D_EXPORT Pipe : public Qt3DCore::QEntity, private SegmentLengthListener {
    Q_OBJECT

public:
    /** Without points a stub of one centimetre along +z. */
    static Pipe* create(Qt3DCore::QEntity* parent, QVector<QVector3D> points, float radius);
    /** Length in metres of a pipe of which only the begin is known. */
    static float initialSegmentLength();

    explicit Pipe(Qt3DCore::QEntity* parent);
    /** A single point gives the stub that begins there. */
    Pipe(Qt3DCore::QEntity* parent, QVector<QVector3D> points);

    float length() const;
    float radius() const { return m_radius; }
    /** Radius of all segments in metres; a change below the fuzzy tolerance, without bias, is none. */
    void setRadius(float radius);
    /** Colour of the segments that there are; those that come later begin in the usual green. */
    void setColor(QColor color);
    PipeAppearance appearance() const;

    const QVector<EntitySegment*>& segments() const { return m_segments; }
    int segmentCount() const { return m_segments.size(); }
    /** Null when there is none. */
    EntitySegment* firstSegment() const;
    EntitySegment* lastSegment() const;
    EntitySegment* beforeLastSegment() const;
    /** In the frame of the chain; zero for an empty chain. */
    QVector3D firstPoint() const;
    QVector3D lastPoint() const;
    /** Scene coordinates: begin of the first segment, then every segment's end. */
    QVector<QVector3D> getShapePoints() const;

    /** From the chain to the scene. */
    QMatrix4x4 worldMatrix() const;
    /** Frame in the scene at a distance: turned as the segment there. At or behind the end, the end of the chain. */
    QMatrix4x4 getTransformMatrixAtDistance(float distance) const;
    /** The same inside the chain; at or behind the end the identity. */
    QMatrix4x4 getTransformMatrixAtDistanceOrZero(float distance) const;
    /** Index of the segment that holds the distance, which becomes the distance inside it; -1 behind the end, then it
     *  becomes the distance behind the end. A joint belongs to the segment behind it. */
    int findSegmentIdxByDistance(float& distance) const;
    SegmentAction getActionForNearestSegment(float distance) const;

    /** Rebuilds the chain; an empty list changes nothing. */
    void updatePoints(QVector<QVector3D> points);
    /** Appends a segment of one metre straight on. */
    void addPoint();
    /** Appends a segment to `point`, in the frame of the chain. Null for an empty chain. */
    EntitySegment* addPoint(const QVector3D& point);
    /** A measured point: replaces the stretch from the last measured point to `distance` by one straight segment to
     *  `point`, and keeps the rest. Gives that segment, or null when the distance lies before the last measured
     * segment. Only after startSensorMeasurement(). */
    EntitySegment* addPoint(const QVector3D& point, float distance);
    /** Points are not deleted one by one; gives 0. */
    int delPoint(int index);
    void delAllPoints();
    /** The segment before takes over the length. The first one stays, with an error in the log. */
    void removeSegment(int index);
    /** Cuts a segment at a distance from its begin and gives the new one behind the cut. */
    EntitySegment* splitSegment(int index, float distance);

    /** Adds a bend at a distance, or changes the one there, and turns what follows. Gives the segment behind the bend,
     *  null for an empty chain. */
    EntitySegment* modifySegmentsRotation(QQuaternion rotation, float distance);
    EntitySegment* addRotationAtChainEnd(QQuaternion rotation);
    EntitySegment* addRotationInsideChain(QQuaternion rotation, float distance);
    /** Removes the last bend for a distance at or behind the end, else always the first, wherever the distance is. */
    void removeSegmentsRotation(float distance);
    void removeRotationInsideChain(float distance);
    void removeRotationAtChainEnd();

    /** Let the segments from `index` on follow the one before them; each keeps its bend. */
    void recalcChainFromIdx(int index);
    void translateChainFromIdx(int index, QVector3D vector);
    void translateAllSegments(QVector3D vector);

    /** A sensor's run begins at `distance`; `direction` is not used. */
    void startSensorMeasurement(Vector3D<double> point, QVector3D direction, float distance);

signals:
    /** Measured points from `start` to before `end` have gone. Only measured points emit these two; the flag asks the
     *  listener to number anew what follows. */
    void segmentsRemoved(int start, int end, bool recalculateIndexes = false);
    void segmentAdded(QVector3D point, int index, bool recalculateIndexes = false);

private:
    void build(QVector<QVector3D> points);
    void buildSegmentsFromSegmentsPoints(QVector<QVector3D> points);
    void addFirstSegment(const QVector3D& begin, const QVector3D& end);
    using Drawing = CylinderSegment::Drawing;
    CylinderSegment* newSegment(EntitySegment* prev, const QVector3D& begin, const QVector3D& end,
                                Drawing drawing = Drawing::AtOnce);
    void appendSegment(EntitySegment* segment);
    void insertSegment(int index, EntitySegment* segment);
    /** For a segment that has another behind it: drawn with those before it if that looks the same, else by itself. */
    void drawTogether(int index);
    void onSegmentLengthChanged(const EntitySegment* segment) override;
    void setParentTransform();
    void setPivotPoint();
    void setParentPosition();
    QMatrix4x4 matrixAt(const EntitySegment* segment, float inner) const;
    bool liesInside(float distance) const;

    EntitySegment* addMeasuredBehindChain(const QVector3D& point);
    EntitySegment* addMeasuredInLaterSegment(const QVector3D& point, int index, float inner);
    EntitySegment* addMeasuredInSameSegment(const QVector3D& point, float inner);
    EntitySegment* cutOffRest(int index, float inner, const QVector3D& point);
    EntitySegment* insertMeasured(int index, EntitySegment* anchor, const QVector3D& begin, const QVector3D& point);
    void takeSegment(int index);

    QMatrix4x4 m_pivot;
    Qt3DCore::QTransform* m_ownTransform = nullptr;
    QPointer<Qt3DCore::QTransform> m_parentTransform;
    QVector<EntitySegment*> m_segments;
    ChainLengths m_lengths; ///< of the segments
    float m_radius = 0.25F;
    QVector3D m_lastMeasuredPoint;
    int m_lastMeasuredIndex = -1;
    SegmentModifier m_modifier;
};

} // namespace Torvik::View3d
