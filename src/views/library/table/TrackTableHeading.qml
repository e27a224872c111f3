// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Above the track table: how many tracks it shows, what needs attention, and the way back to all.
Item {
    id: root

    required property bool isNarrowed
    required property int rowCount
    required property int selectedCount

    implicitHeight: 34

    Row {
        x: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gapLarge
        Text {
            text: root.selectedCount > 1 ? Strings.sentences.selectedCount(root.selectedCount)
                                         : Strings.sentences.visibleCount(root.rowCount)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.labelStrong
            color: Theme.secondaryText
        }
        Text {
            visible: Library.tidying.maintenanceActionCount >= 1
            text: Strings.sentences.maintenanceBadge(Library.tidying.maintenanceActionCount)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.label
            color: Theme.warmAccent
        }
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gapSmall
        PillButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isNarrowed
            isQuiet: true
            text: Strings.showAllTracks
            onClicked: {
                Browsing.showsAlbumTracks = false
                Library.browsing.selectBrowseMode(BrowseMode.Songs)
            }
        }
    }
}
