// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A place that has nothing in it yet: what it is for, and what fills it.
Item {
    id: root

    required property string symbol
    required property string title
    required property string message
    property real air: 40 // above and below
    default property alias actions: offered.data

    implicitHeight: words.implicitHeight + 2 * root.air

    Column {
        id: words
        y: root.air
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(parent.width - 2 * Theme.gapLarge, 380)
        spacing: Theme.gapSmall

        SymbolTile {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: root.symbol
            side: 72
            symbolSize: 34
            radius: side / 2
            color: Theme.withAlpha(tint, 0.1)
        }
        Text {
            width: parent.width
            topPadding: Theme.gapSmall
            horizontalAlignment: Text.AlignHCenter
            text: root.title
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.emptyTitle
            color: Theme.primaryText
            wrapMode: Text.Wrap
        }
        Text {
            width: parent.width
            bottomPadding: Theme.gapSmall
            horizontalAlignment: Text.AlignHCenter
            text: root.message
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.body
            lineHeight: 1.3
            color: Theme.secondaryText
            wrapMode: Text.Wrap
        }
        Row {
            id: offered
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.gapSmall
        }
    }
}
