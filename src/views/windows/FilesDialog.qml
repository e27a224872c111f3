// SPDX-License-Identifier: MIT
// The panel's own files need this module, and end the program where it is missing. Imported here,
// its absence is only an error.
import Qt.labs.folderlistmodel // qmllint disable unused-imports
import QtQml
import QtQuick.Dialogs
import Halvane

// The toolkit's own panel for audio files, where the desktop has none.
FileDialog {
    id: root

    required property QuickFileChooser chooser

    fileMode: FileDialog.OpenFiles
    rejectLabel: Strings.cancel
    onAccepted: root.chooser.accept(root.selectedFiles)
    onRejected: root.chooser.reject()
    Component.onCompleted: root.open()
}
