// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// A small surface over the window that closes with Esc or a click elsewhere.
T.Popup {
    id: root

    required property string name

    // The surface, which is not the content but its parent, is what is read out as a dialog.
    onAboutToShow: root.contentItem.parent.Accessible.name = root.name
    padding: Theme.gapLarge
    margins: Theme.gapSmall
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

    background: Rectangle {
        radius: Theme.radiusLarge
        color: Theme.withAlpha(Theme.panel, 0.985)
        border.color: Theme.line
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick; easing.type: Easing.OutQuad }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.quick }
    }
}
