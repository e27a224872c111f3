// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What is playing, large.
Rectangle {
    id: root

    implicitHeight: 150
    radius: Theme.radiusLarge
    border.color: Theme.hairline
    gradient: Gradient {
        orientation: Gradient.Horizontal
        GradientStop { position: 0; color: Theme.tinted(Library.ambient.ambientColor, 0.26) }
        GradientStop { position: 0.62; color: Theme.tinted(Library.ambient.ambientColor, 0.02) }
    }

    AlbumArtwork {
        id: cover
        x: Theme.gapLarge
        anchors.verticalCenter: parent.verticalCenter
        width: 112
        height: width
        album: Library.player.currentArtworkAlbum
        shown: Library.player.hasCurrentArtworkAlbum
        radius: Theme.radiusMedium
    }
    Column {
        id: words
        anchors.left: cover.right
        anchors.leftMargin: 18
        anchors.right: playButton.left
        anchors.rightMargin: Theme.gapLarge
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        PlainText {
            width: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.title : Strings.notPlaying
            font: Theme.heroTitle
        }
        LinkLabel {
            maximumWidth: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.artist : ""
            font: Theme.body
            tip: Strings.viewArtist
            onClicked: Library.browsing.jumpToArtist(Library.player.currentTrack.artist)
        }
        LinkLabel {
            maximumWidth: parent.width
            text: Library.player.hasCurrentTrack ? Library.player.currentTrack.album : ""
            font: Theme.label
            color: Theme.tertiaryText
            tip: Strings.viewAlbum
            onClicked: Library.browsing.jumpToAlbum(Library.player.currentTrack)
        }
        Item { width: 1; height: Theme.gapSmall }
        Row {
            spacing: Theme.gapSmall
            visible: Library.player.hasCurrentArtworkAlbum
            MetricPill {
                visible: Library.player.currentArtworkAlbum.year >= 1
                caption: Strings.year
                value: Library.player.currentArtworkAlbum.year
            }
            MetricPill {
                visible: words.width > 160
                caption: Strings.tracks
                value: Library.player.currentArtworkAlbum.trackCount
            }
            MetricPill {
                visible: words.width > 240 && Library.player.currentArtworkAlbum.totalSeconds > 0
                caption: Strings.totalTime
                value: Strings.sentences.albumLength(Library.player.currentArtworkAlbum.totalSeconds)
            }
        }
    }
    PlayButton {
        id: playButton
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        size: 54
        symbolSize: 28
        discColor: Theme.accent
    }
}
