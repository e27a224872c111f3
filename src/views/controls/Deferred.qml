// SPDX-License-Identifier: MIT
import QtQuick

// Something that is made when it is first wanted, and then kept: a menu, a dialog, a view that is
// seldom seen. What the window does not show at first then costs its start nothing.
Item {
    id: root

    default required property Component component
    property bool wanted
    property QtObject item: null

    // The thing itself.
    function made(): QtObject {
        if (!root.item)
            root.item = root.component.createObject(root)
        return root.item
    }

    onWantedChanged: {
        if (root.wanted)
            root.made()
    }
}
