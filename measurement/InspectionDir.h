#pragma once

namespace Torvik::View3d {

/** In which direction a section is inspected. The flags share a word with TransformFlags on the first point of a stored
 *  shape, so the two sets of bits must not overlap. */
class InspectionDir {
public:
    enum InspDirFlags : int { Unknown = 0, Upstream = 128, Downstream = 256 };

    virtual ~InspectionDir() = default;

    void setInspectionDownstream() { m_inspectionDir = Downstream; }
    void setInspectionUpstream() { m_inspectionDir = Upstream; }
    void setInspectionDirUnknown() { m_inspectionDir = Unknown; }
    void setInspectionDir(InspDirFlags direction) { m_inspectionDir = direction; }
    bool inspectionDownstream() const { return m_inspectionDir == Downstream; }
    /** An unknown direction counts as upstream. */
    bool inspectionUpstream() const { return m_inspectionDir != Downstream; }
    bool inspectionDirUnknown() const { return m_inspectionDir == Unknown; }
    int inspectionDirection() const { return m_inspectionDir; }

    /** The direction at the first writing of the shape, which is stored with it. */
    int firstInspectionDirFlag() const { return m_firstInspectionDirFlag; }
    void setFirstInspectionDirFlag(InspDirFlags direction) { m_firstInspectionDirFlag = direction; }

    /** Mask of the directions in a stored word: 384. */
    static constexpr int allInspectionDirFlags() { return Upstream | Downstream; }

private:
    int m_inspectionDir = 0;
    int m_firstInspectionDirFlag = 0;
};

} // namespace Torvik::View3d
