// SPDX-License-Identifier: MIT
// The panel's own files need this module, and end the program where it is missing. Imported here,
// its absence is only an error.
import Qt.labs.folderlistmodel // qmllint disable unused-imports
import QtQml
import QtQuick.Dialogs as Dialogs
import Halvane

// The toolkit's own panel for a folder, where the desktop has none.
Dialogs.FolderDialog {
    id: root

    required property QuickFileChooser chooser

    rejectLabel: Strings.cancel
    onAccepted: root.chooser.accept([root.selectedFolder])
    onRejected: root.chooser.reject()
    Component.onCompleted: root.open()
}
