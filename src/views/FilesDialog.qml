// SPDX-License-Identifier: MIT
import QtQuick.Dialogs

// The toolkit's own panel for audio files, where the desktop has none.
FileDialog {
    readonly property list<url> chosen: selectedFiles

    fileMode: FileDialog.OpenFiles
}
