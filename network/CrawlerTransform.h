#pragma once

#include <QMatrix4x4>

namespace Torvik::View3d {

/** What a crawler needs of the pipe that it drives in. */
class CrawlerTransform {
public:
    /** Where the crawler stands and looks, in scene coordinates. */
    virtual QMatrix4x4 crawlerTransformMatrix() const = 0;
    /** Radius of the pipe in metres. */
    virtual float pipeScale() const = 0;

protected:
    /** A crawler does not own its pipe. */
    ~CrawlerTransform() = default;
};

} // namespace Torvik::View3d
