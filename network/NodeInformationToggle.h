#pragma once

#include <QString>

namespace Torvik::View3d {

class Node;

/** How the labels of all nodes look at present. */
struct NodeInformationToggle {
    /** The labels show depth, diameter and height as well as the name. */
    static inline bool m_manholeFullInfoVisible = false;
    /** Height of a label's line, in scene units. */
    static inline float m_labelLineHeight = 0.0F;

    /** Switch one label: to the name with the lines of `info` below it, and back to the name alone. Back again only as
     *  long as the label has those very lines. The height changes by a factor, which the next look at the screen sets
     *  right. */
    static void setFullInfoLabelParameters(Node* node, const QString& info);
    static void setShortInfoLabelParameters(Node* node, const QString& info);
};

} // namespace Torvik::View3d
