// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// Transport, progress, spectrum, output, volume, equalizer and the window's sizes. The transport and
// the progress line stand on the window's axis, whatever there is beside them; where that has too
// little room, the spectrum goes first.
Rectangle {
    id: root

    readonly property real inset: 18
    readonly property real axis: Math.round(root.width / 2)
    readonly property real lineWidth: Math.max(240, Math.min(640, root.width - 744))
    readonly property real greatestTrackWidth: 320
    readonly property bool isNarrow: root.width < 900

    implicitHeight: Theme.playerBarHeight
    color: Theme.playerBarVeil

    component SizeButton: TransportButton {
        symbolSize: 18
    }

    PlayerBarTrack {
        x: root.inset
        width: Math.min(root.greatestTrackWidth, progress.x - Theme.margin - x)
        height: parent.height
    }
    SpectrumStrip {
        id: spectrum
        x: progress.x
        y: 12
        width: 116
        height: 32
        visible: x + width < transport.x
        isPlaying: Library.transport.isPlaying
        tint: Library.appearance.spectrumTint
    }
    TransportRow {
        id: transport
        x: root.axis - width / 2
        y: 7
        spacing: 14
    }
    ProgressLine {
        id: progress
        x: root.axis - Math.round(root.lineWidth / 2) - lineLeft
        y: 59 // the bubble finds room below the transport
        z: 1
        width: root.lineWidth + besideLine
    }
    OutputMenu {
        x: root.axis + 132
        y: 6
        width: Math.min(implicitWidth, sound.x - Theme.gap - x)
    }
    Row {
        id: sound
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        anchors.verticalCenter: parent.verticalCenter

        VolumeControl {
            anchors.verticalCenter: parent.verticalCenter
            rightPadding: root.isNarrow ? Theme.gapTiny : Theme.gap
            lineWidth: root.isNarrow ? 48 : 84
        }
        TransportButton {
            id: eqButton
            symbol: "slider.horizontal.3"
            tip: Strings.equalizer
            isActive: Library.equalizer.eqEnabled || isOpen
            opens: true
            isOpen: (eq.item as EQPopover)?.opened ?? false
            onClicked: {
                const popover = eq.made() as EQPopover
                popover.opened ? popover.close() : popover.open()
            }

            Deferred {
                id: eq
                EQPopover {
                    parent: eqButton
                    x: eqButton.width - width + 60
                    y: -height - Theme.gapLarge
                }
            }
        }
        SizeButton {
            symbol: "arrow.up.left.and.arrow.down.right"
            tip: Strings.fullScreenPlayer
            keys: App.keysOf(CommandKind.ToggleFullScreen)
            onClicked: Library.views.showFullPlayer = true
        }
        SizeButton {
            symbol: "arrow.down.right.and.arrow.up.left"
            tip: Strings.miniPlayer
            keys: App.keysOf(CommandKind.ToggleMiniPlayer)
            onClicked: App.toggleMiniPlayer()
        }
    }
}
