// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The user's playlists, with what makes, renames and deletes them.
Column {
    id: root

    function askToRename(id: var, name: string): void {
        renamePrompt.playlistId = id
        const prompt = renamePrompt.made() as Alert
        prompt.ask(name)
    }
    function askForNew(paths: var): void {
        newPrompt.paths = paths
        const prompt = newPrompt.made() as Alert
        prompt.ask("")
    }

    Connections {
        target: Browsing
        function onPlaylistAsked(paths) { root.askForNew(paths) }
    }
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
            onClicked: root.askForNew([])
        }
    }
    Repeater {
        id: rows
        model: Library.playlists
        ListRow {
            id: row

            required property var playlistId
            required property string name
            required property int trackCount

            width: root.width
            symbol: "music.note.list"
            text: row.name
            badge: row.trackCount
            isSelected: Library.browsing.selectedPlaylistName.length > 0 && Library.browsing.selectedPlaylistID === row.playlistId
            onClicked: Library.browsing.selectedPlaylistID = row.playlistId
            onMenuAsked: (x, y) => {
                rowMenu.playlistId = row.playlistId
                rowMenu.name = row.name
                const entries = rowMenu.made() as ContextMenu
                entries.popup(row, x, y)
            }
            onChangeAsked: root.askToRename(row.playlistId, row.name)
            onDeleteAsked: deletePrompt.ask(row.playlistId, row.name)

            DropArea {
                anchors.fill: parent
                keys: ["halvane/tracks"]
                onDropped: drop => {
                    const drag = drop.source as TrackDrag
                    Library.playlists.addTrackPaths(drag.paths, row.playlistId)
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
    Deferred {
        id: rowMenu

        property var playlistId
        property string name

        ContextMenu {
            MenuEntry {
                text: Strings.playAll
                symbol: "play.fill"
                onTriggered: Library.collections.playPlaylist(rowMenu.playlistId)
            }
            MenuEntry {
                text: Strings.playNextCommand
                symbol: "text.insert"
                onTriggered: Library.queueEditing.playPlaylistNext(rowMenu.playlistId)
            }
            MenuEntry {
                text: Strings.addToQueue
                symbol: "music.note.list"
                onTriggered: Library.queueEditing.addPlaylistToQueue(rowMenu.playlistId)
            }
            MenuLine {}
            MenuEntry {
                text: Strings.renameCommand
                symbol: "pencil"
                onTriggered: root.askToRename(rowMenu.playlistId, rowMenu.name)
            }
            MenuEntry {
                text: Strings.exportCommand
                symbol: "square.and.arrow.up"
                onTriggered: Library.playlistExport.exportPlaylist(rowMenu.playlistId)
            }
            MenuEntry {
                text: Strings.deleteCommand
                symbol: "trash"
                isDestructive: true
                onTriggered: Library.playlists.deletePlaylist(rowMenu.playlistId)
            }
        }
    }
    Deferred {
        id: newPrompt

        property list<string> paths

        Alert {
            title: Strings.sentences.dialogTitle(Strings.newPlaylist)
            placeholder: Strings.playlistNamePlaceholder
            acceptText: Strings.done
            onVisibleChanged: Browsing.isNaming = visible
            onAccepted: text => Library.playlists.addTrackPaths(newPrompt.paths, Library.playlists.createPlaylist(text))
        }
    }
    DeletePrompt {
        id: deletePrompt
        onConfirmed: id => Library.playlists.deletePlaylist(id)
    }
    Deferred {
        id: renamePrompt

        property var playlistId

        Alert {
            title: Strings.sentences.dialogTitle(Strings.renameCommand)
            placeholder: Strings.playlistNamePlaceholder
            acceptText: Strings.done
            onAccepted: text => Library.playlists.renamePlaylist(renamePrompt.playlistId, text)
        }
    }
}
