// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// The main window: sidebar, library content, Now Playing panel and player bar over the backdrop,
// with what covers them.
FocusScope {
    id: root

    property bool isDropTargeted: files.isTargeted
    // Narrower than the usual least width, as on a small screen, three columns have no room. Then
    // the sidebar gives way to the panel.
    readonly property bool showsSidebar: root.width >= 980 || !Library.views.showNowPlayingPanel

    focus: true
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Alt)
            topRow.showsMenuLetters = true
    }
    Keys.onReleased: event => {
        if (event.key === Qt.Key_Alt)
            topRow.showsMenuLetters = false
    }
    Keys.onEscapePressed: event => {
        if (Library.views.showFullPlayer)
            Library.views.showFullPlayer = false
        else if (Library.importing.isImporting)
            Library.importing.stopImport()
        else
            event.accepted = false
    }

    AmbientBackdrop {
        anchors.fill: parent
        visible: content.visible
    }
    ChassisBezel {
        anchors.fill: parent
        visible: content.visible
    }

    Item {
        id: content
        anchors.fill: parent
        // Behind the full-screen player nothing is reached, drawn or read out.
        visible: !Library.views.showFullPlayer || fullPlayer.opacity < 1
        enabled: !Library.views.showFullPlayer

        WindowTopRow {
            id: topRow
            width: parent.width
        }
        SidebarView {
            id: sidebar
            anchors.top: topRow.bottom
            anchors.bottom: barLine.top
            width: root.showsSidebar ? Theme.sidebarWidth : 0
            visible: root.showsSidebar
        }
        Rectangle {
            id: sidebarLine
            anchors.left: sidebar.right
            anchors.top: topRow.bottom
            anchors.bottom: barLine.top
            width: 1
            color: Theme.hairline
        }
        LibraryContentView {
            anchors.left: sidebarLine.right
            anchors.right: panelLine.left
            anchors.top: topRow.bottom
            anchors.bottom: barLine.top
        }
        Rectangle {
            id: panelLine
            anchors.right: panelFrame.left
            anchors.top: topRow.bottom
            anchors.bottom: barLine.top
            width: panelFrame.width > 0 ? 1 : 0
            color: Theme.hairline
        }
        Item {
            id: panelFrame
            anchors.right: parent.right
            anchors.top: topRow.bottom
            anchors.bottom: barLine.top
            width: Library.views.showNowPlayingPanel ? Theme.panelWidth : 0
            visible: width > 0
            clip: width < Theme.panelWidth
            Behavior on width {
                NumberAnimation { duration: Theme.panelSlide; easing.type: Easing.InOutQuad }
            }

            NowPlayingPanel {
                width: Theme.panelWidth
                height: parent.height
            }
        }
        Rectangle {
            id: barLine
            anchors.bottom: bar.top
            width: parent.width
            height: 1
            color: Theme.hairline
        }
        PlayerBar {
            id: bar
            anchors.bottom: parent.bottom
            width: parent.width
        }
        StatusToast {
            id: status
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: barLine.top
            anchors.bottomMargin: Theme.gapSmall
            maximumWidth: Math.min(720, parent.width - 2 * Theme.margin)
            text: Library.status.lastImportMessage
            isError: Library.status.statusIsError
        }
        ImportToast {
            anchors.horizontalCenter: parent.horizontalCenter
            // Above where a message comes, so that neither covers the other.
            anchors.bottom: status.top
            anchors.bottomMargin: Theme.gapTiny
        }
    }
    FileDropArea {
        id: files
        anchors.fill: parent
    }
    DropOverlay {
        anchors.fill: parent
        shown: root.isDropTargeted
    }
    Loader {
        id: fullPlayer
        anchors.fill: parent
        active: opacity > 0
        visible: active
        focus: Library.views.showFullPlayer
        opacity: Library.views.showFullPlayer ? 1 : 0
        source: "../playing/FullScreenPlayerView.qml"
        onLoaded: (fullPlayer.item as Item).focus = true
        Behavior on opacity {
            NumberAnimation { duration: Theme.panelSlide; easing.type: Easing.InOutQuad }
        }
    }
    // Only what somebody listens to: a player in the background does not speak up.
    Announcer {
        id: announcer

        readonly property bool isHeard: Window.active
        readonly property string playing: Library.transport.isPlaying && Library.player.hasCurrentTrack
            ? Spoken.titled(Library.player.currentTrack.title, Library.player.currentTrack.artist) : ""

        onPlayingChanged: {
            if (announcer.isHeard)
                announcer.say(announcer.playing)
        }
        // What was told while the window came up, as for files that were opened from outside.
        onIsHeardChanged: {
            if (announcer.isHeard)
                announcer.say(Library.status.lastImportMessage)
        }

        Connections {
            target: Library.status
            enabled: announcer.isHeard
            function onTextChanged() { announcer.say(Library.status.lastImportMessage) }
        }
        Connections {
            target: Library.importing
            enabled: announcer.isHeard
            function onIsImportingChanged() {
                if (Library.importing.isImporting)
                    announcer.say(Strings.importSearching)
            }
        }
    }
    Deferred {
        wanted: Library.views.showMaintenance
        LibraryMaintenanceView { parent: T.Overlay.overlay }
    }
}
