// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The middle of the record.
Item {
    id: root

    AlbumArtwork {
        anchors.fill: parent
        album: Library.player.currentArtworkAlbum
        shown: Library.player.hasCurrentArtworkAlbum
        radius: width / 2
    }
    Rectangle {
        anchors.centerIn: parent
        width: Math.max(8, root.width * 0.1)
        height: width
        radius: width / 2
        color: "#0a0b0c"
    }
}
