// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Halvane

// The whole window for what is playing: the record in its ring of light, the track, the controls.
FocusScope {
    id: root

    // Texts and controls grow with a large window. The record takes what they leave, in every shape
    // of window, and both stand together in the middle of it.
    readonly property real magnification: Math.max(1, Math.min(width / 1360, height / 960, 1.75))
    readonly property real below: controls.height * magnification
    readonly property real ringShare: 1.32
    readonly property real around: 104 // the least that is left free above and below, before it is magnified
    readonly property real vinylSize: Math.round(Math.max(120, Math.min((height - below - around * magnification) / ringShare, width * 0.64, 1200)))
    readonly property real spare: height - below - vinylSize * ringShare
    readonly property real gap: Math.min(spare * 0.22, 64 * magnification)
    readonly property real sideMargin: 40
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

    // One clock for everything that moves here, so that it costs one redraw a tick. The light alone
    // moves too slowly to need every tick, and not at all under the software renderer, for which
    // each redraw costs more.
    RedrawClock {
        objectName: "redrawClock"
        running: root.isShown && (Library.transport.isPlaying || !Renderer.isSoftware)
        interval: Renderer.isSoftware ? 50 : Library.transport.isPlaying ? 34 : 68
        onTicked: seconds => {
            if (!Renderer.isSoftware)
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
        y: x
        symbol: "xmark"
        tip: Strings.backToMainWindow
        size: 30
        symbolSize: 16
        symbolColor: Theme.primaryText
        fill: Theme.badgeFillStrong
        onClicked: Library.views.showFullPlayer = false
    }
    VinylArtwork {
        id: vinyl
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round((root.spare - root.gap) / 2)
        width: root.vinylSize * root.ringShare
        height: width
        discSize: root.vinylSize
    }
    Column {
        id: controls
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round(vinyl.y + vinyl.height + root.gap)
        width: Math.min((root.width - 2 * root.sideMargin) / root.magnification, 720)
        transformOrigin: Item.Top
        scale: root.magnification
        spacing: 6

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: signal.implicitWidth + height
            height: 24
            radius: height / 2
            color: Theme.badgeFillStrong
            Row {
                id: signal
                anchors.centerIn: parent
                spacing: controls.spacing
                SymbolLabel {
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "waveform.path.ecg"
                    size: 15
                    color: Library.appearance.spectrumTint
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: Library.player.hasCurrentTrack ? Library.signalPath.signalPathDescription : Strings.notPlaying
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
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.title : Strings.notPlaying
            font: Theme.displayTitle
        }
        LinkLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            maximumWidth: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.artist : ""
            font: Theme.emphasis
            tip: Strings.viewArtist
            onClicked: Library.browsing.jumpToArtist(Library.player.currentTrack.artist)
        }
        LinkLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            maximumWidth: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.album : ""
            font: Theme.body
            color: Theme.tertiaryText
            tip: Strings.viewAlbum
            onClicked: Library.browsing.jumpToAlbum(Library.player.currentTrack)
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
            topPadding: Theme.gapTiny
            spacing: Theme.gap
            SymbolLabel {
                id: quiet
                anchors.verticalCenter: parent.verticalCenter
                symbol: "speaker.fill"
                size: 18
            }
            ValueSlider {
                width: 150
                name: Strings.volumeLabel
                spokenValue: Math.round(shown) + " %"
                shown: Library.transport.volume * 100
                onAsked: percent => Library.transport.volume = percent / 100
            }
            SymbolLabel {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "speaker.wave.3.fill"
                size: quiet.size
            }
        }
    }
}
