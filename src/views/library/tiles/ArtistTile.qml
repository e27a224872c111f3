// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One artist of the grid.
LibraryTile {
    id: root

    required property string name
    required property string summary
    required property string coverKey
    readonly property string shownName: root.name.length > 0 ? root.name : Strings.unknownArtist
    readonly property real textLeft: cover.x + cover.width + Theme.gap
    readonly property real textWidth: width - textLeft - Theme.gap
                                      - (disc.isOffered || root.isPlaying ? disc.width + Theme.gapSmall : 0)

    implicitHeight: Theme.artistTileHeight
    Accessible.name: root.shownName
    Accessible.description: root.isPlaying ? Strings.nowPlaying + ", " + root.summary : root.summary

    Rectangle {
        id: surface
        anchors.fill: parent
        radius: Theme.radiusMedium
        color: root.isSelected ? Theme.selectionFill : root.isPointedAt ? Theme.pressWash : Theme.hoverWash
    }
    CoverArt {
        id: cover
        x: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        width: 50
        height: width
        coverKey: root.coverKey
        radius: width / 2
        symbol: "person.fill"
    }
    PlainText {
        x: root.textLeft
        width: root.textWidth
        height: parent.height - 17
        text: root.shownName
        font: Theme.name
        color: root.isSelected ? Theme.accent : Theme.primaryText
        Accessible.ignored: true
    }
    PlainText {
        x: root.textLeft
        y: 19
        width: root.textWidth
        height: parent.height - y
        text: root.summary
        font: Theme.caption
        color: Theme.tertiaryText
        Accessible.ignored: true
    }
    Loader {
        anchors.centerIn: disc
        active: root.isPlaying
        visible: !disc.isOffered
        sourceComponent: PlayingMark { color: "transparent" }
    }
    PlayDisc {
        id: disc
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        size: Theme.controlHeight
        tip: Strings.playAll
        isOffered: root.isSelected || root.isPointedAt
        activeFocusOnTab: root.isSelected
        onClicked: root.played()
    }
    FocusRing {
        shown: root.showsRing
        around: 2
        corner: surface.radius
    }
}
