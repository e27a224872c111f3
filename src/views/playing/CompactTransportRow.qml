// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Previous, play and next in little space.
Row {
    id: root

    readonly property real buttonSize: 32

    spacing: 6

    TransportButton {
        symbol: "backward.fill"
        tip: Strings.previousTrack
        size: root.buttonSize
        symbolColor: Theme.primaryText
        onClicked: Library.transport.playPrevious()
    }
    PlayButton {
        size: root.buttonSize
        symbolSize: 20
        discColor: Theme.accent
    }
    TransportButton {
        symbol: "forward.fill"
        tip: Strings.nextTrack
        size: root.buttonSize
        symbolColor: Theme.primaryText
        onClicked: Library.transport.playNext(true)
    }
}
