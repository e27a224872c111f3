// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Halvane

// The whole window for what is playing: the record in its ring of light, the track, the controls.
FocusScope {
    id: root

    // The record takes what the texts and controls leave, in every shape of window.
    readonly property real below: 312
    readonly property real vinylSize: Math.round(Math.max(120, Math.min((height - below - 56) / 1.32, width * 0.6, 900)))
    readonly property bool isShown: visible && Window.window !== null && Window.window.visible
                                    && Window.window.visibility !== Window.Minimized

    focus: true
    onIsShownChanged: isShown ? Library.spectrum.beginWatching() : Library.spectrum.endWatching()
    Component.onDestruction: {
        if (isShown)
            Library.spectrum.endWatching()
    }
    Accessible.role: Accessible.Pane
    Accessible.name: Strings.fullScreenPlayer

    // One clock for everything that moves here, so that it costs one redraw a tick.
    RedrawClock {
        running: root.isShown
        onTicked: seconds => {
            aurora.advance(seconds)
            vinyl.advance(seconds)
        }
    }
    AmbientAuroraBackground {
        id: aurora
        anchors.fill: parent
    }
    WindowMover { anchors.fill: parent }

    SymbolButton {
        x: 20
        y: 20
        symbol: "xmark"
        tip: Strings.backToMainWindow
        size: 30
        symbolSize: 16
        symbolColor: Theme.primaryText
        fill: Theme.badgeFillStrong
        onClicked: Library.showFullPlayer = false
    }
    VinylArtwork {
        id: vinyl
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round((root.height - root.below - height) * 0.6)
        width: root.vinylSize * 1.32
        height: width
        discSize: root.vinylSize
    }
    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        y: root.height - root.below
        width: Math.min(root.width - 80, 720)
        spacing: 6

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: signal.implicitWidth + 24
            height: 24
            radius: 12
            color: Theme.badgeFillStrong
            Row {
                id: signal
                anchors.centerIn: parent
                spacing: 6
                SymbolLabel {
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "waveform.path.ecg"
                    size: 15
                    color: Library.spectrumTint
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: Library.hasCurrentTrack ? Library.signalPathDescription : Strings.notPlaying
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                    font: Theme.captionStrong
                    color: Theme.primaryText
                }
            }
        }
        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: Library.hasCurrentTrack ? Library.currentTrack.title : Strings.notPlaying
            font: Theme.displayTitle
        }
        LinkLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            maximumWidth: parent.width
            text: Library.hasCurrentTrack ? Library.currentTrack.artist : ""
            font: Theme.emphasis
            tip: Strings.viewArtist
            onClicked: Library.jumpToArtist(Library.currentTrack.artist)
        }
        LinkLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            maximumWidth: parent.width
            text: Library.hasCurrentTrack ? Library.currentTrack.album : ""
            font: Theme.body
            color: Theme.tertiaryText
            tip: Strings.viewAlbum
            onClicked: {
                Browsing.showsAlbumTracks = true
                Library.jumpToAlbum(Library.currentTrack.id)
            }
        }
        ProgressLine {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, 502)
            height: 34
            timeFont: Theme.label
        }
        TransportRow {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 18
            discSize: 68
            sideSize: 42
            sideSymbolSize: 32
            modeSymbolSize: 21
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: 4
            spacing: 12
            SymbolLabel {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "speaker.fill"
                size: 18
            }
            ValueSlider {
                width: 150
                name: Strings.volumeLabel
                spokenValue: Math.round(Library.volume * 100) + " %"
                value: Library.volume
                onMoved: Library.volume = value
            }
            SymbolLabel {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "speaker.wave.3.fill"
                size: 18
            }
        }
    }
}
