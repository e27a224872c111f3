// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One artist of the grid.
Operable {
    id: root

    required property int index
    required property string name
    required property string summary
    readonly property string shownName: root.name.length > 0 ? root.name : Strings.unknownArtist
    required property string coverKey
    property bool isSelected
    property bool hasKeyboard
    property bool showsRing
    readonly property real textLeft: cover.x + cover.width + Theme.gap
    readonly property real textWidth: width - textLeft - Theme.gap - (disc.isOffered ? disc.width + Theme.gapSmall : 0)

    signal chosen
    signal played
    signal focusTaken

    implicitHeight: Theme.artistTileHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: root.shownName
    Accessible.description: root.summary
    Accessible.selectable: true
    Accessible.selected: root.isSelected
    Accessible.focusable: true
    Accessible.focused: root.hasKeyboard
    onPressAsked: root.chosen()
    onFocusAsked: root.focusTaken()

    Rectangle {
        id: surface
        anchors.fill: parent
        radius: Theme.radiusMedium
        color: root.isSelected ? Theme.selectionFill : hover.hovered ? Theme.pressWash : Theme.hoverWash
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
    PlayDisc {
        id: disc
        anchors.right: parent.right
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        size: Theme.controlHeight
        tip: Strings.playAll
        isOffered: root.isSelected || hover.hovered
        activeFocusOnTab: root.isSelected
        onClicked: root.played()
    }
    FocusRing {
        shown: root.showsRing
        around: 2
        corner: surface.radius
    }
    HoverHandler { id: hover }
    TapHandler {
        onSingleTapped: root.chosen()
        onDoubleTapped: root.played()
    }
}
