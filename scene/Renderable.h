#pragma once

#include "domain/boundary/WktPoint.h"
#include "scene/Debounce.h"
#include "scene/FlaggedTransform.h"
#include "scene/HasTransform.h"
#include "scene/KxView3dExport.h"
#include "scene/TouchControlBase.h"

#include <Qt3DCore/QEntity>

#include <QPointer>
#include <QQuaternion>
#include <QVector3D>

namespace Torvik::View3d {

/** Base of every object of the scene that the user can see and select: an entity with one transform that knows its
 *  source. Positions are scene coordinates in metres.
 *
 *  Whoever keeps the object's shape listens to editingFinished(), which fires once, 750 ms after the last change of a
 *  burst: a drag is stored once and not for every frame. Main thread only. */
class KXVIEW3D_EXPORT Renderable : public Qt3DCore::QEntity, public HasTransform {
    Q_OBJECT
    Q_PROPERTY(QQuaternion rotation READ rotation WRITE setRotationKeepingSource NOTIFY transformChanged)
    Q_PROPERTY(QVector3D position READ position WRITE setPositionKeepingSource NOTIFY transformChanged)
    Q_PROPERTY(Torvik::View3d::FlaggedTransform* transform READ transform WRITE setTransform NOTIFY transformChanged)
    Q_PROPERTY(int transformFlags READ transformFlags WRITE setTransformFlags NOTIFY transformChanged)
    Q_PROPERTY(
        bool isTouchControlAllowed READ isTouchControlAllowed WRITE allowTouchControl NOTIFY touchControlAllowedChanged)
    Q_PROPERTY(QString guid READ guid CONSTANT)
    Q_PROPERTY(QString type READ renderableType CONSTANT)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(Torvik::View3d::TouchControlBase* touchControl READ touchControl WRITE setTouchControl NOTIFY
                   touchControlChanged)

public:
    using MeasurementType = Database::WktPoint::MeasurementType;

    explicit Renderable(Qt3DCore::QEntity* parent);
    ~Renderable() override;

    FlaggedTransform* transform() const override;
    virtual QMatrix4x4 transformMatrix() const;
    virtual QVector3D center() const;
    virtual QQuaternion orientation() const;
    /** Scene point at which something that comes from `other` meets this object. */
    virtual QVector3D connectionPoint(Renderable* other);
    virtual void setSelectedMaterial();
    virtual void setDefaultMaterial();
    /** Key under which selection finds the object again. */
    virtual QString guid();
    virtual QString name() const;
    virtual void setName(const QString& name);
    /** A word that the class fixes: "node", "section", ... */
    virtual QString renderableType() const = 0;
    virtual void connectTo(Renderable* other);
    virtual void connectApply();
    virtual void connectCancel();
    /** Moves by a vector, and states the source of the new position. */
    virtual void move(QVector3D vector, MeasurementType flags);

    QVector3D position() const;
    QQuaternion rotation() const;
    void setPosition(QVector3D position, MeasurementType flags);
    void setRotation(QQuaternion rotation, MeasurementType flags);
    /** Takes over the other's matrix and, if it has one, its source. */
    void setTransform(const FlaggedTransform* other);
    int transformFlags() const;
    /** Replaces the source, also by 0. */
    void setTransformFlags(int flags);

    void setAsSelected();
    void setAsDeselected();

    void setEnablePicker(bool enabled);
    void allowTouchControl(bool allowed);
    bool isTouchControlAllowed() const;
    /** What turns touches on the object into selection and drags; made when it is first asked for, since most objects
     *  are never touched. Null for objects that can't be grabbed. */
    TouchControlBase* touchControl() const;
    /** Takes over the control; an earlier one is deleted later. Emits nothing. */
    void setTouchControl(TouchControlBase* touchControl);
    /** Whether a press on the object counts. */
    bool isPickable() const { return m_pickable; }

public slots:
    void move(QVector3D vector, Torvik::View3d::TransformFlags::Flags flags);
    /** Moves and leaves the source as it stands. */
    void move(QVector3D vector);
    virtual void doubleTapped();

signals:
    void editingFinished();
    void transformChanged();
    void touchControlAllowedChanged(bool allowed);
    void visibilityChanged(bool visible);
    void nameChanged(QString name);
    void touchControlChanged(Torvik::View3d::TouchControlBase* touchControl);

protected:
    /** Null in the base. */
    virtual TouchControlBase* createTouchControl();
    /** The object lies elsewhere: transformChanged(), and editingFinished() once that rests. */
    void tellChange();

private:
    void initTransform();
    void setRotationKeepingSource(const QQuaternion& rotation) { setRotation(rotation, 0); }
    void setPositionKeepingSource(const QVector3D& position) { setPosition(position, 0); }

    FlaggedTransform* m_transform = nullptr;
    mutable QPointer<TouchControlBase> m_touchControl;
    bool m_pickable = true;
    Debounce m_changeFinished;
    QString m_guid;
};

} // namespace Torvik::View3d
