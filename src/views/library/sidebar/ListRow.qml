// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A row of a list that the user has made, with the keys and buttons that ask for its menu, for
// another name and for its end.
SidebarRow {
    id: root

    signal menuAsked(x: real, y: real)
    signal changeAsked()
    signal deleteAsked()

    onMenuAskedFor: root.menuAsked(20, root.height)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Menu)
            root.menuAsked(20, root.height)
        else if (event.key === Qt.Key_Delete)
            root.deleteAsked()
        else if (event.key === Qt.Key_F2)
            root.changeAsked()
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => root.menuAsked(point.position.x, point.position.y)
    }
}
