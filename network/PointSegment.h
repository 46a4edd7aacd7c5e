#pragma once

#include "scene/Rounding.h"

#include <QVector3D>

namespace Torvik::View3d {

/** A straight piece of a pipe's course, in the frame of the chain (metres). */
class PointSegment {
public:
    PointSegment() = default;
    PointSegment(QVector3D begin, QVector3D end, QVector3D up)
        : m_begin(begin)
        , m_end(end)
        , m_up(up)
        , m_distance(roundToCentimetres(begin.distanceToPoint(end)))
    {
    }

    QVector3D beginPoint() const { return m_begin; }
    QVector3D endPoint() const { return m_end; }
    QVector3D upDirection() const { return m_up; }
    /** Unit length; zero for a piece without length. */
    QVector3D direction() const { return (m_end - m_begin).normalized(); }
    /** Length rounded to centimetres. */
    float distance() const { return m_distance; }

private:
    QVector3D m_begin;
    QVector3D m_end;
    QVector3D m_up;
    float m_distance = 0.0F;
};

} // namespace Torvik::View3d
