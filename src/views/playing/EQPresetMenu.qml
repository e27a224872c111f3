// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The equalizer's presets: the built-in ones, the user's, and what saves and deletes those.
PressableBase {
    id: root

    readonly property var builtIn: [
        { id: "flat", name: Strings.presetFlat },
        { id: "bassBoost", name: Strings.presetBassBoost },
        { id: "trebleBoost", name: Strings.presetTrebleBoost },
        { id: "vocal", name: Strings.presetVocal },
        { id: "loudness", name: Strings.presetLoudness },
        { id: "rock", name: Strings.presetRock },
        { id: "jazz", name: Strings.presetJazz },
        { id: "classical", name: Strings.presetClassical },
        { id: "electronic", name: Strings.presetElectronic },
        { id: "acoustic", name: Strings.presetAcoustic }
    ]

    readonly property real arrowRoom: 26

    implicitWidth: 140
    implicitHeight: Theme.controlHeight
    text: Library.equalizer.presetMenuTitle
    Accessible.role: Accessible.ComboBox
    Accessible.name: Strings.equalizer + ": " + Library.equalizer.presetMenuTitle
    opens: true
    isOpen: menu.visible
    onClicked: menu.popup(root, 0, root.height + Theme.gapTiny)

    contentItem: Item {
        Text {
            x: Theme.rowInset
            width: parent.width - x - root.arrowRoom
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: Theme.labelStrong
            color: Theme.primaryText
            elide: Text.ElideRight
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
        SymbolLabel {
            anchors.right: parent.right
            anchors.rightMargin: Theme.gapSmall
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.up.chevron.down"
            size: 14
        }
    }
    background: Rectangle {
        radius: Theme.radiusSmall
        color: Theme.panelRaised
        FocusRing { shown: root.visualFocus }
    }

    ContextMenu {
        id: menu

        Repeater {
            model: root.builtIn
            MenuEntry {
                required property var modelData
                text: modelData.name
                checkable: true
                checked: Library.equalizer.currentBuiltInEQPreset === modelData.id
                onTriggered: Library.equalizer.applyBuiltInEQPreset(modelData.id)
            }
        }
        MenuLine {}
        // A repeater's entries would stand where they were made, not where it stands.
        Instantiator {
            model: Library.equalizer.userEQPresetNames
            delegate: MenuEntry {
                required property string modelData
                text: modelData
                checkable: true
                checked: Library.equalizer.currentUserEQPreset === modelData
                onTriggered: Library.equalizer.applyUserEQPreset(modelData)
            }
            onObjectAdded: (index, object) => menu.insertItem(root.builtIn.length + 1 + index, object as MenuEntry)
            onObjectRemoved: (index, object) => menu.removeItem(object as MenuEntry)
        }
        ContextMenu {
            title: Strings.deletePresetMenu
            enabled: Library.equalizer.userEQPresetNames.length > 0
            Repeater {
                model: Library.equalizer.userEQPresetNames
                MenuEntry {
                    required property string modelData
                    text: modelData
                    symbol: "trash"
                    isDestructive: true
                    onTriggered: Library.equalizer.deleteUserEQPreset(modelData)
                }
            }
        }
        MenuEntry {
            text: Strings.savePreset
            symbol: "plus"
            onTriggered: prompt.ask("")
        }
    }
    Alert {
        id: prompt
        title: Strings.sentences.dialogTitle(Strings.savePreset)
        placeholder: Strings.presetNamePlaceholder
        acceptText: Strings.done
        onAccepted: text => Library.equalizer.saveCurrentEQPreset(text)
    }
}
