// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Play and pause: a filled disc.
SymbolButton {
    id: root

    property color discColor: Theme.disc

    symbol: Library.transport.isPlaying ? "pause.fill" : "play.fill"
    tip: Library.transport.isPlaying ? Strings.pause : Strings.play
    keys: App.keysOf(CommandKind.PlayPause)
    fill: root.discColor
    symbolColor: Theme.onAccent
    scale: root.pressed ? 0.96 : 1
    onClicked: Library.transport.togglePlayback()

    Behavior on scale {
        NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
    }
}
