// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// Above the queue: how much of it is left, and what can be done with all of it.
Item {
    id: root

    required property int count

    function askForName(): void {
        const prompt = namePrompt.made() as Alert
        prompt.ask(Library.queueEditing.suggestedName())
    }

    implicitHeight: title.implicitHeight

    Text {
        id: title
        text: Strings.playlist
        font: Theme.name
        color: Theme.primaryText
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    PlainText {
        anchors.left: title.right
        anchors.leftMargin: Theme.gap
        anchors.right: more.left
        anchors.rightMargin: Theme.gapSmall
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        // Adding up a long queue is not worth it for nobody.
        text: root.visible ? Library.player.queueLeftText : ""
        visible: text.length > 0
        font: Theme.caption
        color: Theme.tertiaryText
    }
    SymbolButton {
        id: more
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        symbol: "ellipsis"
        tip: Strings.moreActions
        size: 28
        symbolSize: 18
        enabled: root.count > 0
        opens: true
        isOpen: (menu.item as ContextMenu)?.visible ?? false
        onClicked: {
            const opened = menu.made() as ContextMenu
            opened.popup(more, more.width - opened.implicitWidth, more.height)
        }
    }
    Deferred {
        id: menu
        ContextMenu {
            MenuEntry {
                text: Strings.saveAsPlaylist
                symbol: "text.badge.plus"
                onTriggered: root.askForName()
            }
            MenuEntry {
                text: Strings.clearQueue
                symbol: "xmark"
                onTriggered: Library.queueEditing.clear()
            }
        }
    }
    Deferred {
        id: namePrompt
        Alert {
            title: Strings.sentences.dialogTitle(Strings.saveAsPlaylist)
            placeholder: Strings.playlistNamePlaceholder
            acceptText: Strings.done
            onVisibleChanged: Browsing.isNaming = visible
            onAccepted: text => Library.queueEditing.saveAsPlaylist(text)
        }
    }
}
