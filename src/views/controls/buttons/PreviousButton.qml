// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Goes back to the track before.
TransportButton {
    symbol: "backward.fill"
    tip: Strings.previousTrack
    keys: App.keysOf(CommandKind.PreviousTrack)
    symbolColor: Theme.primaryText
    onClicked: Library.transport.playPrevious()
}
