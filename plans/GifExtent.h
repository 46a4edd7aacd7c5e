#pragma once

#include "scene/KxView3dExport.h"

#include <QByteArray>
#include <QSize>

class QIODevice;

namespace Torvik::View3d {

/** What a decoder allocates for a GIF: the sides that it tells for the whole, whatever its frames are; for one that it
 *  doesn't tell, room for its first frame, which a decoder allocates even to say how large the picture is. Invalid for
 *  anything else, and for a file that ends before it tells. The device stays where it is. Any thread. */
KXVIEW3D_EXPORT QSize gifExtent(QIODevice& file);

} // namespace Torvik::View3d
