#include "scene/FlaggedTransform.h"

namespace Torvik::View3d {

FlaggedTransform::FlaggedTransform(int flags)
    : Qt3DCore::QTransform(nullptr)
    , TransformFlags(flags)
{
}

void FlaggedTransform::resetFlags(int flags)
{
    if (m_flags == flags)
        return;
    m_flags = flags;
    emit flagsChanged();
}

void FlaggedTransform::setFlag(Database::WktPoint::MeasurementType flag)
{
    resetFlags(m_flags | flag);
}

void FlaggedTransform::unsetFlag(Database::WktPoint::MeasurementType flag)
{
    resetFlags(m_flags & ~flag);
}

void FlaggedTransform::resetFlagsIfKnown(int flags)
{
    if (flags != 0)
        resetFlags(flags);
}

void FlaggedTransform::setTranslation(const QVector3D& translation, int flags)
{
    resetFlagsIfKnown(flags);
    QTransform::setTranslation(translation);
}

void FlaggedTransform::setMatrix(const QMatrix4x4& matrix, int flags)
{
    resetFlagsIfKnown(flags);
    QTransform::setMatrix(matrix);
}

void FlaggedTransform::setRotation(const QQuaternion& rotation, int flags)
{
    resetFlagsIfKnown(flags);
    QTransform::setRotation(rotation);
}

void FlaggedTransform::setRotationY(float angleDeg, int flags)
{
    resetFlagsIfKnown(flags);
    QTransform::setRotationY(angleDeg);
}

} // namespace Torvik::View3d
