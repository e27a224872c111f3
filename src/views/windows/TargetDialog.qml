// SPDX-License-Identifier: MIT
// The panel's own files need this module, and end the program where it is missing. Imported here,
// its absence is only an error.
import Qt.labs.folderlistmodel // qmllint disable unused-imports
import QtQml
import QtQuick.Dialogs
import Halvane

// The toolkit's own panel for a file to write, where the desktop has none.
FileDialog {
    id: root

    required property QuickFileChooser chooser
    required property url suggestion

    fileMode: FileDialog.SaveFile
    rejectLabel: Strings.cancel
    onAccepted: root.chooser.accept([root.selectedFile])
    onRejected: root.chooser.reject()
    // A file that need not be there can be named only once the mode is known.
    Component.onCompleted: {
        root.selectedFile = root.suggestion
        root.open()
    }
}
