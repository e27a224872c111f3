// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Skips to the next track.
TransportButton {
    symbol: "forward.fill"
    tip: Strings.nextTrack
    keys: App.keysOf(CommandKind.NextTrack)
    symbolColor: Theme.primaryText
    onClicked: Library.transport.playNext(true)
}
