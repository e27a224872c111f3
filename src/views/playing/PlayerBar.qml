// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Halvane

// Transport, progress, spectrum, output, volume, equalizer and the window's sizes.
Rectangle {
    id: root

    implicitHeight: Theme.playerBarHeight
    color: Theme.playerBarVeil

    component SizeButton: TransportButton {
        symbolSize: 18
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 18
        anchors.rightMargin: anchors.leftMargin
        spacing: 20

        PlayerBarTrack {
            Layout.preferredWidth: Layout.maximumWidth
            Layout.minimumWidth: 150
            Layout.fillWidth: true
            Layout.maximumWidth: 270
            Layout.fillHeight: true
        }
        Item {
            Layout.fillWidth: true
            Layout.preferredWidth: 0
        }
        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: 240
            Layout.maximumWidth: 440
            Layout.preferredWidth: Layout.maximumWidth
            spacing: 2
            TransportRow { Layout.alignment: Qt.AlignHCenter }
            ProgressLine { Layout.fillWidth: true }
        }
        Item {
            Layout.fillWidth: true
            Layout.preferredWidth: 0
        }
        SpectrumStrip {
            Layout.preferredWidth: Layout.maximumWidth
            Layout.minimumWidth: 40
            Layout.fillWidth: true
            Layout.maximumWidth: 116
            visible: root.width > 1080
            isPlaying: Library.transport.isPlaying
            tint: Library.appearance.spectrumTint
        }
        OutputMenu {
            Layout.fillWidth: true
            Layout.minimumWidth: 80
            Layout.preferredWidth: implicitWidth
            Layout.maximumWidth: 150
        }
        RowLayout {
            spacing: 6
            Layout.fillWidth: true
            Layout.maximumWidth: 110
            Layout.minimumWidth: 70
            SymbolLabel {
                symbol: "speaker.wave.2"
                size: 20
            }
            ValueSlider {
                Layout.fillWidth: true
                Layout.minimumWidth: 44
                name: Strings.volumeLabel
                spokenValue: Math.round(shown) + " %"
                shown: Library.transport.volume * 100
                onAsked: percent => Library.transport.volume = percent / 100
            }
        }
        RowLayout {
            spacing: 0
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
                onClicked: Library.views.showFullPlayer = true
            }
            SizeButton {
                symbol: "arrow.down.right.and.arrow.up.left"
                tip: Strings.miniPlayer
                onClicked: App.toggleMiniPlayer()
            }
        }
    }
}
