// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Halvane

// Asks for the rule of a live list: its search, its order and how many tracks it has at most. Says
// how many it has so. Return answers, Esc gives up.
Popover {
    id: root

    property liveList draft
    readonly property bool isNew: Library.liveLists.list(root.draft.id).name.length === 0
    readonly property bool canAnswer: nameField.text.trim().length > 0

    // Beginning with this list.
    function ask(list: var): void {
        root.draft = list
        nameField.text = list.name.length > 0 ? list.name : list.search
        searchField.text = list.search
        mostField.text = list.most > 0 ? list.most : ""
        root.open()
        nameField.forceActiveFocus()
        nameField.selectAll()
    }
    function answer(): void {
        if (!root.canAnswer)
            return
        root.draft.name = nameField.text
        const id = Library.liveLists.save(root.draft)
        root.close()
        Library.browsing.searchText = ""
        Library.browsing.selectLiveList(id)
    }

    name: heading.text
    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: 440
    padding: 20
    modal: true
    closePolicy: T.Popup.CloseOnEscape
    T.Overlay.modal: Rectangle { color: Theme.scrim }

    component Label: Text {
        font: Theme.label
        color: Theme.secondaryText
        Accessible.ignored: true
    }

    contentItem: ColumnLayout {
        spacing: Theme.gap

        Text {
            id: heading
            Layout.fillWidth: true
            text: Strings.sentences.dialogTitle(root.isNew ? Strings.newLiveList : Strings.editLiveList)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.cardTitle
            color: Theme.primaryText
        }
        EntryField {
            id: nameField
            Layout.fillWidth: true
            name: Strings.liveListName
            placeholderText: Strings.liveListName
            onAccepted: root.answer()
        }
        GridLayout {
            columns: 2
            columnSpacing: Theme.gapLarge
            rowSpacing: Theme.gapSmall

            Label { text: Strings.liveListSearch }
            EntryField {
                id: searchField
                Layout.fillWidth: true
                name: Strings.liveListSearch
                placeholderText: Strings.liveListSearchExample
                onTextChanged: root.draft.search = text
                onAccepted: root.answer()
                Tip {
                    shown: searchField.hovered && !searchField.activeFocus
                    text: Strings.helpSearchBody
                }
            }
            Label { text: Strings.liveListOrder }
            Picker {
                Layout.fillWidth: true
                name: Strings.liveListOrder
                choices: [Strings.library, Strings.dateAdded, Strings.lastPlayed, Strings.plays, Strings.rating, Strings.year]
                chosen: root.draft.order
                onChose: index => root.draft.order = index
            }
            Label { text: Strings.reverseOrder }
            ToggleSwitch {
                name: Strings.reverseOrder
                checked: root.draft.isReversed
                onToggled: root.draft.isReversed = checked
            }
            Label { text: Strings.liveListMost }
            EntryField {
                id: mostField
                Layout.fillWidth: true
                name: Strings.liveListMost
                placeholderText: Strings.noLimit
                inputMethodHints: Qt.ImhDigitsOnly
                validator: IntValidator { bottom: 0; top: 999999 }
                onTextChanged: root.draft.most = Number(text)
                onAccepted: root.answer()
            }
        }
        RowLayout {
            Layout.topMargin: Theme.gapTiny
            spacing: Theme.gapSmall

            PlainText {
                Layout.fillWidth: true
                text: root.visible ? Strings.sentences.trackCount(Library.browsing.countOf(root.draft)) : ""
                font: Theme.label
                color: Theme.tertiaryText
            }
            PillButton {
                text: Strings.cancel
                onClicked: root.close()
            }
            PillButton {
                enabled: root.canAnswer
                text: Strings.done
                isPrimary: true
                onClicked: root.answer()
            }
        }
    }
}
