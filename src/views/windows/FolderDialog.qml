// SPDX-License-Identifier: MIT
// Without it the panel's own files end the program when it opens; so it is asked for here, where
// its absence is only an error.
import Qt.labs.folderlistmodel // qmllint disable unused-imports
import QtQuick.Dialogs as Dialogs
import Halvane

// The toolkit's own panel for a folder, where the desktop has none.
Dialogs.FolderDialog {
    readonly property list<url> chosen: [selectedFolder]

    rejectLabel: Strings.cancel
}
