// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The cover of one album, or a placeholder where no album is shown.
CoverArt {
    id: root

    required property var album
    required property bool shown

    coverKey: root.shown ? root.album.coverKey : ""
    colors: root.shown ? root.album.colorList : []
    radius: Theme.radiusLarge
}
