// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// Shows a colour; pressing it opens sliders for hue, saturation and brightness.
PressableBase {
    id: root

    required property string name
    required property color color
    readonly property real mixerWidth: 200

    signal chose(color color)

    implicitWidth: 44
    implicitHeight: 24
    Accessible.role: Accessible.ColorChooser
    Accessible.name: root.name
    Accessible.description: root.color.toString()
    opens: true
    isOpen: popover.opened
    onClicked: popover.opened ? popover.close() : popover.open()

    contentItem: Item {}
    background: Rectangle {
        radius: Theme.radiusSmall
        color: root.color
        border.color: Theme.line
        FocusRing { shown: root.visualFocus }
    }

    component Part: ValueSlider {
        width: root.mixerWidth
        stepSize: 1
        shown: 0
        spokenValue: Math.round(value) + " %"
        onAsked: percent => {
            shown = percent
            root.chose(popover.mixed())
        }
    }

    Popover {
        id: popover

        function mixed(): color {
            return Qt.hsva(hue.value / 100, saturation.value / 100, brightness.value / 100, 1)
        }

        name: root.name
        x: root.width - width
        y: root.height + 6
        padding: 14
        onAboutToShow: {
            hue.shown = 100 * Math.max(0, root.color.hsvHue)
            saturation.shown = 100 * root.color.hsvSaturation
            brightness.shown = 100 * root.color.hsvValue
        }
        contentItem: Column {
            spacing: Theme.gapSmall
            Rectangle {
                width: root.mixerWidth
                height: Theme.controlHeight
                radius: Theme.radiusSmall
                color: root.color
                border.color: Theme.hairline
            }
            Part {
                id: hue
                name: root.name + " H"
                fill: Qt.hsva(value / 100, 0.9, 0.95, 1)
                focus: true
            }
            Part {
                id: saturation
                name: root.name + " S"
                fill: Qt.hsva(hue.value / 100, value / 100, 0.95, 1)
            }
            Part {
                id: brightness
                name: root.name + " B"
                fill: popover.mixed()
            }
        }
    }
}
