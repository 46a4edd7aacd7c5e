import QtQuick 2.12
import QtQuick.Controls 2.12
import QtQuick.Layouts 1.12

import "."

/** The vehicle in the pipe: a recording with its buttons and time, or the connection it tells by, and the counter. */
Rectangle {
    id: bar

    /** What the window has of the vehicle. */
    property var vehicle: null
    readonly property bool replaying: !!vehicle && vehicle.replaying
    /** All of it has room in one row. */
    readonly property bool wide: width >= 620

    implicitHeight: row.implicitHeight + 2 * Style.gap
    color: Style.panel

    function clock(seconds) {
        const whole = Math.floor(seconds)
        const rest = whole % 60
        return Math.floor(whole / 60) + ":" + (rest < 10 ? "0" : "") + rest
    }

    GridLayout {
        id: row

        anchors {
            left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter
            leftMargin: Style.gap; rightMargin: 2 * Style.gap
        }
        columns: bar.wide ? 2 : 1
        columnSpacing: Style.gap
        rowSpacing: Style.gap

        RowLayout {
            visible: bar.replaying
            spacing: Style.gap

            ToolButton {
                objectName: "playButton"
                visible: bar.replaying
                text: !!bar.vehicle && bar.vehicle.playing ? qsTr("Pause") : qsTr("Play")
                Layout.preferredWidth: 80
                onClicked: bar.vehicle.playing ? bar.vehicle.pause() : bar.vehicle.play()
            }

            Repeater {
                model: [
                    { name: "1x", factor: 1, id: "normal" },
                    { name: "10x", factor: 10, id: "tenfold" },
                    { name: qsTr("Max"), factor: 0, id: "fastest" }
                ]

                ToolButton {
                    objectName: modelData.id + "Button"
                    visible: bar.replaying
                    text: modelData.name
                    on: !!bar.vehicle && bar.vehicle.speed === modelData.factor
                    onClicked: bar.vehicle.speed = modelData.factor
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Style.gap

            Slider {
                objectName: "timeSlider"
                visible: bar.replaying
                Layout.fillWidth: true
                Layout.preferredHeight: Style.touch
                from: 0
                to: bar.vehicle ? Math.max(bar.vehicle.duration, 0.001) : 1
                value: bar.vehicle ? bar.vehicle.position : 0
                onMoved: bar.vehicle.seek(value)
            }

            Text {
                objectName: "timeText"
                visible: bar.replaying
                text: bar.vehicle ? bar.clock(bar.vehicle.position) + " / " + bar.clock(bar.vehicle.duration) : ""
                color: Style.quietInk
                font.pixelSize: Style.smallTextSize
            }

            Text {
                objectName: "connectionText"
                visible: !bar.replaying
                Layout.fillWidth: true
                text: bar.vehicle ? bar.vehicle.connectionText : ""
                color: Style.ink
                font.pixelSize: Style.textSize
                elide: Text.ElideRight
            }

            Text {
                objectName: "counterText"
                // The code is read, so that the number is written anew in another language.
                text: bar.vehicle && language.code && units.name ? units.length(bar.vehicle.counter, 2) : ""
                color: Style.ink
                font.pixelSize: Style.textSize
                horizontalAlignment: Text.AlignRight
                Layout.preferredWidth: 80
            }

            ToolButton {
                objectName: "measureButton"
                text: qsTr("Measure")
                on: !!bar.vehicle && bar.vehicle.measuring
                onClicked: bar.vehicle.measuring = !bar.vehicle.measuring
            }
        }
    }
}
