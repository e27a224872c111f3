// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The status line, and a line that fills while an import runs.
Column {
    id: root

    readonly property bool runs: Library.importing.importProgress >= 0

    spacing: 6
    topPadding: children.length > 0 && (message.visible || busy.visible) ? Theme.gapSmall : 0

    Row {
        id: message
        width: parent.width
        spacing: root.spacing
        visible: Library.status.lastImportMessage.length > 0
        SymbolLabel {
            id: mark
            symbol: Library.status.statusIsError ? "exclamationmark.triangle.fill" : "checkmark.circle.fill"
            size: 16
            color: Library.status.statusIsError ? Theme.warmAccent : Theme.accent
        }
        PlainText {
            width: parent.width - mark.width - message.spacing
            text: Library.status.lastImportMessage
            font: Theme.label
            color: Theme.secondaryText
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }
    Rectangle {
        id: busy
        visible: root.runs
        width: parent.width
        height: 3
        radius: height / 2
        color: Theme.groove
        Accessible.role: Accessible.ProgressBar
        Accessible.name: Strings.importMusicFolder
        Accessible.description: Math.round(Library.importing.importProgress * 100) + " %"
        Rectangle {
            width: parent.width * Math.max(0, Math.min(1, Library.importing.importProgress))
            height: parent.height
            radius: parent.radius
            color: Theme.accent
        }
    }
}
