// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

Window {
    color: "transparent"
    width: view.implicitWidth
    height: view.implicitHeight

    MenuBarPlayerView {
        id: view
        anchors.fill: parent
        Keys.onEscapePressed: App.closeWindow("panel")
    }
}
