// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// A horizontal line with a handle, in percent. The wheel and the arrow keys step it.
T.Slider {
    id: root

    required property string name
    property color fill: Theme.accent
    property string spokenValue
    required property real shown
    property bool follows: true // what is shown
    property real thickness: 4
    property bool hasHandle: true
    property string bubble // what stands over the line while a pointer is on it
    property real bubbleAt: root.visualPosition // 0...1
    property bool showsBubble: root.isPointedAt
    readonly property bool isPointedAt: root.enabled && (root.hovered || root.pressed)
    // The place that a press would choose, or that the hand holds.
    readonly property real pointed: root.pressed ? root.value / root.to : root.placeOf(hover.point.position.x)
    // Where assistive technology looks for the ends.
    readonly property real minimumValue: root.from
    readonly property real maximumValue: root.to

    // Whoever moves it, by hand, by key or through assistive technology, which only sets the value.
    signal asked(real value)

    function placeOf(x: real): real {
        return Math.max(0, Math.min(1, (x - root.leftPadding - root.handle.width / 2) / (root.availableWidth - root.handle.width)))
    }

    implicitWidth: 120
    implicitHeight: 20
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    wheelEnabled: true
    to: 100
    stepSize: 6.25
    Accessible.role: Accessible.Slider
    Accessible.name: root.name
    Accessible.description: root.spokenValue
    onValueChanged: {
        if (root.value !== root.shown)
            root.asked(root.value)
    }

    Binding on value {
        when: root.follows && !root.pressed
        value: root.shown
        restoreMode: Binding.RestoreNone
    }
    handle: Rectangle {
        id: knob
        x: root.leftPadding + root.visualPosition * (root.availableWidth - width)
        y: root.topPadding + (root.availableHeight - height) / 2
        width: 12
        height: width
        radius: width / 2
        color: Theme.disc
        opacity: root.hasHandle ? 1 : 0
        scale: root.pressed ? 1.15 : root.hovered ? 1.08 : 1
        Behavior on opacity {
            NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
        }
        Behavior on scale {
            NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
        }
        FocusRing { shown: root.visualFocus; corner: knob.radius }
    }
    background: Rectangle {
        x: root.leftPadding
        y: root.topPadding + (root.availableHeight - height) / 2
        width: root.availableWidth
        height: root.thickness
        radius: height / 2
        color: Theme.groove

        Rectangle {
            width: root.handle.x - root.leftPadding + root.handle.width / 2
            height: parent.height
            radius: height / 2
            color: root.fill
        }
    }

    HoverHandler { id: hover }
    ValueBubble {
        visible: root.showsBubble && root.bubble.length > 0
        x: Math.round(root.leftPadding + root.handle.width / 2 + root.bubbleAt * (root.availableWidth - root.handle.width) - width / 2)
        y: Math.round(root.height / 2) - height - 4
        text: root.bubble
    }
}
