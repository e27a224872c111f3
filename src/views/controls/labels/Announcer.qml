// SPDX-License-Identifier: MIT
import QtQuick

// Tells those who cannot see it what has just changed: a notification that nobody sees, which screen
// readers read out when it comes up.
Text {
    id: root

    property string coming

    // What comes at once is read out as one: another notification would silence the one before.
    function say(words: string): void {
        if (words.length === 0 || words === root.coming)
            return
        root.coming += (root.coming.length > 0 ? ". " : "") + words
        gathering.start()
    }

    width: 1
    height: 1
    visible: false
    clip: true
    color: "transparent"
    textFormat: Text.PlainText
    Accessible.role: Accessible.Notification
    Accessible.name: root.text

    Timer {
        id: gathering
        interval: 0
        onTriggered: {
            root.visible = false
            root.text = root.coming
            root.coming = ""
            root.visible = true
        }
    }
}
