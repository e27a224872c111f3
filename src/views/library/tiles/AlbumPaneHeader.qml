// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Above the tracks of the album whose pane is open: which album it is, and what can be done with
// it. In a narrow pane the buttons are symbols, and the count stands among the facts.
Item {
    id: root

    required property int rowCount
    required property int selectedCount
    readonly property var album: Library.browsing.focusedAlbum // an Album, which is no type of QML's
    readonly property bool isNarrow: width < 520
    readonly property bool isKnownArtist: root.album.artist !== Strings.unknownArtist
    readonly property string facts: [
        root.album.year >= 1 ? String(root.album.year) : "",
        root.isNarrow ? count.text : Strings.sentences.trackCount(root.album.trackCount),
        root.album.totalSeconds > 0 ? Strings.sentences.albumLength(root.album.totalSeconds) : "",
        root.album.quality
    ].filter(fact => fact.length > 0).join(" · ")

    implicitHeight: 13 + cover.height + Theme.gapSmall

    AlbumArtwork {
        id: cover
        x: Theme.rowInset
        y: 13
        width: 72
        height: width
        album: root.album
        shown: Library.browsing.hasFocusedAlbum
        radius: Theme.radiusMedium
    }
    Column {
        id: words
        anchors.left: cover.right
        anchors.leftMargin: Theme.gapLarge
        anchors.right: actions.left
        anchors.rightMargin: Theme.gapLarge
        anchors.verticalCenter: cover.verticalCenter
        spacing: 3

        PlainText {
            width: parent.width
            text: root.album.title
            font: Theme.cardTitle
            Accessible.role: Accessible.Heading
        }
        LinkLabel {
            maximumWidth: parent.width
            visible: root.isKnownArtist
            text: root.album.artist
            font: Theme.body
            tip: Strings.viewArtist
            onClicked: Library.browsing.jumpToArtist(root.album.artist)
        }
        PlainText {
            width: parent.width
            visible: !root.isKnownArtist
            text: root.album.artist
            font: Theme.body
            color: Theme.secondaryText
        }
        PlainText {
            width: parent.width
            text: root.facts
            font: Theme.label
            color: Theme.tertiaryText
        }
    }
    Column {
        id: actions
        anchors.right: parent.right
        anchors.rightMargin: Theme.rowInset
        anchors.verticalCenter: cover.verticalCenter
        spacing: Theme.gapSmall

        Row {
            anchors.right: parent.right
            spacing: Theme.gapSmall
            PillButton {
                height: 32
                visible: !root.isNarrow
                isPrimary: true
                symbol: "play.fill"
                text: Strings.play
                tip: Strings.playAlbum
                onClicked: Library.collections.playAlbum(root.album.id)
            }
            PillButton {
                height: 32
                visible: !root.isNarrow
                symbol: "shuffle"
                text: Strings.shuffleLabel
                onClicked: Library.collections.shuffleAlbum(root.album.id)
            }
            SymbolButton {
                visible: root.isNarrow
                size: 32
                symbolSize: 18
                symbol: "play.fill"
                tip: Strings.playAlbum
                fill: Theme.accent
                symbolColor: Theme.onAccent
                onClicked: Library.collections.playAlbum(root.album.id)
            }
            SymbolButton {
                visible: root.isNarrow
                size: 32
                symbolSize: 18
                symbol: "shuffle"
                tip: Strings.shuffleLabel
                fill: Theme.panelRaised
                onClicked: Library.collections.shuffleAlbum(root.album.id)
            }
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.gap
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.width > 700 && Library.tidying.maintenanceActionCount >= 1
                text: Strings.sentences.maintenanceBadge(Library.tidying.maintenanceActionCount)
                font: Theme.label
                color: Theme.warmAccent
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Text {
                id: count
                anchors.verticalCenter: parent.verticalCenter
                visible: !root.isNarrow
                text: root.selectedCount > 1 ? Strings.sentences.selectedCount(root.selectedCount)
                                             : Strings.sentences.visibleCount(root.rowCount)
                font: Theme.labelStrong
                color: Theme.secondaryText
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            PillButton {
                isQuiet: true
                text: Strings.showAllTracks
                onClicked: {
                    Browsing.showsAlbumTracks = false
                    Library.browsing.selectBrowseMode(BrowseMode.Songs)
                }
            }
        }
    }
}
