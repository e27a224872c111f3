// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One album of the grid.
Operable {
    id: root

    required property int index
    required property string albumId
    required property string title
    required property string artist
    required property string quality
    required property string coverKey
    required property var colors
    property bool isSelected
    property bool hasKeyboard
    property bool showsRing

    signal chosen
    signal played
    signal focusTaken

    implicitHeight: width + Theme.albumTileWords
    Accessible.role: Accessible.ListItem
    Accessible.name: Spoken.titled(root.title, root.artist)
    Accessible.description: root.quality
    Accessible.selectable: true
    Accessible.selected: root.isSelected
    Accessible.focusable: true
    Accessible.focused: root.hasKeyboard
    onPressAsked: root.chosen()
    onFocusAsked: root.focusTaken()

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
            visible: hover.hovered
        }
        PlayDisc {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: Theme.rowInset
            tip: Strings.playAlbum
            isOffered: root.isSelected || hover.hovered
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
    HoverHandler { id: hover }
    TapHandler {
        onSingleTapped: root.chosen()
        onDoubleTapped: root.played()
    }
}
