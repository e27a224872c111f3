// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// One gain from -12 to +12 dB: its value, a slider on which up is louder, and its label.
Column {
    id: root

    required property string label
    required property real value

    // Half a dB goes to the even neighbour, as where the sound is made.
    readonly property string figure: {
        const size = Math.abs(root.value)
        const below = Math.floor(size)
        return (root.value < 0 ? "-" : "+") + (size - below === 0.5 ? below + below % 2 : Math.round(size))
    }

    signal movedTo(real dB)

    width: 32
    spacing: 3

    Text {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: root.figure
        font: Theme.badge
        color: Theme.secondaryText
        Accessible.ignored: true
    }
    T.Slider {
        id: slider
        anchors.horizontalCenter: parent.horizontalCenter
        width: 30
        height: 110
        orientation: Qt.Vertical
        from: -12
        to: 12
        stepSize: 0.5
        snapMode: T.Slider.SnapAlways
        value: root.value
        focusPolicy: Qt.TabFocus
        hoverEnabled: true
        wheelEnabled: true
        Accessible.role: Accessible.Slider
        Accessible.name: root.label
        Accessible.description: root.value + " dB"
        // Assistive technology sets the value, between two steps as well, and looks for the ends here.
        readonly property real minimumValue: slider.from
        readonly property real maximumValue: slider.to
        onValueChanged: {
            if (slider.value !== root.value)
                root.movedTo(Math.round(slider.value / slider.stepSize) * slider.stepSize)
        }

        background: Rectangle {
            x: (slider.width - width) / 2
            y: slider.topPadding
            width: 4
            height: slider.availableHeight
            radius: width / 2
            color: Theme.groove

            // From the middle to the handle.
            Rectangle {
                readonly property real middle: parent.height / 2
                readonly property real here: slider.handle.y + slider.handle.height / 2
                y: Math.min(middle, here)
                width: parent.width
                height: Math.abs(middle - here)
                radius: width / 2
                color: Theme.accent
                opacity: Library.equalizer.eqEnabled ? 1 : 0.4
            }
        }
        handle: Rectangle {
            id: knob
            x: (slider.width - width) / 2
            y: slider.topPadding + slider.visualPosition * (slider.availableHeight - height)
            width: 14
            height: width
            radius: width / 2
            color: Theme.disc
            opacity: Library.equalizer.eqEnabled ? 1 : 0.7
            FocusRing { shown: slider.visualFocus; corner: knob.radius }
        }
    }
    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        text: root.label
        font: Theme.badge
        color: Theme.tertiaryText
        Accessible.ignored: true
    }
}
