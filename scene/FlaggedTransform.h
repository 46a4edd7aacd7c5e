#pragma once

#include "domain/boundary/WktPoint.h"
#include "scene/KxView3dExport.h"
#include "scene/TransformFlags.h"

#include <Qt3DCore/QTransform>

namespace Torvik::View3d {

/** A transform that remembers where its position came from.
 *
 *  The flags given to a setter are a statement about the source of the new value: 0 changes the geometry and leaves the
 *  source as it stands; anything else replaces the whole set. Sources are not accumulated; only setFlag and unsetFlag
 *  combine bits. Known to QML as "TransformFlags". */
class KXVIEW3D_EXPORT FlaggedTransform : public Qt3DCore::QTransform, public TransformFlags {
    Q_OBJECT

public:
    enum QmlFlags {
        Unknown = 0,
        Observations = 1,
        CAD = 2,
        Manual = 4,
        GPS = 8,
        GIS = 16,
        Geosensor = 32,
        PipeShape = 64
    };
    Q_ENUM(QmlFlags)

    explicit FlaggedTransform(int flags = 0);

    /** Replaces all flags, also by 0. */
    void resetFlags(int flags);
    void setFlag(Database::WktPoint::MeasurementType flag);
    void unsetFlag(Database::WktPoint::MeasurementType flag);
    /** resetFlags unless `flags` is 0. */
    void resetFlagsIfKnown(int flags);
    /** ORs the bits in without a signal: for a follower that is about to be moved anyway. */
    void addFlagsSilently(int flags) { m_flags |= flags; }

    void setTranslation(const QVector3D& translation, int flags);
    void setMatrix(const QMatrix4x4& matrix, int flags);
    void setRotation(const QQuaternion& rotation, int flags);
    void setRotationY(float angleDeg, int flags);

signals:
    void flagsChanged();
};

} // namespace Torvik::View3d
