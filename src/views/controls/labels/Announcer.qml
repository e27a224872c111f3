// SPDX-License-Identifier: MIT
import QtQuick

// Tells those who cannot see it what has just changed: a notification that nobody sees, which screen
// readers read out when it comes up.
Text {
    id: root

    function say(words: string): void {
        if (words.length === 0)
            return
        root.visible = false
        root.text = words
        root.visible = true
    }

    width: 1
    height: 1
    visible: false
    clip: true
    color: "transparent"
    textFormat: Text.PlainText
    Accessible.role: Accessible.Notification
    Accessible.name: root.text
}
