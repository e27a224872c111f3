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

    HelpSymbol { symbol: root.symbol }
    Column {
        id: words
        x: Theme.helpIndent
        width: parent.width - x
        spacing: Theme.gapTiny
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
