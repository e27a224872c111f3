// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// One followed folder: its path, its tracks, and a menu.
Item {
    id: root

    required property string folder
    readonly property string count: {
        const changes = Library.trackCount // so that it is counted anew
        return Strings.sentences.trackCount(changes < 0 ? 0 : Library.followedFolders.trackCount(root.folder))
    }

    implicitHeight: Theme.controlHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: root.folder + ", " + root.count

    PlainText {
        id: path
        anchors.left: parent.left
        anchors.right: tracks.left
        anchors.rightMargin: Theme.gapSmall
        anchors.verticalCenter: parent.verticalCenter
        text: root.folder
        font: Theme.body
        color: Theme.primaryText
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    PlainText {
        id: tracks
        anchors.right: more.left
        anchors.rightMargin: Theme.gapTiny
        anchors.verticalCenter: parent.verticalCenter
        text: root.count
        font: Theme.caption
        color: Theme.tertiaryText
        Accessible.ignored: true
    }
    SymbolButton {
        id: more
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        symbol: "ellipsis"
        tip: Strings.moreActions
        Accessible.name: Strings.moreActions + ": " + root.folder
        size: 28
        symbolSize: 18
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
                text: Strings.stopFollowing
                symbol: "xmark"
                onTriggered: Library.followedFolders.stopFollowing(root.folder)
            }
            MenuEntry {
                text: Strings.removeFolderWithTracks
                symbol: "trash"
                isDestructive: true
                onTriggered: Library.followedFolders.removeWithTracks(root.folder)
            }
        }
    }
}
