// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

Window {
    color: Theme.windowBackground
    // The toolkit's own file panel marks the chosen line with white on pale blue otherwise.
    palette {
        highlight: Theme.accent
        highlightedText: Theme.onAccent
    }

    MainShellView { anchors.fill: parent }
}
