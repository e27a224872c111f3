// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

Window {
    color: Theme.windowBackground
    width: view.implicitWidth
    height: view.implicitHeight
    minimumWidth: view.implicitWidth
    maximumWidth: view.implicitWidth
    minimumHeight: view.implicitHeight
    maximumHeight: view.implicitHeight

    SettingsView {
        id: view
        anchors.fill: parent
        Keys.onEscapePressed: App.closeWindow("settings")
    }
}
