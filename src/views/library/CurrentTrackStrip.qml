// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What plays, in one line.
Row {
    id: root

    required property bool shown
    required property real greatestWidth
    readonly property real size: 28
    readonly property real room: root.greatestWidth - 2 * (root.size + root.spacing)

    spacing: 10
    opacity: root.shown ? 1 : 0
    visible: root.opacity > 0 && root.room > 60
    Behavior on opacity {
        NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
    }

    AlbumArtwork {
        width: root.size
        height: root.size
        album: Library.player.currentArtworkAlbum
        shown: Library.player.hasCurrentArtworkAlbum
        radius: Theme.radiusSmall - 2
    }
    Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gapSmall

        PlainText {
            id: title
            width: Math.min(implicitWidth, root.room)
            text: Library.player.currentTrack.title
            font: Theme.labelStrong
        }
        PlainText {
            width: Math.min(implicitWidth, root.room - title.width - parent.spacing)
            visible: width > 30
            text: Library.player.currentTrack.artist
            font: Theme.label
            color: Theme.secondaryText
        }
    }
    PlayButton {
        size: root.size
        symbolSize: 18
        discColor: Theme.accent
    }
}
