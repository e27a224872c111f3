// SPDX-License-Identifier: MIT
import QtQuick.Dialogs as Dialogs

// The toolkit's own panel for a folder, where the desktop has none.
Dialogs.FolderDialog {
    readonly property list<url> chosen: [selectedFolder]
}
