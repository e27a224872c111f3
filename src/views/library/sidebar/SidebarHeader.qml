// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The heading of a part of the sidebar.
Item {
    property alias text: label.text

    implicitHeight: 28

    Text {
        id: label
        x: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        font: Theme.captionStrong
        color: Theme.tertiaryText
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
