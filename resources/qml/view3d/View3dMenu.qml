import QtQuick 2.12

/** The buttons at the right-hand edge: split view, and what a finger does. Expects a window3d around it. */
Item {
    id: view3dMenu

    property alias controlTypeModeButton: modeButton
    readonly property var modes: window3d.mode3dTypes

    width: 64
    height: buttons.height
    clip: true

    Behavior on height {
        SmoothedAnimation { duration: 500; velocity: 100 }
    }

    Column {
        id: buttons

        spacing: 1

        ButtonView3d {
            objectName: "commandButton_toggleSplitView"
            visible: window3d.isOnMain3DScreen()
            iconNormal: design.icons.buttonToggleFullSplitPipeViewscreen.enabled
            iconClicked: design.icons.buttonToggleFullSplitPipeViewscreen.active
            modeButtonMode: true
            state: window3d.splitViewMode ? "normal" : "modeSet"
            clickAction: function() {
                if (window3d.toggleSplitViewCallback)
                    window3d.toggleSplitViewCallback()
            }
        }

        Loader {
            id: modeButton

            // Kept as it is: with the button there it is always false.
            property bool isRotationMode: !!item ? false : item.modeButtonMode === view3dMenu.modes.rotate

            function offerOtherMode() {
                if (item)
                    item.modeButtonMode = window3d.mode3dType === view3dMenu.modes.rotate ? view3dMenu.modes.rotate
                                                                                          : view3dMenu.modes.translate
            }

            objectName: "controlTypeModeButton"
            visible: window3d.pipeViewBiggerThan40Percentage() && !window3d.disableModeTypeSwitch
                     && window3d.rotationTranslationButtonEnabled
            sourceComponent: ButtonView3d {
                iconNormal: design.icons.buttonToggleRotationTranslationPipeViewscreen.enabled
                iconClicked: design.icons.buttonToggleRotationTranslationPipeViewscreen.active
                clickAction: function() {
                    if (window3d.scene3d)
                        window3d.scene3d.stopDemo()
                    window3d.switchMode(window3d.mode3dType === view3dMenu.modes.rotate ? view3dMenu.modes.translate
                                                                                        : view3dMenu.modes.rotate)
                }
            }
            onLoaded: offerOtherMode()
        }
    }

    Connections {
        target: window3d
        function onMode3dChanged() {
            modeButton.offerOtherMode()
        }
    }
}
