// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// What all buttons share: Return presses, Space presses while the keyboard is on the button (it is
// play and pause elsewhere), a name for those who cannot see it, and a tooltip.
T.AbstractButton {
    id: root

    property string tip

    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: root.tip.length > 0 ? root.tip : root.text

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()
    Keys.onShortcutOverride: event => event.accepted = root.visualFocus && event.key === Qt.Key_Space

    Tip {
        shown: root.hovered && !root.pressed
        text: root.tip
    }
}
