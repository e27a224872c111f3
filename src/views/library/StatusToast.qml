// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The newest message over the queue, for as long as it lasts.
Rectangle {
    id: root

    required property string text
    required property bool isError

    implicitHeight: words.implicitHeight + 2 * Theme.rowInset
    radius: Theme.radiusMedium
    color: Theme.panelRaised
    border.color: Theme.line
    opacity: root.text.length > 0 ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
    }

    SymbolLabel {
        x: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.isError ? "exclamationmark.triangle.fill" : "info.circle.fill"
        size: 17
        color: root.isError ? Theme.warmAccent : Theme.accent
    }
    Text {
        id: words
        x: 38
        width: parent.width - x - Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
        font: Theme.label
        color: Theme.primaryText
        wrapMode: Text.Wrap
        maximumLineCount: 3
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
}
