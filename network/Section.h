#pragma once

#include "domain/boundary/GUID.h"
#include "labels/NameTag.h"
#include "measurement/InspDomain.h"
#include "measurement/InspectionDir.h"
#include "measurement/ShapeAccess.h"
#include "network/CrawlerTransform.h"
#include "scene/KxView3dExport.h"
#include "scene/Renderable.h"

#include <QColor>
#include <QHash>
#include <QPair>
#include <QPointer>
#include <QVariant>

#include <optional>

namespace Qt3DRender {
class QPickEvent;
class QRayCaster;
} // namespace Qt3DRender

namespace Torvik::View3d {

class InspectionCommands;
class Label;
class Node;
class ObservationConnection;
class Pipe;
class SectionAdapterBase;

/** One inspection of a pipe: the pipe between two nodes, as far as it has been inspected.
 *
 *  The inspection runs from the start node to the end node, and so does the pipe's chain; which of the two lies
 * upstream is told by InspectionDir. The section's position is the outlet of its start node: the node, lowered by the
 * pipe's depth there and shifted by the offset. Scene coordinates in metres; the diameter is in millimetres.
 *
 *  The section owns its adapter, its commands and its pipes; the nodes are not owned. Main thread only. */
class KXVIEW3D_EXPORT Section : public Renderable, public InspDomain, public InspectionDir, public CrawlerTransform {
    Q_OBJECT
    Q_PROPERTY(QVariant startNode READ startNodeVariant CONSTANT)
    Q_PROPERTY(QVariant endNode READ endNodeVariant CONSTANT)
    Q_PROPERTY(float seaLevel READ seaLevel NOTIFY transformChanged)

public:
    /** Takes over `props`. Without setupPipe() it has no pipe yet; create() makes a whole one. */
    Section(Qt3DCore::QEntity* parent, SectionAdapterBase* props);
    ~Section() override;

    /** A section with its pipe, from the stored shape or else a stub, and with two nodes: what the scene lacks becomes
     * a virtual one. */
    static Section* create(Qt3DCore::QEntity* parent, SectionAdapterBase* props);

    QVector3D center() const override;
    QQuaternion orientation() const override;
    /** The pipe's end. */
    QVector3D connectionPoint(Renderable* other) override;
    void setSelectedMaterial() override;
    void setDefaultMaterial() override;
    /** The inspection's id. */
    QString guid() override;
    /** "?" until a name is set. */
    QString name() const override;
    void setName(const QString& name) override;
    /** The name label; made when it is first asked for. Null as long as no name was set. */
    Label* getLabel();
    QString renderableType() const override;
    /** Previews a connection: the last segment runs straight to where the target takes it, until connectApply() or
     *  connectCancel(). Nothing while a preview stands. */
    void connectTo(Renderable* target) override;
    /** Makes the preview final, and stores it. */
    void connectApply() override;
    void connectCancel() override;
    QMatrix4x4 crawlerTransformMatrix() const override;
    float pipeScale() const override;
    /** The main pipe's course, then the second pipe's. */
    QVector<QVector<QVector3D>> getShapePoints() const override;
    QString wktPrefix() const override;
    /** The inspection's id: the shape lives on the inspection's record. */
    QString getDomainObjectId() const override;
    QString getInspectionObjectId() const override;

    /** Reads the record again. */
    void modify();
    void refreshName();
    void setupPipe();
    /** Course of a pipe without a stored shape: a stub of one centimetre. */
    QVector<QVector3D> setupPipeInitialPoints();
    /** Reads the direction from the record; true if it has changed. */
    bool setInspectionDirection();
    SectionAdapterBase* getProps() const { return m_props; }
    InspectionCommands* inspection() const { return m_inspection; }
    Pipe* pipe() const { return m_pipe; }
    Pipe* secondPipe() const;

    /** Start and end node of the record, as far as the scene has them. */
    QPair<Node*, Node*> getInspectionNodes() const;
    /** With `forceSnap` the section goes to the node even if it is bound to a place. */
    void setStartNode(Node* node, bool forceSnap);
    void setEndNode(Node* node);
    Node* startNode() const;
    Node* endNode() const;
    QVariant startNodeVariant() const;
    QVariant endNodeVariant() const;
    Node* upstreamNode() const;
    Node* downstreamNode() const;
    /** The nodes must exist. */
    QVector3D startNodePosition() const;
    QVector3D endNodePosition() const;
    /** Whether the start node exists and is real, whatever the direction. */
    bool hasUpstreamNode() const;
    /** The same of the end node. */
    bool hasDownstreamNode() const;
    /** The node is going: forgets it. */
    void unregisterNode(Node* node);
    /** The node keeps this section in its set; told, so that it can be told when the section goes. */
    void addTiedNode(Node* node);
    void removeTiedNode(Node* node);
    void disconnectNode(Node* node);
    void disconnectNodeSignals(Node* node);
    void nodesCleanup();

