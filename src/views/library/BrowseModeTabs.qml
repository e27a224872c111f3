// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// Albums, tracks or artists. The arrow keys go from one to the next.
Row {
    id: root

    spacing: 6
    Accessible.role: Accessible.PageTabList
    Accessible.name: Strings.browse

    Repeater {
        model: [BrowseMode.Albums, BrowseMode.Songs, BrowseMode.Artists]
        PressableBase {
            id: tab

            required property int modelData
            required property int index
            readonly property bool isCurrent: Library.browsing.selectedPlaylistName.length === 0 && Library.browsing.mode === tab.modelData

            implicitWidth: label.implicitWidth + 2 * Theme.tabInset
            implicitHeight: 27
            text: [Strings.albums, Strings.tracks, Strings.artists][tab.index]
            Accessible.role: Accessible.PageTab
            Accessible.selectable: true
            Accessible.selected: tab.isCurrent
            Keys.onLeftPressed: tab.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            Keys.onRightPressed: tab.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            onClicked: Library.browsing.selectBrowseMode(tab.modelData)

            contentItem: Text {
                id: label
                text: tab.text
                font: Theme.name
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                color: tab.isCurrent ? Theme.accent : tab.hovered ? Theme.primaryText : Theme.secondaryText
                Accessible.ignored: true
            }
            background: Rectangle {
                radius: Theme.radiusSmall
                color: tab.isCurrent ? Theme.selectionFill : tab.hovered ? Theme.hoverWash : "transparent"
                FocusRing { shown: tab.visualFocus; around: 2 }
            }
        }
    }
}
