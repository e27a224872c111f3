// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The current track at the player bar's left. Its cover leads to the track in the library.
Item {
    id: root

    PressableBase {
        id: cover
        anchors.verticalCenter: parent.verticalCenter
        width: 52
        height: 52
        enabled: Library.hasCurrentTrack
        tip: Strings.viewAlbum
        onClicked: {
            Browsing.showsAlbumTracks = true
            Library.jumpToAlbum(Library.currentTrack.id)
            Browsing.revealAsked()
        }
        contentItem: AlbumArtwork {
            album: Library.currentArtworkAlbum
            shown: Library.hasCurrentArtworkAlbum
            radius: Theme.radiusSmall
        }
        background: Item {
            FocusRing { shown: cover.visualFocus }
        }
    }
    Column {
        anchors.left: cover.right
        anchors.leftMargin: 12
        anchors.right: heart.left
        anchors.rightMargin: Theme.gapSmall
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3
        PlainText {
            width: parent.width
            text: Library.hasCurrentTrack ? Library.currentTrack.title : Strings.notPlaying
            font: Theme.name
        }
        PlainText {
            width: parent.width
            visible: text.length > 0
            text: Library.hasCurrentTrack ? Library.currentTrack.artist : ""
            font: Theme.label
            color: Theme.secondaryText
        }
    }
    TransportButton {
        id: heart
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        enabled: Library.hasCurrentTrack
        symbol: Library.isCurrentTrackLoved ? "heart.fill" : "heart"
        tip: Strings.loved
        isActive: Library.isCurrentTrackLoved
        Accessible.checkable: true
        Accessible.checked: Library.isCurrentTrackLoved
        onClicked: Library.toggleLoved(Library.currentTrack.path)
    }
}