    /** Metres by which the pipe lies below the node at its upper (from) and lower (to) end. */
    float fromNodeDepth() const;
    float toNodeDepth() const;
    float getOutletDepthOffset(Node* node) const;
    QVector3D getOutletOffset() const;
    QVector3D getOutletPosition(Node* node) const;
    /** Puts the section to the node's outlet, unless the user has placed it, or it has a place and the node is made up:
     *  such a node stands at the scene's origin, which is no manhole. */
    void alignToOutlet(Node* node);
    /** Puts the start to the node and lets it follow the node from now on. */
    void snapToNode(Node* node);

    /** Stretches the last segment abreast of the end node; to the next pipe ahead when that node is virtual. The
     * direction stays. */
    Q_INVOKABLE void connectToEnd();
    /** Stretches the last segment into the pipe that a ray along it meets, up to five metres ahead. The answer comes in
     *  a later turn of the event loop. */
    void connectToNearestSectionEntity(Qt3DRender::QRayCaster* rayCaster);
    /** What such a ray meets, each with its way from the last segment's begin: the last one that belongs to another
     *  section decides, whatever its distance. */
    void stretchInto(const QVector<QPair<Qt3DCore::QEntity*, float>>& met);

    /** A lateral of this section begins at the connection. */
    void addLateralConnection(const QString& ref, ObservationConnection* connection);
    void removeLateralConnection(const QString& ref);
    /** Lateral ids and the distances, in metres, at which their connections were first seen. */
    const QHash<QString, float>& laterals() const { return m_laterals; }
    /** Announces the lateral within half a metre of the distance, if its inspection runs upstream, or that there is
     *  none any more. */
    void testLateralProximity(double distance);
    /** The lateral goes with its connection: keeping the direction that the user gave it, or with the second taking the
     *  joint's anew. */
    void refreshLateral(const QString& ref);
    void refreshLateralFromObservationConnection(const QString& ref);
    /** As a lateral: to its connection, keeping the turn against it; the downstream node goes along. */
    void reposition();
    /** As a lateral: to its connection, in the joint's direction. */
    void repositionObservationConnection();
    void repositionToParent(Renderable* parent, bool keepOffset);
    void recalculateManualRotationOffset();
    /** Turn of the pipe against its connection. */
    QQuaternion computeManualRotationMatrix(ObservationConnection* connection) const;
    /** The connection's stub shows as long as the lateral is not really inspected. */
    void refreshConnectionVisibility();

    void rotateToTarget(const QVector3D& target, int flags);
    /** Points at the outlet of an end node whose place is known, unless the section is bound. */
    void rotateToEndNodeDirection();
    void enableAutorotation(bool enabled) { m_autorotation = enabled; }
    bool isAutorotationEnabled() const { return m_autorotation; }
    /** Turns about the vertical through the start until the end lies in the direction of the point. */
    Q_INVOKABLE void rotateToPointDirection(QVector3D pointEndTo, int flags = 0);
    Q_INVOKABLE void rotateToTargetAngleY(float angle, int flags = 0);
    Q_INVOKABLE void rotateToTargetInclination(float angle, int flags = 0);
    /** Compass bearing of the first segment, in degrees from +z; east (-x) is +90. */
    Q_INVOKABLE float northRotation() const;
    /** Degrees. */
    Q_INVOKABLE float inclination() const;
    /** Unit vector along the first segment, against the chain. */
    Q_INVOKABLE QVector3D direction() const;

    /** Applies a bend, unless real time is on. Clock in hours, angle in degrees, distance in metres along the chain. */
    void addBend(float clock, float angle, float distance);
    void modifyBend(float clock, float angle, float distance);
    void removeBend(float distance);

