#pragma once

namespace Torvik::View3d {

/** Where an object's position comes from. The same bits are stored as the m value of a WKT point. The source decides
 *  how far the program may move an object by itself. */
class TransformFlags {
public:
    enum Flags : int {
        Unknown = 0,      ///< no real position
        Observations = 1, ///< derived from an inspection's observations along a pipe
        CAD = 2,
        Manual = 4, ///< placed by the user
        GPS = 8,
        GIS = 16,
        Geosensor = 32, ///< measured by the crawler's 3D sensor
        PipeShape = 64  ///< from a stored pipe shape
    };

    explicit TransformFlags(int flags);
    virtual ~TransformFlags() = default;

    int getFlags() const { return m_flags; }
    /** Mask for a value read from a stored point: 127. */
    static int allTransformFlags();
    /** True for any source. */
    bool hasPosition() const;
    /** True for a source other than Observations: the program must not move the object by itself. */
    bool positionBound() const;

protected:
    int m_flags;
};

} // namespace Torvik::View3d
