// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// Asks whether a list that the user has made shall go. One key must not take what a hand has made.
Deferred {
    id: root

    property var listId

    signal confirmed(id: var)

    function ask(id: var, name: string): void {
        root.listId = id
        const alert = root.made() as Alert
        alert.title = Strings.deleteCommand + " “" + name + "”"
        alert.ask("")
    }

    Alert {
        title: ""
        acceptText: Strings.deleteCommand
        isDestructive: true
        onAccepted: root.confirmed(root.listId)
    }
}
