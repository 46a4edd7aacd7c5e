#pragma once

#include "network/CylinderSegment.h"
#include "network/Pipe.h"
#include "scene/Renderable.h"

#include <QCoreApplication>
#include <QEvent>
#include <QStringList>
#include <QVector>

namespace Kx::Test {

/** Something that holds a pipe, as a section does. */
class Holder : public Torvik::View3d::Renderable {
public:
    Holder()
        : Torvik::View3d::Renderable(nullptr)
    {
    }
    QString renderableType() const override { return QStringLiteral("holder"); }
};

/** Tolerance of sums of a few floats of some metres, each rounded to centimetres and turned. */
constexpr float lengthTolerance = 1e-4F;

inline bool near(const QVector3D& a, const QVector3D& b, float tolerance = lengthTolerance)
{
    return (a - b).length() <= tolerance;
}

inline bool near(float a, float b, float tolerance = lengthTolerance)
{
    return std::abs(a - b) <= tolerance;
}

/** Largest difference of two matrices' elements. */
inline float difference(const QMatrix4x4& a, const QMatrix4x4& b)
{
    float largest = 0.0F;
    for (int i = 0; i < 16; ++i)
        largest = std::max(largest, std::abs(a.constData()[i] - b.constData()[i]));
    return largest;
}

inline void deleteLatered()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

inline QVector<float> lengths(const Torvik::View3d::Pipe& pipe)
{
    return Torvik::View3d::SegmentModifier::lengths(pipe.segments());
}

/** True when every segment begins at the end of the one before, which it names as its predecessor. */
inline bool isConnected(const Torvik::View3d::Pipe& pipe)
{
    for (int i = 1; i < pipe.segmentCount(); ++i) {
        const auto* before = pipe.segments()[i - 1];
        const auto* segment = pipe.segments()[i];
        if (segment->prevSegment() != before || !near(segment->beginPoint(), before->endPoint()))
            return false;
    }
    return true;
}

/** The two signals of measured points, in their order, as text. */
class MeasuredLog : public QObject {
public:
    explicit MeasuredLog(Torvik::View3d::Pipe* pipe)
    {
        connect(pipe, &Torvik::View3d::Pipe::segmentAdded, this, [this](QVector3D p, int index, bool anew) {
            entries << QStringLiteral("added (%1,%2,%3) %4 %5")
                           .arg(static_cast<double>(p.x()))
                           .arg(static_cast<double>(p.y()))
                           .arg(static_cast<double>(p.z()))
                           .arg(index)
                           .arg(anew);
        });
        connect(pipe, &Torvik::View3d::Pipe::segmentsRemoved, this, [this](int start, int end, bool anew) {
            entries << QStringLiteral("removed %1 %2 %3").arg(start).arg(end).arg(anew);
        });
    }

    QStringList entries;
};

} // namespace Kx::Test
