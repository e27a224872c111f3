// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A symbol on a square, or on a disc, in a little of its colour.
Rectangle {
    id: root

    required property string symbol
    required property real side
    required property real symbolSize
    property color tint: Theme.accent

    implicitWidth: root.side
    implicitHeight: root.side
    radius: Theme.radiusSmall
    color: Theme.selectionFill

    SymbolLabel {
        anchors.centerIn: parent
        symbol: root.symbol
        size: root.symbolSize
        color: root.tint
    }
}
