// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Previous, play and next in little space.
Row {
    spacing: 6

    TransportButton {
        symbol: "backward.fill"
        tip: Strings.previousTrack
        size: 32
        symbolColor: Theme.primaryText
        onClicked: Library.transport.playPrevious()
    }
    PlayButton {
        size: 32
        symbolSize: 20
        discColor: Theme.accent
    }
    TransportButton {
        symbol: "forward.fill"
        tip: Strings.nextTrack
        size: 32
        symbolColor: Theme.primaryText
        onClicked: Library.transport.playNext(true)
    }
}
