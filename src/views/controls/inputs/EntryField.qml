// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// A line to type in.
T.TextField {
    id: root

    required property string name

    implicitWidth: 200
    implicitHeight: Theme.buttonSize
    leftPadding: 11
    rightPadding: leftPadding
    verticalAlignment: TextInput.AlignVCenter
    font: Theme.label
    color: Theme.primaryText
    selectionColor: Theme.withAlpha(Theme.accent, 0.35)
    selectedTextColor: Theme.primaryText
    placeholderTextColor: Theme.tertiaryText
    selectByMouse: true
    hoverEnabled: true
    Accessible.name: root.name

    background: Rectangle {
        radius: Theme.radiusSmall
        color: Theme.controlBackground
        border.width: root.activeFocus ? 2 : 1
        border.color: root.activeFocus ? Theme.accent : root.hovered ? Theme.line : Theme.hairline
    }

    Text {
        x: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: root.text.length === 0 && root.preeditText.length === 0
        text: root.placeholderText
        font: root.font
        color: root.placeholderTextColor
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
