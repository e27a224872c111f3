// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One column that can be chosen.
PressableBase {
    id: root

    required property bool isShown

    implicitHeight: Theme.controlHeight
    opacity: root.enabled ? 1 : 0.5
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: root.isShown

    contentItem: Item {
        SymbolLabel {
            x: Theme.gapSmall
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isShown
            symbol: "checkmark"
            size: 16
            color: Theme.accent
        }
        Text {
            x: 32
            width: root.width - x
            height: root.height
            verticalAlignment: Text.AlignVCenter
            text: root.text
            elide: Text.ElideRight
            font: Theme.label
            color: Theme.primaryText
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: Theme.radiusSmall - 2
        color: root.hovered ? Theme.selectionFill : "transparent"

        FocusRing { shown: root.visualFocus; around: -1 }
    }
}
