// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Halvane

// The window's own title row: the menus and the window's buttons; the rest of it moves the window,
// and maximizes it on a double click.
Item {
    id: root

    readonly property Window host: Window.window as Window
    property alias showsMenuLetters: menus.showsLetters

    implicitHeight: Theme.topRowHeight

    function toggleMaximized(): void {
        if (root.host.visibility === Window.Maximized)
            root.host.showNormal()
        else
            root.host.showMaximized()
    }

    WindowMover {
        anchors.fill: parent
        onDoubleTapped: root.toggleMaximized()
    }
    MainMenuBar {
        id: menus
        x: 6
        height: parent.height
        visible: !App.menusAreGlobal
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.gapSmall
        height: parent.height
        visible: !App.hasSystemFrame

        WindowButton {
            symbol: "minus"
            tip: qsTr("Minimize")
            onClicked: root.host.showMinimized()
        }
        WindowButton {
            symbol: root.host && root.host.visibility === Window.Maximized ? "square.on.square" : "square"
            tip: root.host && root.host.visibility === Window.Maximized ? qsTr("Restore") : qsTr("Maximize")
            onClicked: root.toggleMaximized()
        }
        WindowButton {
            symbol: "xmark"
            tip: qsTr("Close")
            onClicked: root.host.close()
        }
    }
}
