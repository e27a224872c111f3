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

    spacing: 12

    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: "shuffle"
        tip: Library.isShuffleEnabled ? Strings.shuffleOn : Strings.shuffleOff
        symbolSize: root.modeSymbolSize
        isActive: Library.isShuffleEnabled
        Accessible.checkable: true
        Accessible.checked: Library.isShuffleEnabled
        onClicked: Library.toggleShuffle()
    }
    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: "backward.fill"
        tip: Strings.previousTrack
        size: root.sideSize
        symbolSize: root.sideSymbolSize
        symbolColor: Theme.primaryText
        onClicked: Library.playPrevious()
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
        onClicked: Library.playNext(true)
    }
    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: Library.repeatMode === Repeat.One ? "repeat.1" : "repeat"
        tip: [Strings.repeatOff, Strings.repeatAll, Strings.repeatOne][Library.repeatMode]
        symbolSize: root.modeSymbolSize
        isActive: Library.repeatMode !== Repeat.Off
        onClicked: Library.advanceRepeatMode()
    }
}
