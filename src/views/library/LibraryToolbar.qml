// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Halvane

// Where we are, the search field, and the library's buttons.
RowLayout {
    id: root

    readonly property string place: Library.browsing.selectedPlaylistName.length > 0
        ? Library.browsing.selectedPlaylistName
        : Library.browsing.selectedSidebar === SidebarPlace.LiveList ? Library.browsing.selectedLiveListName
        : Strings.sentences.placeName(Library.browsing.selectedSidebar)

    readonly property real besideTitle: 290 // the search field at its narrowest, and the buttons

    spacing: 10

    component ToolButton: SymbolButton {
        corner: Theme.radiusSmall
        fill: Theme.controlBackground
        outline: Theme.hairline
    }

    Column {
        // Where there is little room, the search field gives way first.
        Layout.fillWidth: true
        Layout.minimumWidth: Math.min(Math.max(80, root.width - root.besideTitle), Math.ceil(Math.max(title.implicitWidth, summary.implicitWidth)))
        spacing: 2
        PlainText {
            id: title
            width: parent.width
            text: root.place
            font: Theme.pageTitle
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        PlainText {
            id: summary
            width: parent.width
            text: Library.librarySummary
            font: Theme.label
            color: Theme.tertiaryText
        }
    }
    SearchField {
        Layout.fillWidth: true
        Layout.minimumWidth: 120
        Layout.maximumWidth: 270
        Layout.preferredWidth: Layout.maximumWidth
    }
    ToolButton {
        symbol: "folder.badge.plus"
        tip: Strings.importMusicFolder
        keys: App.keysOf(CommandKind.ImportMusicFolder)
        onClicked: Library.importing.chooseAndImportMusic(false, true)
    }
    ToolButton {
        id: wand

        readonly property int count: Library.tidying.maintenanceActionCount

        symbol: "wand.and.sparkles"
        tip: wand.count < 1 ? Strings.libraryMaintenance : Strings.sentences.maintenanceBadge(wand.count)
        onClicked: Library.views.showMaintenance = true

        CountBadge {
            anchors.horizontalCenter: parent.right
            anchors.horizontalCenterOffset: -4
            y: -5
            visible: wand.count > 0
            text: wand.count
            fill: Theme.warmAccent
            textColor: Theme.onAccent
        }
    }
    ToolButton {
        symbol: "sidebar.right"
        tip: Strings.toggleNowPlayingPanel
        keys: App.keysOf(CommandKind.ToggleNowPlayingPanel)
        symbolColor: Library.views.showNowPlayingPanel ? Theme.accent : Theme.secondaryText
        Accessible.checkable: true
        Accessible.checked: Library.views.showNowPlayingPanel
        onClicked: Library.views.showNowPlayingPanel = !Library.views.showNowPlayingPanel
    }
}
