// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// A tooltip that costs nothing until the pointer rests on its parent.
Loader {
    id: root

    required property bool shown
    required property string text
    readonly property real air: 6
    readonly property real widest: 420 // of its text

    active: root.shown && root.text.length > 0
    // qmllint disable unqualified
    sourceComponent: T.ToolTip {
        parent: root.parent
        x: root.parent ? Math.round((root.parent.width - width) / 2) : 0
        y: -height - root.air
        margins: root.air
        padding: root.air
        leftPadding: 9
        rightPadding: leftPadding
        visible: true
        delay: Theme.tipDelay
        text: root.text
        closePolicy: T.Popup.NoAutoClose
        implicitWidth: Math.min(contentItem.implicitWidth, root.widest) + leftPadding + rightPadding
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        contentItem: Text {
            text: root.text
            font: Theme.caption
            color: Theme.primaryText
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
        }
        background: Rectangle {
            radius: Theme.radiusSmall
            color: Theme.panelRaised
            border.color: Theme.line
        }
    }
    // qmllint enable unqualified
}
