// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Halvane

// A menu's title in the menu bar, with its menu.
PressableBase {
    id: root

    required property CommandMenu commands
    property bool showsLetter // which opens the menu with Alt
    readonly property string letter: root.commands.title.charAt(0)
    readonly property alias menu: menu

    // The menu this many places further on is to take over.
    signal neighbourAsked(int step)

    implicitWidth: label.implicitWidth + 2 * Theme.rowInset
    implicitHeight: Theme.topRowHeight
    activeFocusOnTab: false
    text: root.commands.title
    opens: true
    isOpen: menu.visible
    Accessible.role: Accessible.MenuItem

    contentItem: Text {
        id: label
        text: root.showsLetter ? "<u>" + root.letter + "</u>" + root.text.slice(1) : root.text
        textFormat: Text.StyledText
        font.pixelSize: 13
        color: root.isOpen || root.hovered ? Theme.primaryText : Theme.secondaryText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.topMargin: 5
            anchors.bottomMargin: anchors.topMargin
            radius: Theme.radiusSmall
            color: root.isOpen ? Theme.pressWash : root.hovered ? Theme.hoverWash : "transparent"
        }
    }

    ContextMenu {
        id: menu

        property bool isMade

        y: root.height
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
        onAboutToShow: menu.isMade = true
        onOpened: {
            if (menu.currentIndex < 0)
                menu.contentItem.forceActiveFocus(Qt.PopupFocusReason)
        }
        onKeyPressed: event => {
            event.accepted = event.key === Qt.Key_Left || event.key === Qt.Key_Right
            if (event.accepted)
                root.neighbourAsked(event.key === Qt.Key_Right ? 1 : -1)
        }

        Instantiator {
            active: menu.isMade
            model: root.commands.items
            delegate: CommandEntry {
                required property Command modelData
                command: modelData
            }
            onObjectAdded: (index, object) => menu.insertItem(index, object as Item)
            onObjectRemoved: (index, object) => menu.removeItem(object as Item)
        }
    }
}
