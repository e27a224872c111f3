// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Filters the library as the user types.
EntryField {
    id: root

    readonly property real leastWidthToSave: 160 // below, what is typed needs the room
    property int answeredRequest: Library.views.searchFocusRequest

    name: Strings.searchPlaceholder
    placeholderText: Strings.searchPlaceholder
    leftPadding: 35
    rightPadding: save.visible ? 56 : 32
    // Not only what is typed: assistive technology sets the text as a whole.
    onTextChanged: {
        if (root.text !== Library.browsing.searchText)
            Library.browsing.searchText = root.text
    }
    onActiveFocusChanged: Library.views.isSearchFieldFocused = root.activeFocus
    onAnsweredRequestChanged: {
        root.forceActiveFocus(Qt.ShortcutFocusReason)
        root.selectAll()
    }
    // Esc empties the field first, then leaves it. No button gets the focus: Space would press it.
    Keys.onEscapePressed: {
        if (root.text.length > 0)
            Library.browsing.searchText = ""
        else
            root.focus = false
    }

    Tip {
        shown: root.hovered && !root.activeFocus && root.text.length === 0
        text: Strings.helpSearchBody
    }
    Binding on text {
        value: Library.browsing.searchText
        restoreMode: Binding.RestoreNone
    }
    SymbolLabel {
        x: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
        size: 18
    }
    SymbolButton {
        id: save
        anchors.right: clear.left
        anchors.verticalCenter: parent.verticalCenter
        visible: clear.visible && root.width >= root.leastWidthToSave
        symbol: "text.magnifyingglass"
        tip: Strings.saveSearchAsLiveList
        size: 24
        symbolSize: 16
        onClicked: Library.views.newLiveList(Library.browsing.searchText)
    }
    SymbolButton {
        id: clear
        anchors.right: parent.right
        anchors.rightMargin: Theme.gapTiny
        anchors.verticalCenter: parent.verticalCenter
        visible: Library.browsing.searchText.length > 0
        symbol: "xmark.circle.fill"
        tip: Strings.clearSearch
        size: 24
        symbolSize: 16
        onClicked: {
            Library.browsing.searchText = ""
            root.forceActiveFocus()
        }
    }
}
