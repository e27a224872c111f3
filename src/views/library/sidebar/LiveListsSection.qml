// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The live lists that the user has made, with what makes, changes and deletes them.
Column {
    id: root

    Connections {
        target: Library.views
        function onLiveListAsked(list) {
            const questions = editor.made() as LiveListEditor
            questions.ask(list)
        }
    }
    Repeater {
        model: Library.liveLists
        ListRow {
            id: row

            required property var listId
            required property string name

            width: root.width
            symbol: "text.magnifyingglass"
            text: row.name
            badge: ""
            isSelected: Library.browsing.selectedPlaylistName.length === 0
                        && Library.browsing.selectedSidebar === SidebarPlace.LiveList
                        && Library.browsing.selectedLiveListID === row.listId
            onClicked: Library.browsing.selectLiveList(row.listId)
            onMenuAsked: (x, y) => {
                rowMenu.listId = row.listId
                const entries = rowMenu.made() as ContextMenu
                entries.popup(row, x, y)
            }
            onChangeAsked: Library.views.editLiveList(Library.liveLists.list(row.listId))
            onDeleteAsked: deletePrompt.ask(row.listId, row.name)
        }
    }
    Deferred {
        id: rowMenu

        property var listId

        ContextMenu {
            MenuEntry {
                text: Strings.playAll
                symbol: "play.fill"
                onTriggered: Library.collections.playLiveList(rowMenu.listId)
            }
            MenuEntry {
                text: Strings.playNextCommand
                symbol: "text.insert"
                onTriggered: Library.queueEditing.playLiveListNext(rowMenu.listId)
            }
            MenuEntry {
                text: Strings.addToQueue
                symbol: "music.note.list"
                onTriggered: Library.queueEditing.addLiveListToQueue(rowMenu.listId)
            }
            MenuLine {}
            MenuEntry {
                text: Strings.editLiveList
                symbol: "pencil"
                onTriggered: Library.views.editLiveList(Library.liveLists.list(rowMenu.listId))
            }
            MenuEntry {
                text: Strings.deleteCommand
                symbol: "trash"
                isDestructive: true
                onTriggered: Library.liveLists.remove(rowMenu.listId)
            }
        }
    }
    Deferred {
        id: editor
        LiveListEditor {}
    }
    DeletePrompt {
        id: deletePrompt
        onConfirmed: id => Library.liveLists.remove(id)
    }
}
