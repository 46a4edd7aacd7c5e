import QtQuick 2.12
import Qt3D.Render 2.12

/** A frame graph with two passes over the whole surface. */
RenderSurfaceSelector {
    surfacePixelRatio: 1

    Viewport {
        normalizedRect: Qt.rect(0, 0, 1, 1)

        ClearBuffers {
            buffers: ClearBuffers.ColorDepthBuffer
            clearColor: Qt.rgba(0.7, 0.7, 0.7, window3d.sceneTransparency)

            CameraSelector {
                camera: mainCamera
            }
        }
    }

    Viewport {
        normalizedRect: Qt.rect(0, 0, 1, 1)

        ClearBuffers {
            buffers: ClearBuffers.ColorDepthBuffer
            clearColor: Qt.rgba(0.0, 0.7, 0.7, window3d.sceneTransparency)

            CameraSelector {
                camera: mainCamera
            }
        }
    }
}
