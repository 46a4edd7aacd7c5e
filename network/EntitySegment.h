#pragma once

#include "network/PointSegment.h"
#include "scene/KxView3dExport.h"

#include <Qt3DCore/QEntity>

#include <QColor>
#include <QPointer>
#include <QQuaternion>
#include <QVector3D>

namespace Qt3DCore {
class QTransform;
}

namespace Torvik::View3d {

class EntitySegment;

/** Hears of segments that have become longer or shorter. */
class SegmentLengthListener {
public:
    virtual void onSegmentLengthChanged(const EntitySegment* segment) = 0;

protected:
    ~SegmentLengthListener() = default;
};

/** One straight piece of a pipe's chain: where it begins and ends, how it is turned, and which piece comes before.
 *
 *  Everything is in the frame of the chain (metres, y up, forward is local +z). A segment reads its predecessor and
 *  never changes it; whoever changes a segment sees to those behind it. Owned by its parent node. Main thread only. */
class KXVIEW3D_EXPORT EntitySegment : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    /** `prev` is null for the first of a chain. */
    EntitySegment(Qt3DCore::QNode* parent, EntitySegment* prev, QVector3D begin, QVector3D end);

    virtual void setColor(QColor color) = 0;
    /** A ball at the segment's end, for as long as something is about to be connected there. */
    virtual void createConnectionJoint();
    virtual void removeConnectionJoint();
    virtual void calcMeshLength(float length) = 0;
    virtual void calcMeshRotation(const QQuaternion& rotation) = 0;

    /** Rounded to centimetres. */
    float length() const { return m_points.distance(); }
    QVector3D direction() const { return m_points.direction(); }
    QVector3D upDirection() const { return m_points.upDirection(); }
    QVector3D beginPoint() const { return m_points.beginPoint(); }
    QVector3D endPoint() const { return m_points.endPoint(); }
    QQuaternion rotation() const { return m_rotation; }
    /** Rotation of the segment before, or the identity. */
    QQuaternion parentRotation() const;
    /** Begin and rotation as of the last change; null in a segment that is not drawn. */
    Qt3DCore::QTransform* transform() const { return m_segmentTransform; }
    EntitySegment* prevSegment() const { return m_prev; }
    void setPrevSegment(EntitySegment* prev);
    /** Not owned, and to live as long as the segment changes. */
    void setLengthListener(SegmentLengthListener* listener) { m_lengthListener = listener; }

    /** Moves the end along the direction; those behind stay. */
    void setLength(float length);
    /** Turns the segment against the one before, starting at its end. */
    void setRotation(const QQuaternion& rotation);
    /** Follows the segment before, keeping the own bend. */
    void recalcPointsRotation();
    /** Moves by a vector; the begin sticks to the end of the segment before. */
    void translateBy(const QVector3D& vector);

protected:
    void calcPointsLength(float length);
    void calcPointsRotation(const QQuaternion& rotation);

    QPointer<EntitySegment> m_prev;
    QQuaternion m_rotation;      ///< absolute
    QQuaternion m_localRotation; ///< against the segment before
    QVector3D m_origin;          ///< begin as of the last drawing
    Qt3DCore::QTransform* m_segmentTransform = nullptr;

private:
    void setWorldTransform();
    void setPoints(const PointSegment& points);
    QVector3D determineUpVector(const EntitySegment* prev, const QVector3D& direction) const;

    PointSegment m_points;
    SegmentLengthListener* m_lengthListener = nullptr;
    QPointer<Qt3DCore::QTransform> m_worldTransform; ///< of the object that holds the pipe
};

} // namespace Torvik::View3d
