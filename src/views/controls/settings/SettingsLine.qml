// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A label, and at the other end what sets it.
Item {
    id: root

    required property string label
    default property alias control: place.data

    width: parent ? parent.width : 0
    implicitHeight: Theme.controlHeight

    Text {
        anchors.verticalCenter: parent.verticalCenter
        text: root.label
        font: Theme.body
        color: Theme.primaryText
        Accessible.ignored: true
    }
    Item {
        id: place
        anchors.right: parent.right
        width: childrenRect.width
        height: childrenRect.height
        anchors.verticalCenter: parent.verticalCenter
    }
}
