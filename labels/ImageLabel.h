#pragma once

#include "labels/Label.h"
#include "labels/LabelLook.h"
#include "labels/LabelPlacement.h"

#include <QMetaObject>
#include <QPointF>
#include <QPointer>
#include <QRect>

namespace Torvik::View3d {

class LabelFace;
class SceneRoot;

/** The label that the user sees: a small rectangle of text that faces the viewer, keeps its size on the screen, stands
 * a little above its object and points at it. All of it happens in a plane two metres before the camera
 *  (labels/LabelPlacement.h). A drag moves it in pixels of the screen, a double tap puts it back; where it was put is
 *  told to LabelsPositionsLoader with each move, in the camera's axes.
 *
 *  It is drawn while LabelBoard lends it a face, that is while it is on the screen and has room there; the rest of the
 *  time it has neither texture nor mesh, and is not brought up to date. Made by the board, or by whoever asks an object
 *  for its label. Main thread only. */
class KXVIEW3D_EXPORT ImageLabel : public Label {
    Q_OBJECT

public:
    /** Pixels of the screen. */
    static inline float m_textRowHeightOnScreen = 24.0F;
    /** Metres in the label plane; 0 until it was computed. */
    static inline float m_screenHeightWorldPerPixel = 0.0F;

    static ImageLabel* create(Renderable* renderable, SceneRoot* sceneRoot, QString const& text);
    /** `sceneRoot`: what it hangs in reaches it by LabelBoard. `positionKey`: under which a moved label's place is
     * kept. */
    ImageLabel(Renderable* parent, SceneRoot* sceneRoot, QString const& text, QString const& positionKey);
    ~ImageLabel() override;

    void delayedInit() override;
    /** To another object that stands for the same record. */
    void goOverTo(Renderable* object);
    /** Those of the object. */
    QString guid() override;
    QQuaternion orientation() const override;
    /** By pixels of the screen, for good. */
    void move(QVector3D screenDiff, MeasurementType flags) override;
    using Renderable::move;

    QColor backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(QColor const& color);
    /** Metres added to the object's position. */
    void setOffset(QVector3D const& offset);
    /** To a place on the screen, or where it belongs if that is the one that means none; `lift` rows above its object.
     */
    void setPosition(QPointF position, float lift);
    static QPointF noPosition() { return {-10000.0, -10000.0}; }
    void setScreenLineHeight(float lineHeightPixels);
    void adjustWidthToHeight();
    void adjustSizeToText();
    bool textBoundingBoxNotEmpty() const;
    QRect fontMetricsRect() const;
    /** Rotation that turns the label towards the viewer, in the frame of the entity if it is a Renderable. */
    QQuaternion getFaceViewRotation(Qt3DCore::QEntity* entity) const;

    /** Wanted in the picture. */
    void addMesh();
    void removeMesh();
    bool hasMesh() const { return m_mesh; }
    /** The switches allow it, and it has something to show. */
    bool isShown() const { return m_mesh && isEnabled(); }

    bool hasCustomPosition() const { return m_customPosition; }
    QVector3D storedOffset() const { return m_storedOffset; }
    QPointF screenPosition() const { return m_screenPosition; }
    /** Pixels of the screen that the label covers. */
    QRectF coverage() const;
    /** From the label's centre to the anchor, in the scene. */
    QVector3D pointerVector() const { return m_pointerVector; }

    LabelFace* face() const;
    /** Null takes it away; the board keeps it. */
    void setFace(LabelFace* face);
    /** The view moves: hidden until onSceneHeightChanged(). */
    void hideForMove();
    /** The view has come to rest. */
    void showAfterMove();
    /** Obeys switches that its object tells of (onParentVisibilityChanged) and not the one for all labels. */
    void leaveCommonSwitch() { Label::leaveCommonSwitch(); }

public slots:
    void onTextChanged(QString text) override;
    void onHeightChanged() override;
    void onFontChanged() override;
    void onParentVisibilityChanged(bool visible);
    void drawPointer(QVector3D vectorToInWorld);
    void setTransformMatrix(QVector3D centerInWorld);
    void updateLabelsPositions();
    /** Size and place anew, after any change of the view or of the object. */
    void onSceneHeightChanged();
    void doubleTapped() override;

protected:
    TouchControlBase* createTouchControl() override;
    void show(bool shown) override;

private:
    void followParent();
    void onParentTranslation(const QVector3D& translation);
    void onParentRotation(const QQuaternion& rotation);
    void apply(const LabelPlacement::View& view, const LabelPlacement::Placed& placed);
    void placeFace(const LabelPlacement::View& view);
    void faceIsStale();
    void refreshFace();
    float lineHeight() const;
    QSizeF pixels() const;

    QColor m_backgroundColor;
    QRect m_textRect;
    float m_aspect = 0.0F;
    QPointer<LabelFace> m_face;
    QVector3D m_parentPosition;
    QQuaternion m_parentRotation;
    QPointF m_screenPosition;
    bool m_customPosition = false;
    QVector3D m_storedOffset;
    QVector3D m_anchorOffset;
    QVector3D m_center; ///< local
    QVector3D m_pointerVector;
    bool m_enabledBeforeHide = false;
    bool m_hidden = false; ///< for a move of the view
    bool m_mesh = false;
    QString m_positionKey;
};

} // namespace Torvik::View3d
