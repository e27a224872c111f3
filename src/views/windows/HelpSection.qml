// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A title and some lines of help beside a symbol.
Item {
    id: root

    required property string symbol
    required property string title
    required property string body

    width: parent ? parent.width : 0
    implicitHeight: words.height

    Rectangle {
        width: 30
        height: 30
        radius: Theme.radiusSmall
        color: Theme.selectionFill
        SymbolLabel {
            anchors.centerIn: parent
            symbol: root.symbol
            size: 18
            color: Theme.accent
        }
    }
    Column {
        id: words
        x: 44
        width: parent.width - 44
        spacing: 4
        Text {
            width: parent.width
            text: root.title
            font: Theme.name
            color: Theme.primaryText
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            width: parent.width
            text: root.body
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.label
            lineHeight: 1.3
            color: Theme.secondaryText
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
        }
    }
}
