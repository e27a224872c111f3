// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// Shows a choice; pressing it opens a menu of all of them.
PressableBase {
    id: root

    required property string name
    required property var choices // list of texts
    required property int chosen
    readonly property real arrowRoom: 28

    signal chose(int index)

    implicitWidth: label.x + label.implicitWidth + Theme.gapTiny + root.arrowRoom
    implicitHeight: Theme.controlHeight
    text: root.choices[root.chosen] ?? ""
    Accessible.role: Accessible.ComboBox
    Accessible.name: root.name
    Accessible.description: root.text
    Keys.onUpPressed: root.chose(Math.max(0, root.chosen - 1))
    Keys.onDownPressed: root.chose(Math.min(root.choices.length - 1, root.chosen + 1))
    opens: true
    isOpen: menu.visible
    onClicked: menu.popup(root, 0, root.height + Theme.gapTiny)

    contentItem: Item {
        Text {
            id: label
            x: Theme.gap
            width: parent.width - x - root.arrowRoom
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: Theme.labelStrong
            color: Theme.primaryText
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        SymbolLabel {
            anchors.right: parent.right
            anchors.rightMargin: Theme.gapSmall
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.up.chevron.down"
            size: 14
        }
    }
    background: Rectangle {
        radius: Theme.radiusSmall
        color: Theme.panelRaised
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: root.hovered
            color: Theme.hoverWash
        }
        FocusRing { shown: root.visualFocus }
    }

    ContextMenu {
        id: menu
        Repeater {
            model: root.choices
            MenuEntry {
                required property string modelData
                required property int index
                text: modelData
                checkable: true
                checked: index === root.chosen
                onTriggered: root.chose(index)
            }
        }
    }
}
