#pragma once

#include "labels/NameTag.h"
#include "measurement/InspDomain.h"
#include "measurement/ShapeAccess.h"
#include "scene/KxView3dExport.h"
#include "scene/Renderable.h"

#include <QPointer>
#include <QString>

namespace Torvik::View3d {

class Label;
class ObservationAdapter;
class Section;

/** One finding of an inspection, at its distance on the section's pipe: its place and direction are the pipe's there.
 *
 *  Kinds that act on the pipe are subclasses. A record can change its kind, so modify() gives the object that stands
 *  for it from then on; the caller disposes of this one if it is another. Distances are metres along the pipe, clock
 *  positions hours, angles degrees.
 *
 *  Stands beside its section in the scene and goes when that goes; owns its adapter. Main thread only. */
class KXVIEW3D_EXPORT Observation : public Renderable, public InspDomain {
    Q_OBJECT

public:
    /** Bits of a code's type; any one of them makes the kind. */
    static constexpr unsigned endBits = 0x4;
    static constexpr unsigned connectionBits = 0x2018;
    static constexpr unsigned bendBits = 0x400;

    /** The kind that the record's code asks for; a bend goes before a connection, and that before an end. `fromDB`:
     *  read from the stored project, so that the stored course of the pipe has it already. */
    static Observation* create(Section* section, ObservationAdapter* adapter, bool fromDB);

    /** Takes over the adapter. */
    Observation(Section* section, ObservationAdapter* adapter);
    ~Observation() override;

    QString renderableType() const override;
    QString guid() override;
    QQuaternion orientation() const override;
    QVector<QVector<QVector3D>> getShapePoints() const override;
    QString getDomainObjectId() const override;
    /** Always empty. */
    QString getInspectionObjectId() const override;

    /** The record has changed. Gives the object that now stands for it; a replacement is made whole, and what this one
     *  did to the section is undone. */
    virtual Observation* modify();
    /** Undoes what the observation did to its section, before it goes. */
    virtual void performCleanup();
    virtual void onSectionGeometryChanged();
    QString wktPrefix() const override;

    void refreshPosition();
    void init();
    void readObsDistance();
    void readObsDiameter();
    void readObsBendClock();
    void readObsClock1();
    void readObsJointAngle();
    /** Whether clock, bend clock or joint angle differ from what they were at the last resetPrev(). */
    bool paramsChanged() const;
    void resetPrev();

    void setDistance(float distance) { m_distance = distance; }
    void setDiameter(float diameter) { m_diameter = diameter; }
    void setBendClock(int clock) { m_bendClock = static_cast<float>(clock); }
    void setClock1(int clock) { m_clock1 = static_cast<float>(clock); }
    float getDistance() const { return m_distance; }
    /** Millimetres. */
    float getDiameter() const { return m_diameter; }
    int getBendClock() const { return qRound(m_bendClock); }
    int getClock1() const { return qRound(m_clock1); }
    float getJointAngle() const { return m_jointAngle; }
    /** Id of the lateral that the record names; empty for kinds that have none. */
    QString getLateralRef() const { return m_lateralRef; }

    /** Tells the code; made when it is first asked for. */
    Label* getLabel();
    ObservationAdapter* adapter() const { return m_adapter; }
    Section* section() const;
    /** Direction flags of the section's inspection; 0 without one. */
    int inspDir() const;

protected:
    bool hasType(unsigned bits) const;
    /** The kind that the changed record asks for, in place of this one. */
    Observation* replacement();
    void storeShape() { m_shapeAccess.writePoints(this); }

    QPointer<Section> m_section;
    ObservationAdapter* m_adapter = nullptr;
    float m_distance = 0.0F;
    float m_diameter = 0.05F;
    float m_bendClock = 0.0F;
    float m_clock1 = 0.0F;
    float m_jointAngle = 90.0F;
    QString m_lateralRef;

private:
    void followSection();
    void init3d();
    void followSwitches();
    void tellVisibility();

    ShapeAccess m_shapeAccess;
    NameTag m_tag;
    float m_prevBendClock = 0.0F;
    float m_prevClock1 = 0.0F;
    float m_prevJointAngle = 0.0F;
};

} // namespace Torvik::View3d
