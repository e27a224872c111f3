// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The newest message, over what it stands before, for as long as it lasts.
Rectangle {
    id: root

    required property string text
    required property bool isError
    required property real maximumWidth
    readonly property bool isSaid: root.text.length > 0
    property bool showsUndo // also while it fades
    property real presence: root.isSaid ? 1 : 0

    width: words.x + words.width + Theme.gapLarge + (root.showsUndo ? undo.width : 0) + Theme.gapTiny
    implicitHeight: Math.max(40, words.height + 2 * Theme.rowInset)
    radius: 20
    color: Theme.panelRaised
    border.color: Theme.line
    opacity: root.presence
    visible: root.presence > 0
    transform: Translate { y: Math.round(Theme.gapSmall * (1 - root.presence)) }
    // What was said stays readable while it fades.
    onTextChanged: {
        if (root.text.length > 0) // isSaid may follow later
            words.text = root.text
        root.adoptOffer()
    }
    function adoptOffer(): void {
        if (root.text.length > 0)
            root.showsUndo = Library.status.offersUndo
    }
    Connections {
        target: Library.status
        function onOffersUndoChanged() { root.adoptOffer() }
    }
    HoverHandler { id: hover }
    Binding {
        target: Library.status
        property: "isHeld"
        value: hover.hovered && root.isSaid
    }
    Behavior on presence {
        NumberAnimation { duration: Theme.paneSlide; easing.type: Easing.OutQuad }
    }

    SymbolLabel {
        x: Theme.gapLarge
        height: parent.height
        symbol: root.isError ? "exclamationmark.triangle.fill" : "checkmark.circle.fill"
        size: 17
        color: root.isError ? Theme.warmAccent : Theme.accent
    }
    Text {
        id: words
        x: 42
        width: Math.min(implicitWidth, root.maximumWidth - x - Theme.gapLarge - (root.showsUndo ? undo.width : 0))
        anchors.verticalCenter: parent.verticalCenter
        Accessible.role: Accessible.AlertMessage
        Accessible.name: root.text
        font: Theme.label
        color: Theme.primaryText
        wrapMode: Text.Wrap
        maximumLineCount: 3
        elide: Text.ElideRight
        textFormat: Text.PlainText
        Component.onCompleted: text = root.text
    }
    PillButton {
        id: undo
        anchors.right: parent.right
        anchors.rightMargin: Theme.gapTiny
        anchors.verticalCenter: parent.verticalCenter
        implicitHeight: 32
        visible: root.showsUndo
        enabled: root.isSaid && Library.history.canUndo
        text: Strings.undoCommand
        fill: Theme.selectionFill
        textColor: Theme.accent
        corner: height / 2
        onClicked: Library.history.undo()
    }
}
