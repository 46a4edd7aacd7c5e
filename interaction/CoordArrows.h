#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DCore/QEntity>

#include <QHash>
#include <QQuaternion>
#include <QString>
#include <QVector3D>

#include <array>

namespace Qt3DCore {
class QTransform;
}
namespace Qt3DRender {
class QMaterial;
}

/** A cross of axes for diagnostics, x green, y red, z blue, drawn over everything. Main thread only. */
class KXVIEW3D_EXPORT CoordArrows : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    /** The cross of that name; a new one under `parent` when there is none yet. */
    static CoordArrows* create(Qt3DCore::QNode* parent, const QString& name);
    static QHash<QString, CoordArrows*>& arrows();

    explicit CoordArrows(Qt3DCore::QNode* parent);
    ~CoordArrows() override;

    /** Shows the arrows whose component is not 0. */
    void setArrowVisible(QVector3D visible);
    /** Turns +y to a direction. */
    void rotateTo(QVector3D direction);
    void rotateTo(const QQuaternion& rotation);
    void moveTo(const QVector3D& position);

private:
    struct Arrow {
        Qt3DCore::QEntity* entity = nullptr;
        Qt3DRender::QMaterial* material = nullptr;
    };

    void createArrows();

    Qt3DCore::QTransform* m_transform;
    std::array<Arrow, 3> m_arrows;
};
