#pragma once

#include "scene/KxView3dExport.h"

#include <QMetaType>
#include <QObject>

namespace Torvik::View3d {

/** What a picture measures and what it may measure, for the message that refuses it. Pixels and bytes. A plain value,
 *  readable from QML. */
struct KXVIEW3D_EXPORT SizeInfo {
    Q_GADGET
    Q_PROPERTY(int currentWidth MEMBER currentWidth CONSTANT)
    Q_PROPERTY(int currentHeight MEMBER currentHeight CONSTANT)
    Q_PROPERTY(int currentSize MEMBER currentSize CONSTANT)
    Q_PROPERTY(int bytesPerPixel MEMBER bytesPerPixel CONSTANT)
    Q_PROPERTY(int maxWidth MEMBER maxWidth CONSTANT)
    Q_PROPERTY(int maxHeight MEMBER maxHeight CONSTANT)
    Q_PROPERTY(int maxSize MEMBER maxSize CONSTANT)

public:
    int currentWidth = 0;
    int currentHeight = 0;
    int currentSize = 0;
    int bytesPerPixel = 0;
    int maxWidth = 0;
    int maxHeight = 0;
    int maxSize = 0;
};

} // namespace Torvik::View3d

Q_DECLARE_METATYPE(Torvik::View3d::SizeInfo)
