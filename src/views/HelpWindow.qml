// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

Window {
    color: Theme.windowBackground
    width: 480
    height: 560

    HelpView {
        anchors.fill: parent
        Keys.onEscapePressed: App.closeWindow("help")
    }
}
