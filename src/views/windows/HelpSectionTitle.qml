// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The title of a section without a text of its own.
Item {
    id: root

    required property string symbol
    required property string title

    implicitHeight: 34

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
    Text {
        x: 44
        height: 30
        verticalAlignment: Text.AlignVCenter
        text: root.title
        font: Theme.name
        color: Theme.primaryText
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
