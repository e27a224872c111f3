// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The product's name and version.
Row {
    spacing: Theme.gap

    SymbolTile {
        y: 5
        symbol: "waveform"
        side: 38
        symbolSize: 20
        radius: Theme.radiusMedium
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