    /** Place and direction at a distance along the chain; with a second pipe that one is counted from the section's far
     *  end. */
    QMatrix4x4 pipeTransMatrixAtDistance(float distance) const;
    QMatrix4x4 pipeTransMatrixAtEndNodeObs() const;
    double diameter() const { return m_diameter; }
    /** Millimetres; 0 counts as 300. */
    void setDiameter(double diameterMm);
    /** Length of the main pipe in metres. */
    double length() const;
    /** Metres above the sea. */
    float seaLevel() const;
    bool hasMultipipe() const { return !m_secondPipe.isNull(); }

    /** An observed end holds the end node to the pipe, unless the node has a place of its own. */
    void lockAsEnded();
    void unlockEnded();
    bool isLockedAsEnded() const { return m_lockedAsEnded; }
    void attachEndNode(float distance);
    void setEndDistance(float distance);
    float endDistance() const { return m_endDistance; }
    void moveEndNodeToPipeEnd();

    /** The arrow is made when it is first shown. */
    void createDirectionArrow();
    Q_INVOKABLE void showDirectionArrow();
    Q_INVOKABLE void hideDirectionArrow();
    /** True for a pipe shorter than ten centimetres at a real start node. */
    Q_INVOKABLE bool needsDirectionArrow() const;
    bool hasDirectionArrow() const;
    bool isDirectionArrowShown() const;

    void deleteAndSave();
    /** Does nothing. */
    void saveToSecMes();

public slots:
    /** The distance counter, in metres from the start. */
    void onDistanceCounterChanged(double distance);
    /** Does nothing. */
    void clicked(Qt3DRender::QPickEvent* pick);
    void onTransformFlagsChanged();

signals:
    void upstreamNodeChanged();
    void downstreamNodeChanged();
    void sectionGeometryChanged();
    void lateralConnectionAdded(Torvik::Base::GUID lateralRef, Torvik::View3d::ObservationConnection* connection);
    void lateralConnectionRemoved(Torvik::Base::GUID lateralRef);
    void realTimeDataChanged();
    void lateralRefreshRequest(Torvik::Base::GUID lateralRef);
    void lateralInProximity(Torvik::Base::GUID lateralRef);
    void lateralNotInProximity();

protected:
    TouchControlBase* createTouchControl() override;

private:
    void refreshLabelPlace();
    void createPipes(const QVector<QVector<QVector3D>>& shapes);
    void connectPipe();
    /** What is measured becomes part of the active inspection's measurement. */
    void onSegmentsRemoved(int start, int end, bool recalculateIndexes);
    void onSegmentAdded(const QVector3D& point, int index, bool recalculateIndexes);
    void onRealTimeEnabledChanged(bool enabled);
    void followStartNode(Node* node);
    void snapLateralToNode(Node* node);
    void startAtNode(Node* node);
    void startAtJoint(Node* node);
    void pointAlong(const QMatrix4x4& joint);
    void refreshLateralBy(const QString& ref, void (Section::*follow)());
    void followConnection(bool keepOffset);
    /** Of this lateral; null, with a line in the log, when there is none. */
    ObservationConnection* connectionToParent() const;
    void stretchLastSegment(float length);
    float recordedDepthAt(Node* node, const QVariant& recorded) const;
    QVector3D pointAtFirstSegmentEnd() const;
    Node* virtualNode();

    QQuaternion m_manualRotationOffset; ///< of a lateral against its connection
    double m_diameter = 0.0;
    bool m_lockedAsEnded = false;
    float m_endDistance = 0.0F;
    bool m_lateralInProximity = false;
    bool m_repositioning = false;
    bool m_autorotation = true;
    SectionAdapterBase* m_props = nullptr;
    InspectionCommands* m_inspection = nullptr;
    Pipe* m_pipe = nullptr;
    QPointer<Pipe> m_secondPipe; ///< goes with the root, which may go before the section
    QPointer<Qt3DCore::QEntity> m_secondPipeEntity;
    QPointer<Node> m_startNode;
    QPointer<Node> m_endNode;
    QVector<Node*> m_tiedNodes;
    QHash<QString, float> m_laterals;
    ShapeAccess m_shapeAccess;
    Qt3DCore::QEntity* m_directionArrow = nullptr;
    Qt3DCore::QComponent* m_directionArrowMesh = nullptr; ///< on the arrow while it is shown
    NameTag m_tag;
    bool m_connecting = false;
    QQuaternion m_savedRotation;
    float m_savedLength = 0.0F;
};

} // namespace Torvik::View3d
