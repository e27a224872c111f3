// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// On or off.
T.Switch {
    id: root

    required property string name

    function flip(): void {
        root.toggle()
        root.toggled()
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
            x: root.checked ? parent.width - width - 2 : 2
            y: 2
            width: parent.height - 4
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
