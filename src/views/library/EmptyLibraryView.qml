// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The invitation of an empty library.
Item {
    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.margin, 420)
        spacing: Theme.gap

        SymbolTile {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "music.note.list"
            side: 88
            symbolSize: 44
            radius: side / 2
            color: Theme.withAlpha(tint, 0.1)
        }
        Text {
            width: parent.width
            topPadding: Theme.gapSmall
            horizontalAlignment: Text.AlignHCenter
            text: Strings.emptyLibraryTitle
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.pageTitle
            color: Theme.primaryText
            wrapMode: Text.Wrap
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: Strings.emptyLibraryMessage
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.body
            lineHeight: 1.3
            color: Theme.secondaryText
            wrapMode: Text.Wrap
        }
        PillButton {
            anchors.horizontalCenter: parent.horizontalCenter
            implicitHeight: 36
            isPrimary: true
            symbol: "folder.badge.plus"
            text: Strings.importMusicFolder
            onClicked: Library.importing.chooseAndImportMusic(false, true)
        }
    }
}
