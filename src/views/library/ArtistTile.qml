// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One artist of the grid.
Rectangle {
    id: root

    required property int index
    required property string name
    required property string summary
    readonly property string shownName: root.name.length > 0 ? root.name : Strings.unknownArtist
    required property string coverKey
    property bool isSelected
    property bool hasKeyboard

    signal chosen
    signal played

    radius: Theme.radiusMedium
    color: root.isSelected ? Theme.selectionFill : hover.hovered ? Theme.pressWash : Theme.hoverWash
    Accessible.role: Accessible.ListItem
    Accessible.name: root.shownName
    Accessible.description: root.summary
    Accessible.selectable: true
    Accessible.selected: root.isSelected
    Accessible.focusable: true
    Accessible.focused: root.hasKeyboard
    Accessible.onPressAction: root.chosen()

    CoverArt {
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        width: 50
        height: 50
        coverKey: root.coverKey
        radius: 25
        symbol: "person.fill"
    }
    PlainText {
        x: 74
        width: parent.width - 74 - 12
        height: parent.height - 17
        text: root.shownName
        font: Theme.name
        color: root.isSelected ? Theme.accent : Theme.primaryText
        Accessible.ignored: true
    }
    PlainText {
        x: 74
        y: 19
        width: parent.width - 74 - 12
        height: parent.height - 19
        text: root.summary
        font: Theme.caption
        color: Theme.tertiaryText
        Accessible.ignored: true
    }
    FocusRing {
        shown: root.hasKeyboard
        around: 2
        corner: root.radius
    }
    HoverHandler { id: hover }
    TapHandler {
        onSingleTapped: root.chosen()
        onDoubleTapped: root.played()
    }
}
