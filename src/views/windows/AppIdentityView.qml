// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The product's name and version.
Row {
    spacing: 12

    Rectangle {
        width: 38
        height: 38
        y: 5
        radius: Theme.radiusMedium
        color: Theme.selectionFill
        SymbolLabel {
            anchors.centerIn: parent
            symbol: "waveform"
            size: 20
            color: Theme.accent
        }
    }
    Column {
        spacing: 2
        Text {
            text: "Halvane"
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.cardTitle
            color: Theme.primaryText
        }
        Text {
            text: Strings.appSubtitle
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.caption
            color: Theme.primaryText
        }
        Text {
            text: "v1.0.0 (22)"
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.badge
            color: Theme.tertiaryText
        }
    }
}
