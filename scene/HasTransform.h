#pragma once

namespace Torvik::View3d {

class FlaggedTransform;

/** Something that stands in the scene at a place of its own. */
class HasTransform {
public:
    virtual ~HasTransform() = default;

    virtual FlaggedTransform* transform() const = 0;
};

} // namespace Torvik::View3d
