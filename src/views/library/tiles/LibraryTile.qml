// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What the tiles of the grids share: a click, a double click, the menu, and a drag onto a playlist.
Operable {
    id: root

    required property int index
    property bool isSelected
    property bool isPlaying
    property bool hasMenu // open
    property bool hasKeyboard
    property bool showsRing
    readonly property bool isPointedAt: hover.hovered || root.hasMenu

    signal chosen
    signal played
    signal focusTaken
    signal menuAsked(real x, real y)
    // What is to be carried?
    signal carried(TrackDrag drag)

    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: root.isSelected
    Accessible.focusable: true
    Accessible.focused: root.hasKeyboard
    onPressAsked: root.chosen()
    onFocusAsked: root.focusTaken()
    onMenuAskedFor: root.menuAsked(Theme.gapLarge, Theme.gapLarge)

    HoverHandler { id: hover }
    TapHandler {
        onSingleTapped: root.chosen()
        onDoubleTapped: root.played()
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => root.menuAsked(point.position.x, point.position.y)
    }
    TrackDrag {
        id: drag
        onBegun: root.carried(drag)
    }
}
