// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Halvane

// A question in the middle of the window, with one text field where a placeholder is given. Return
// answers with the chief button, Esc with "Cancel".
Popover {
    id: root

    required property string title
    required property string acceptText
    property string message
    property string note // beneath the message
    property string placeholder
    property bool isDestructive
    readonly property bool asksForText: root.placeholder.length > 0
    readonly property bool canAnswer: !root.asksForText || field.text.trim().length > 0

    signal accepted(string text)

    // Asks, with this text in the field to begin with.
    function ask(text: string): void {
        field.text = text
        root.open()
        if (root.asksForText) {
            field.forceActiveFocus()
            field.selectAll()
        } else {
            cancelButton.forceActiveFocus(Qt.TabFocusReason)
        }
    }
    function answer(): void {
        if (!root.canAnswer)
            return
        root.close()
        root.accepted(field.text)
    }

    name: root.title
    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: 340
    padding: 20
    modal: true
    closePolicy: T.Popup.CloseOnEscape
    T.Overlay.modal: Rectangle { color: Theme.scrim }

    contentItem: ColumnLayout {
        spacing: Theme.gap

        Text {
            Layout.fillWidth: true
            text: root.title
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.cardTitle
            color: Theme.primaryText
            wrapMode: Text.Wrap
        }
        Text {
            Layout.fillWidth: true
            visible: text.length > 0
            text: root.message
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.label
            lineHeight: 1.25
            color: Theme.secondaryText
            wrapMode: Text.Wrap
        }
        Text {
            Layout.fillWidth: true
            visible: text.length > 0
            text: root.note
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.label
            lineHeight: 1.25
            color: Theme.secondaryText
            wrapMode: Text.Wrap
        }
        EntryField {
            id: field
            Layout.fillWidth: true
            visible: root.asksForText
            name: root.placeholder
            placeholderText: root.placeholder
            onAccepted: root.answer()
        }
        RowLayout {
            Layout.topMargin: Theme.gapTiny
            Layout.alignment: Qt.AlignRight
            spacing: Theme.gapSmall
            PillButton {
                id: cancelButton
                text: Strings.cancel
                onClicked: root.close()
            }
            PillButton {
                enabled: root.canAnswer
                text: root.acceptText
                isPrimary: !root.isDestructive
                textColor: root.isDestructive ? Theme.warmAccent : Theme.primaryText
                onClicked: root.answer()
            }
        }
    }
}
