#pragma once

#include "labels/NameTag.h"
#include "measurement/InspDomain.h"
#include "measurement/ShapeAccess.h"
#include "scene/KxView3dExport.h"
#include "scene/Renderable.h"

#include <QPointer>
#include <QSet>
#include <QVariant>

namespace Torvik::View3d {

class Label;
class NodeAdapter;
class Section;

namespace Geometry {
class NodeGeometry;
}

/** A point of the sewer network: a manhole, a building, a connection, or a virtual node at the end of a section that
 * has no real one yet. Known to QML as "Node3d". The position is the top of the node, in scene coordinates.
 *
 *  The position has one of two origins, told by the transform's flags: a stored point, or the end of a section whose
 * pipe the node follows (snapToSection) until it is bound to a place of its own. The node owns its adapter and its
 * mesh; the sections are not owned. Main thread only. */
class KXVIEW3D_EXPORT Node : public Renderable, public InspDomain {
    Q_OBJECT
    Q_PROPERTY(bool hasPosition READ has3dPosition CONSTANT)
    Q_PROPERTY(bool isVirtual READ isVirtual CONSTANT)
    Q_PROPERTY(float seaLevel READ seaLevel NOTIFY transformChanged)
    Q_PROPERTY(QString nodeType READ nodeType)

public:
    /** A node to start from in QML: virtual, hidden and without a name. */
    Node();
    /** Takes over `props`, which is null for a virtual node. */
    Node(Qt3DCore::QEntity* parent, NodeAdapter* props, bool isVirtual, bool visible, const QString& name);
    ~Node() override;

    /** A node of the project, at its stored point. Its name comes later. */
    static Node* create(Qt3DCore::QEntity* parent, NodeAdapter* props);
    /** A node without a record. Its mesh is a manhole's whatever its type, until createMesh() runs again. */
    static Node* createVirtual(Qt3DCore::QEntity* parent, bool visible, const QString& name, const QString& type);

    QVector3D connectionPoint(Renderable* other) override;
    void setSelectedMaterial() override;
    void setDefaultMaterial() override;
    /** The record's id; a virtual node has one of its own. */
    QString guid() override;
    QString name() const override;
    void setName(const QString& name) override;
    QString renderableType() const override;
    /** The user's drag: binds the node to where it is put. */
    void move(QVector3D vector, MeasurementType flags) override;
    using Renderable::move;

    QVector<QVector<QVector3D>> getShapePoints() const override;
    QString wktPrefix() const override;
    QString getDomainObjectId() const override;
    /** Always empty. */
    QString getInspectionObjectId() const override;

    /** True for a real node with a stored point, and flags that name a source. */
    bool has3dPosition() const;
    bool isVirtual() const { return m_isVirtual; }
    bool isVisible() const { return m_visible; }
    /** Metres above the sea. */
    float seaLevel() const;
    QString nodeType() const { return m_nodeType; }
    /** Metres down to the invert; a node without a depth counts as one metre deep. */
    float depth() const;
    float radius() const { return m_diameter * 0.5F; }
    NodeAdapter* getProps() const { return m_props; }
    /** The name label; made when it is first asked for. Null as long as no name was set. */
    Label* getLabel();
    NameTag& nameTag() { return m_tag; }
    Geometry::NodeGeometry* geometry() const { return m_geometry; }

    /** Stores on a change (biased fuzzy rule); a null depth counts as 1, a null diameter changes nothing. */
    void setDepth(const QVariant& depth);
    void setDiameter(const QVariant& diameter);
    void readDepth();
    void readDiameter();
    /** Reads depth, diameter and type again after a change of the record. */
    void modify();
    void refreshName();
    void createMesh();

    void connectSection(Section* section);
    void disconnectSection(Section* section);
    bool isConnected() const { return !m_sections.isEmpty(); }
    const QSet<Section*>& sections() const { return m_sections; }
    /** The section whose end this node follows, or null. */
    Section* snappedSection() const;
    /** The section is going: forgets it, and leaves everything else as it stands. */
    void forgetSection(Section* section);

    /** To the section's start, raised by its depth. */
    void moveToStart(Section* section);
    /** To the end of the section that the node follows. */
    void moveToEnd();
    void moveToEndOfThePipe();
    /** Works once in a turn of the event loop: a burst of changes of the section costs one computation. */
    void moveToEndInspObservation();
    void moveToRenderable(Renderable* other);

    /** From now on the node stays at the section's end, until it is bound. */
    void snapToSection(Section* section);
    void unSnapFromSection(Section* section);
    /** From now on the node goes along with the section's start, as long as neither is bound. */
    void linkToBegining(Section* section);

    void initVisibility(bool visible);
    void setVisible(bool visible);
    void show();
    void ensureVisibility();

    /** Diameter, depth and height as lines of a label. */
    QString getFullManholeInfo() const;

    void initGeoProjectorConnection();
    Q_INVOKABLE void setEventLoopFinished();

signals:
    /** The mesh was rebuilt or the depth has changed. */
    void shapeChanged();

protected:
    TouchControlBase* createTouchControl() override;

private:
    void applyVisibility(bool visible);

    float m_depth = 0.0F;
    float m_diameter = 1.0F;
    QString m_nodeType;
    QSet<Section*> m_sections;
    NodeAdapter* m_props = nullptr;
    QPointer<Section> m_snappedSection;
    Geometry::NodeGeometry* m_geometry = nullptr;
    ShapeAccess m_shapeAccess;
    NameTag m_tag;
    bool m_isVirtual = false;
    bool m_visible = false;
    bool m_eventLoopFinished = true;
    QMetaObject::Connection m_startLink;
};

} // namespace Torvik::View3d
