// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// On or off.
T.Switch {
    id: root

    required property string name
    readonly property real rim: 2 // around the knob

    function flip(): void {
        root.toggle()
        root.toggled()
    }
    // Called for a screen reader's action of that name, which by itself would only turn what is shown.
    function accessibleToggleAction(): void {
        root.flip()
    }

    implicitWidth: 36
    implicitHeight: 20
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: root.name
    Accessible.checkable: true
    Accessible.checked: root.checked
    Keys.onReturnPressed: root.flip()
    Keys.onEnterPressed: root.flip()
    Keys.onShortcutOverride: event => event.accepted = root.visualFocus && event.key === Qt.Key_Space

    indicator: Rectangle {
        width: root.width
        height: root.height
        radius: height / 2
        color: root.checked ? Theme.accent : Theme.groove
        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }

        Rectangle {
            x: root.checked ? parent.width - width - root.rim : root.rim
            y: root.rim
            width: parent.height - 2 * root.rim
            height: width
            radius: width / 2
            color: Theme.disc
            Behavior on x {
                NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
            }
        }
        FocusRing { shown: root.visualFocus; corner: root.height / 2 }
    }
}
