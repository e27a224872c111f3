// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The keyboard shortcuts: their labels, this keyboard's own names for the same keys beneath them,
// and what they do.
Column {
    id: root

    readonly property var shortcuts: [
        { keys: "Space", here: ["Space"], text: Strings.playPause },
        { keys: "⌘←  /  ⌘→", here: ["Ctrl+←", "Ctrl+→"], text: Strings.previousTrack },
        { keys: "⌘↑  /  ⌘↓", here: ["Ctrl+↑", "Ctrl+↓"], text: Strings.volumeLabel },
        { keys: "⇧⌘S", here: ["Ctrl+Shift+S"], text: Strings.shuffleLabel },
        { keys: "⇧⌘R", here: ["Ctrl+Shift+R"], text: Strings.repeatLabel },
        { keys: "⌘O", here: ["Ctrl+O"], text: Strings.addToLibraryCommand },
        { keys: "⌘I", here: ["Ctrl+I"], text: Strings.importMusicFolder },
        { keys: "⌘F", here: ["Ctrl+F"], text: Strings.findCommand },
        { keys: "⌥⌘N", here: ["Ctrl+Alt+N"], text: Strings.toggleNowPlayingPanel },
        { keys: "⌃⌘M", here: ["Ctrl+Super+M"], text: Strings.miniPlayer },
        { keys: "⌃⌘F", here: ["Ctrl+Super+F"], text: Strings.fullScreenPlayer },
        { keys: "Esc", here: ["Esc"], text: Strings.backToMainWindow },
        { keys: "⌘,", here: ["Ctrl+,"], text: Strings.settingsLabel }
    ]

    readonly property real keysWidth: 110

    spacing: Theme.gapSmall

    HelpSectionTitle {
        width: parent.width
        symbol: "keyboard"
        title: Strings.helpShortcutsTitle
    }
    Repeater {
        model: root.shortcuts
        Item {
            id: line

            required property var modelData

            x: Theme.helpIndent
            width: root.width - x
            height: Math.max(keyNames.height, words.height)
            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.here.join(" / ") + ": " + modelData.text

            Column {
                id: keyNames
                width: root.keysWidth
                Text {
                    text: line.modelData.keys
                    font: Theme.keys
                    color: Theme.primaryText
                    textFormat: Text.PlainText
                    Accessible.ignored: true
                }
                Text {
                    visible: text !== line.modelData.keys
                    width: parent.width
                    text: line.modelData.here.join(" / ")
                    font: Theme.badge
                    color: Theme.tertiaryText
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }
            }
            Text {
                id: words
                x: root.keysWidth + Theme.gap
                width: parent.width - x
                text: line.modelData.text
                font: Theme.label
                color: Theme.secondaryText
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }
    }
}
