// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The volume. Its symbol silences what plays, and gives it its volume back.
Row {
    id: root

    required property real lineWidth

    spacing: 2

    TransportButton {
        id: muting
        anchors.verticalCenter: parent.verticalCenter
        symbol: Library.transport.isMuted ? "speaker.slash" : "speaker.wave.2"
        tip: Library.transport.isMuted ? Strings.unmute : Strings.mute
        Accessible.name: Strings.mute
        Accessible.checkable: true
        Accessible.checked: Library.transport.isMuted
        onClicked: Library.transport.toggleMute()
    }
    ValueSlider {
        id: line
        anchors.verticalCenter: parent.verticalCenter
        width: root.lineWidth
        name: Strings.volumeLabel
        spokenValue: Math.round(line.shown) + " %"
        bubble: line.spokenValue
        showsBubble: line.isPointedAt || muting.hovered
        shown: Library.transport.volume * 100
        onAsked: percent => Library.transport.volume = percent / 100
    }
}
