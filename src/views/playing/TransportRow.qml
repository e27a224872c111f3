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

    // Its tip says what a click does, as the menu's entry does.
    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: "shuffle"
        tip: Library.transport.isShuffleEnabled ? Strings.turnShuffleOff : Strings.turnShuffleOn
        keys: App.keysOf(CommandKind.ToggleShuffle)
        symbolSize: root.modeSymbolSize
        isActive: Library.transport.isShuffleEnabled
        Accessible.name: Library.transport.isShuffleEnabled ? Strings.shuffleOn : Strings.shuffleOff
        Accessible.checkable: true
        Accessible.checked: Library.transport.isShuffleEnabled
        onClicked: Library.transport.toggleShuffle()
    }
    PreviousButton {
        anchors.verticalCenter: parent.verticalCenter
        size: root.sideSize
        symbolSize: root.sideSymbolSize
    }
    PlayButton {
        size: root.discSize
        symbolSize: Math.round(root.discSize * 0.55)
    }
    NextButton {
        anchors.verticalCenter: parent.verticalCenter
        size: root.sideSize
        symbolSize: root.sideSymbolSize
    }
    TransportButton {
        anchors.verticalCenter: parent.verticalCenter
        symbol: Library.transport.repeatMode === Repeat.One ? "repeat.1" : "repeat"
        tip: [Strings.repeatOff, Strings.repeatAll, Strings.repeatOne][Library.transport.repeatMode]
        keys: App.keysOf(CommandKind.AdvanceRepeatMode)
        symbolSize: root.modeSymbolSize
        isActive: Library.transport.repeatMode !== Repeat.Off
        onClicked: Library.transport.advanceRepeatMode()
    }
}
