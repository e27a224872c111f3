// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The folders that are followed, each with what can be done with it.
Column {
    id: root

    spacing: Theme.gapSmall

    SettingsLine {
        label: Strings.newFilesAppear
        ToggleSwitch {
            name: Strings.newFilesAppear
            checked: Library.followedFolders.isFollowing
            onToggled: Library.followedFolders.isFollowing = checked
        }
    }
    SettingsHint { text: Strings.noFollowedFolders }
    Repeater {
        model: Library.followedFolders.folders
        FolderLine {
            required property string modelData
            width: root.width
            folder: modelData
        }
    }
    Row {
        spacing: Theme.gapSmall

        PillButton {
            text: Strings.addFolder
            onClicked: Library.importing.chooseAndImportMusic(false, true)
        }
        PillButton {
            text: Strings.rescanFolders
            enabled: Library.followedFolders.folders.length > 0
            onClicked: Library.followedFolders.rescan()
        }
    }
}
