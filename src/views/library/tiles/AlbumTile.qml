// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One album of the grid.
LibraryTile {
    id: root

    required property string albumId
    required property string title
    required property string artist
    required property string quality
    required property string coverKey
    required property var colors

    implicitHeight: width + Theme.albumTileWords
    Accessible.name: Spoken.titled(root.title, root.artist)
    Accessible.description: root.isPlaying ? Strings.nowPlaying + ", " + root.quality : root.quality

    CoverArt {
        id: cover
        width: parent.width
        height: width
        coverKey: root.coverKey
        colors: root.colors
        radius: Theme.radiusLarge
        symbol: "music.note"

        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusLarge
            color: Theme.hoverWash
            visible: root.isPointedAt
        }
        Loader {
            anchors.left: parent.left
            anchors.bottom: parent.bottom
            anchors.margins: Theme.rowInset
            active: root.isPlaying
            sourceComponent: PlayingMark {}
        }
        PlayDisc {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: Theme.rowInset
            tip: Strings.playAlbum
            isOffered: root.isSelected || root.isPointedAt
            activeFocusOnTab: root.isSelected
            onClicked: root.played()
        }
        FocusRing {
            shown: root.isSelected
            around: 4
            corner: Theme.radiusLarge
        }
        FocusRing {
            shown: root.showsRing
            around: root.isSelected ? 8 : 4
            corner: Theme.radiusLarge
        }
    }
    PlainText {
        y: cover.height + 9
        width: parent.width
        text: root.title
        font: Theme.name
        Accessible.ignored: true
    }
    PlainText {
        y: cover.height + 26
        width: parent.width
        text: root.artist
        font: Theme.label
        color: Theme.secondaryText
        Accessible.ignored: true
    }
    PlainText {
        y: cover.height + 42
        width: parent.width
        text: root.quality
        font: Theme.caption
        color: Theme.tertiaryText
        Accessible.ignored: true
    }
}
