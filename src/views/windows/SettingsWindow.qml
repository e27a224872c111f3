// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

Window {
    id: root

    // With room for a title bar and a desktop's panel.
    readonly property real mostHeight: Math.max(200, root.Screen.height - 90)

    color: Theme.windowBackground
    width: view.implicitWidth
    height: Math.min(view.implicitHeight, root.mostHeight)
    minimumWidth: view.implicitWidth
    maximumWidth: view.implicitWidth
    minimumHeight: Math.min(view.implicitHeight, root.mostHeight)
    maximumHeight: view.implicitHeight

    SettingsView {
        id: view
        anchors.fill: parent
        Keys.onEscapePressed: App.closeWindow("settings")
    }
}
