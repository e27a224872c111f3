// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Plays the tile that it stands on, where the tile is chosen or pointed at.
SymbolButton {
    id: root

    required property bool isOffered

    size: 44
    symbolSize: root.size * 0.6
    symbol: "play.fill"
    fill: Theme.accent
    symbolColor: Theme.onAccent
    opacity: root.isOffered ? 1 : 0
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
    }
}
