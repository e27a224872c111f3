// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Text that leads somewhere: underlined under the pointer.
PressableBase {
    id: root

    property color color: Theme.secondaryText
    property real maximumWidth: Infinity
    property int alignment: Text.AlignLeft

    width: Math.min(implicitWidth, root.maximumWidth)
    implicitWidth: label.implicitWidth
    implicitHeight: label.implicitHeight
    visible: root.text.length > 0
    Accessible.role: Accessible.Link
    Accessible.name: root.text
    Accessible.description: root.tip

    contentItem: Text {
        id: label
        text: root.text
        font.pixelSize: root.font.pixelSize
        font.weight: root.font.weight
        font.underline: root.hovered
        color: root.hovered ? Theme.primaryText : root.color
        elide: Text.ElideRight
        textFormat: Text.PlainText
        horizontalAlignment: root.alignment
        Accessible.ignored: true
    }
    background: Item {
        FocusRing { shown: root.visualFocus; around: 2; corner: 3 }
    }
    HoverHandler { cursorShape: Qt.PointingHandCursor }
}
