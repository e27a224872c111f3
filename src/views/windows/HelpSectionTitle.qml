// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The title of a section without a text of its own.
Item {
    id: root

    required property string symbol
    required property string title

    implicitHeight: tile.height + Theme.gapTiny

    HelpSymbol {
        id: tile
        symbol: root.symbol
    }
    Text {
        x: Theme.helpIndent
        height: tile.height
        verticalAlignment: Text.AlignVCenter
        text: root.title
        font: Theme.name
        color: Theme.primaryText
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
