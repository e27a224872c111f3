// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Previous, play and next in little space.
Row {
    id: root

    readonly property real buttonSize: 32

    spacing: 6

    PreviousButton { size: root.buttonSize }
    PlayButton {
        size: root.buttonSize
        symbolSize: 20
        discColor: Theme.accent
    }
    NextButton { size: root.buttonSize }
}
