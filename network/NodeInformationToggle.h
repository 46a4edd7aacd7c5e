#pragma once

namespace Torvik::View3d {

/** How the labels of all nodes look at present. */
struct NodeInformationToggle {
    /** The labels show depth, diameter and height as well as the name. */
    static inline bool m_manholeFullInfoVisible = false;
    /** Height of a label's line, in scene units. */
    static inline float m_labelLineHeight = 0.0F;
};

} // namespace Torvik::View3d
