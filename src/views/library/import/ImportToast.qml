// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What an import does that takes longer than a moment, and the button that ends it.
Rectangle {
    id: root

    readonly property bool isRunning: Library.importing.isImporting
    readonly property string text: Library.importing.importProgress < 0
        ? Strings.importSearching : Strings.sentences.importReading(Library.importing.importProgress)
    property real presence: 0

    implicitWidth: words.x + words.width + Theme.gapLarge + stop.width + Theme.gapTiny
    implicitHeight: 40
    radius: 20
    color: Theme.panelRaised
    border.color: Theme.line
    opacity: root.presence
    visible: root.presence > 0
    Accessible.role: Accessible.Grouping
    Accessible.name: root.text

    onIsRunningChanged: {
        if (!root.isRunning)
            root.presence = 0
    }

    SequentialAnimation {
        running: root.isRunning
        // Most imports are over by then.
        PauseAnimation { duration: 400 }
        NumberAnimation { target: root; property: "presence"; to: 1; duration: Theme.paneSlide; easing.type: Easing.OutQuad }
    }
    Text {
        id: words
        x: Theme.gapLarge
        anchors.verticalCenter: parent.verticalCenter
        // The button stays under the pointer while the numbers grow.
        width: Math.max(longest.width, implicitWidth)
        text: root.text
        font: Theme.label
        color: Theme.primaryText
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    TextMetrics {
        id: longest
        font: Theme.label
        text: Strings.sentences.importReading(1)
    }
    PillButton {
        id: stop
        anchors.right: parent.right
        anchors.rightMargin: Theme.gapTiny
        anchors.verticalCenter: parent.verticalCenter
        text: Strings.stopImport
        isQuiet: true
        onClicked: Library.importing.stopImport()
    }
}
