// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Shuffle, previous, play, next, repeat.
Row {
    id: root

    property real discSize: 42
    property real sideSize: Theme.buttonSize
    property real sideSymbolSize: 24
    property real modeSymbolSize: 19

    spacing: Theme.gap

    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: "shuffle"
        tip: Library.transport.isShuffleEnabled ? Strings.shuffleOn : Strings.shuffleOff
        symbolSize: root.modeSymbolSize
        isActive: Library.transport.isShuffleEnabled
        Accessible.checkable: true
        Accessible.checked: Library.transport.isShuffleEnabled
        onClicked: Library.transport.toggleShuffle()
    }
    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: "backward.fill"
        tip: Strings.previousTrack
        size: root.sideSize
        symbolSize: root.sideSymbolSize
        symbolColor: Theme.primaryText
        onClicked: Library.transport.playPrevious()
    }
    PlayButton {
        size: root.discSize
        symbolSize: Math.round(root.discSize * 0.55)
    }
    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: "forward.fill"
        tip: Strings.nextTrack
        size: root.sideSize
        symbolSize: root.sideSymbolSize
        symbolColor: Theme.primaryText
        onClicked: Library.transport.playNext(true)
    }
    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: Library.transport.repeatMode === Repeat.One ? "repeat.1" : "repeat"
        tip: [Strings.repeatOff, Strings.repeatAll, Strings.repeatOne][Library.transport.repeatMode]
        symbolSize: root.modeSymbolSize
        isActive: Library.transport.repeatMode !== Repeat.Off
        onClicked: Library.transport.advanceRepeatMode()
    }
}
