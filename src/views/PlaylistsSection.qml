// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The user's playlists, with what makes, renames and deletes them.
Column {
    id: root

    Item {
        width: parent.width
        height: 30
        SidebarHeader {
            anchors.verticalCenter: parent.verticalCenter
            text: Strings.playlistsSection
        }
        SymbolButton {
            anchors.right: parent.right
            anchors.rightMargin: 6
            anchors.verticalCenter: parent.verticalCenter
            symbol: "plus"
            tip: Strings.newPlaylist
            size: 24
            symbolSize: 18
            onClicked: newPrompt.ask("")
        }
    }
    Repeater {
        id: rows
        model: Library.playlists
        SidebarRow {
            id: row

            required property var playlistId
            required property string name
            required property int trackCount

            width: root.width
            symbol: "music.note.list"
            text: row.name
            badge: row.trackCount
            isSelected: Library.selectedPlaylistName.length > 0 && Library.selectedPlaylistID === row.playlistId
            onClicked: Library.selectedPlaylistID = row.playlistId
            Keys.onPressed: event => {
                if (event.key === Qt.Key_Menu)
                    row.openMenu(20, row.height)
                else if (event.key === Qt.Key_Delete)
                    Library.deletePlaylist(row.playlistId)
                else if (event.key === Qt.Key_F2)
                    renamePrompt.askFor(row.playlistId, row.name)
            }

            function openMenu(x: real, y: real): void {
                menu.playlistId = row.playlistId
                menu.name = row.name
                menu.popup(row, x, y)
            }

            TapHandler {
                acceptedButtons: Qt.RightButton
                onTapped: point => row.openMenu(point.position.x, point.position.y)
            }
            DropArea {
                anchors.fill: parent
                keys: ["halvane/tracks"]
                onDropped: drop => {
                    Library.addTrackPaths(drop.source.paths, row.playlistId)
                    drop.accept()
                }
                Rectangle {
                    anchors.fill: parent
                    radius: Theme.radiusSmall
                    color: "transparent"
                    border.width: 2
                    border.color: Theme.accent
                    visible: parent.containsDrag
                }
            }
        }
    }
    ContextMenu {
        id: menu

        property var playlistId
        property string name

        MenuEntry {
            text: Strings.playAll
            symbol: "play.fill"
            onTriggered: Library.playPlaylist(menu.playlistId)
        }
        MenuEntry {
            text: Strings.renameCommand
            symbol: "pencil"
            onTriggered: renamePrompt.askFor(menu.playlistId, menu.name)
        }
        MenuEntry {
            text: Strings.deleteCommand
            symbol: "trash"
            isDestructive: true
            onTriggered: Library.deletePlaylist(menu.playlistId)
        }
    }
    Alert {
        id: newPrompt
        title: Strings.newPlaylist
        placeholder: Strings.playlistNamePlaceholder
        acceptText: Strings.done
        onAccepted: text => Library.createPlaylist(text)
    }
    Alert {
        id: renamePrompt

        property var playlistId

        function askFor(id: var, name: string): void {
            renamePrompt.playlistId = id
            renamePrompt.ask(name)
        }

        title: Strings.renameCommand
        placeholder: Strings.playlistNamePlaceholder
        acceptText: Strings.done
        onAccepted: text => Library.renamePlaylist(renamePrompt.playlistId, text)
    }
}
