// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The live lists that the user has made, with what makes, changes and deletes them.
Column {
    id: root

    // One key must not take a list that a hand has made.
    function askToDelete(id: var, name: string): void {
        deletePrompt.listId = id
        const prompt = deletePrompt.made() as Alert
        prompt.title = Strings.deleteCommand + " “" + name + "”"
        prompt.ask("")
    }

    Connections {
        target: Library.views
        function onLiveListAsked(list) {
            const questions = editor.made() as LiveListEditor
            questions.ask(list)
        }
    }
    Repeater {
        model: Library.liveLists
        SidebarRow {
            id: row

            required property var listId
            required property string name

            function openMenu(x: real, y: real): void {
                rowMenu.listId = row.listId
                rowMenu.name = row.name
                const entries = rowMenu.made() as ContextMenu
                entries.popup(row, x, y)
            }

            width: root.width
            symbol: "text.magnifyingglass"
            text: row.name
            badge: ""
            isSelected: Library.browsing.selectedPlaylistName.length === 0
                        && Library.browsing.selectedSidebar === SidebarPlace.LiveList
                        && Library.browsing.selectedLiveListID === row.listId
            onClicked: Library.browsing.selectLiveList(row.listId)
            onMenuAskedFor: row.openMenu(20, row.height)
            Keys.onPressed: event => {
                if (event.key === Qt.Key_Menu)
                    row.openMenu(20, row.height)
                else if (event.key === Qt.Key_Delete)
                    root.askToDelete(row.listId, row.name)
                else if (event.key === Qt.Key_F2)
                    Library.views.editLiveList(Library.liveLists.list(row.listId))
            }

            TapHandler {
                acceptedButtons: Qt.RightButton
                onTapped: point => row.openMenu(point.position.x, point.position.y)
            }
        }
    }
    Deferred {
        id: rowMenu

        property var listId
        property string name

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
    Deferred {
        id: deletePrompt

        property var listId

        Alert {
            title: ""
            acceptText: Strings.deleteCommand
            isDestructive: true
            onAccepted: Library.liveLists.remove(deletePrompt.listId)
        }
    }
}
