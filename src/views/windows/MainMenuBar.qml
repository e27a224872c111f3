// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Halvane

// The menus of the program's commands.
T.MenuBar {
    id: root

    implicitWidth: contentItem.implicitWidth
    implicitHeight: Theme.topRowHeight
    contentWidth: items.implicitWidth
    delegate: MenuBarTitle {}
    contentItem: Row {
        id: items
        spacing: 0
        Repeater { model: root.contentModel }
    }

    Instantiator {
        model: App.menus
        delegate: ContextMenu {
            id: menu

            required property CommandMenu modelData
            property bool isMade

            title: modelData.title
            onAboutToShow: menu.isMade = true

            Instantiator {
                active: menu.isMade
                model: menu.modelData.items
                delegate: CommandEntry {
                    required property Command modelData
                    command: modelData
                }
                onObjectAdded: (index, object) => menu.insertItem(index, object as Item)
                onObjectRemoved: (index, object) => menu.removeItem(object as Item)
            }
        }
        onObjectAdded: (index, object) => root.insertMenu(index, object as T.Menu)
        onObjectRemoved: (index, object) => root.removeMenu(object as T.Menu)
    }
}
