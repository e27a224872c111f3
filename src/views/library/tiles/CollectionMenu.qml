// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What can be done with an album or an artist.
ContextMenu {
    id: root

    property string collection // its identity
    property list<string> paths // its files, in their order
    property string artist // to go to; empty: none

    signal playAsked
    signal shuffleAsked

    MenuEntry {
        text: Strings.play
        symbol: "play.fill"
        onTriggered: root.playAsked()
    }
    MenuEntry {
        text: Strings.shuffleLabel
        symbol: "shuffle"
        onTriggered: root.shuffleAsked()
    }
    MenuEntry {
        text: Strings.playNextCommand
        symbol: "text.insert"
        onTriggered: Library.queueEditing.playNext(root.paths)
    }
    MenuEntry {
        text: Strings.addToQueue
        symbol: "music.note.list"
        onTriggered: Library.queueEditing.addToQueue(root.paths)
    }
    AddToPlaylistMenu { paths: root.paths }
    MenuLine {}
    MenuEntry {
        visible: root.artist.length > 0
        height: visible ? implicitHeight : 0
        text: Strings.viewArtist
        symbol: "person.2"
        onTriggered: Library.browsing.jumpToArtist(root.artist)
    }
    MenuEntry {
        text: Strings.showInFileManager
        symbol: "folder"
        onTriggered: App.showInFileManager(root.paths[0])
    }
}
