#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DCore/QEntity>

namespace Torvik::View3d {

class Renderable;

/** What a renderable needs of the control that turns touches on it into selection, drags and rotations. */
class KXVIEW3D_EXPORT TouchControlBase : public Qt3DCore::QEntity {
    Q_OBJECT
    Q_PROPERTY(bool allowed READ isAllowed WRITE allow NOTIFY allowedChanged)
    Q_PROPERTY(bool axisArrowVisible READ axisArrowVisible WRITE setAxisArrowVisible NOTIFY axisArrowVisibleChanged)
    Q_PROPERTY(QString axisArrowMode READ axisArrowMode WRITE setAxisArrowMode NOTIFY axisArrowModeChanged)

public:
    enum Mode { Translation = 0, Rotation = 1, ScreenTranslation = 2 };
    Q_ENUM(Mode)

    explicit TouchControlBase(Renderable* parent);

    virtual void disableArrows() = 0;
    virtual void enablePick() = 0;
    virtual void disablePick() = 0;
    virtual void allow(bool allowed) = 0;
    virtual bool isAllowed() const = 0;
    virtual void setMode(Mode const& mode) = 0;
    virtual void addAxisControlArrows(float size) = 0;
    virtual void clearAxisControlArrows() = 0;
    virtual bool axisArrowVisible() const = 0;
    virtual void setAxisArrowVisible(bool visible) = 0;
    virtual QString axisArrowMode() const = 0;
    virtual void setAxisArrowMode(QString const& mode) = 0;

signals:
    void allowedChanged(bool isAllowed);
    void axisArrowVisibleChanged(bool axisArrowVisible);
    void axisArrowModeChanged();
};

} // namespace Torvik::View3d
