#pragma once

#include <Qt3DRender/QObjectPicker>
#include <Qt3DRender/QPickEvent>

namespace Torvik::View3d {

/** A picker of the view's own, so that a pick on it can be told from others. */
class ObjectPicker : public Qt3DRender::QObjectPicker {
    Q_OBJECT

public:
    using Qt3DRender::QObjectPicker::QObjectPicker;
};

} // namespace Torvik::View3d
