#pragma once

#include <QByteArray>

namespace Kx::Test {

/** QML of a Scene3D with nothing in it, seen from straight above its origin, +z up in the picture; its `sceneRoot`
 * takes what the test draws. Degrees and metres. */
inline QByteArray plainSceneQml(double lens, double height, double farPlane = 10000)
{
    return QByteArray(R"(
import QtQuick 2.12
import QtQuick.Scene3D 2.12
import Qt3D.Core 2.12
import Qt3D.Render 2.12
import Qt3D.Extras 2.12

Scene3D {
    multisample: false
    property alias sceneRoot: sceneRoot
    Entity {
        id: sceneRoot
        components: [
            RenderSettings {
                activeFrameGraph: ForwardRenderer { clearColor: "black"; camera: cam }
                renderPolicy: RenderSettings.Always
            }
        ]
        Camera {
            id: cam
            fieldOfView: $LENS
            aspectRatio: 1
            nearPlane: 1
            farPlane: $FAR
            position: Qt.vector3d(0, $HEIGHT, 0)
            viewCenter: Qt.vector3d(0, 0, 0)
            upVector: Qt.vector3d(0, 0, 1)
        }
    }
}
)")
        .replace("$LENS", QByteArray::number(lens))
        .replace("$FAR", QByteArray::number(farPlane))
        .replace("$HEIGHT", QByteArray::number(height));
}

} // namespace Kx::Test
