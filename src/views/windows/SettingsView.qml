// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// The preferences. Each applies at once. They scroll where the screen has no room for all.
FocusScope {
    id: root

    readonly property var tints: [Strings.tintAmbient, Strings.tintMint, Strings.tintGold, Strings.tintSunset, Strings.tintCustom]

    implicitWidth: 380
    implicitHeight: form.height + 20
    focus: true

    AmbientBackdrop { anchors.fill: parent }
    Flickable {
        id: scroll
        anchors.fill: parent
        contentHeight: root.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        interactive: false
        T.ScrollBar.vertical: ScrollLine {}

        Column {
            id: form
            width: parent.width
            spacing: 18

            SecondaryTopRow {
                width: parent.width
                height: 40
                title: Strings.settingsLabel
            }
            SettingsGroup {
                title: Strings.language
                SegmentedPicker {
                    name: Strings.language
                    choices: [Strings.sentences.languageName(0), Strings.sentences.languageName(1), Strings.sentences.languageName(2)]
                    chosen: Library.language.languageSetting
                    onChose: index => Library.language.languageSetting = index
                }
                SettingsHint { text: Strings.languageSettingHint }
            }
            SettingsGroup {
                title: Strings.spectrumColor
                SettingsLine {
                    label: Strings.spectrumColor
                    Picker {
                        name: Strings.spectrumColor
                        choices: root.tints
                        chosen: Library.appearance.spectrumTintMode
                        onChose: index => Library.appearance.spectrumTintMode = index
                    }
                }
                SettingsLine {
                    visible: Library.appearance.spectrumTintMode === Tint.Custom
                    label: Strings.tintCustom
                    ColorWell {
                        name: Strings.spectrumColor + ": " + Strings.tintCustom
                        color: Library.appearance.customSpectrumColor
                        onChose: color => Library.appearance.customSpectrumColor = color
                    }
                }
                SpectrumStrip {
                    width: parent.width
                    height: 40
                    isPlaying: Library.transport.isPlaying
                    tint: Library.appearance.spectrumTint
                }
            }
            SettingsGroup {
                title: Strings.soundCheck
                SettingsLine {
                    label: Strings.soundCheck
                    ToggleSwitch {
                        name: Strings.soundCheck
                        checked: Library.soundCheck.soundCheckEnabled
                        onToggled: Library.soundCheck.soundCheckEnabled = checked
                    }
                }
                SettingsHint { text: Strings.soundCheckHint }
                SettingsHint { text: Strings.soundCheckLeftOut }
                LevelSettings {
                    width: parent.width
                    visible: Library.soundCheck.soundCheckEnabled
                }
            }
            SettingsGroup {
                title: Strings.followedFolders
                FolderSettings { width: parent.width }
            }
            SettingsGroup {
                title: Strings.startWith
                SegmentedPicker {
                    name: Strings.startWith
                    choices: [Strings.startWithLibrary, Strings.startWithLeftOff]
                    chosen: Library.queueMemory.startsWhereLeftOff ? 1 : 0
                    onChose: index => Library.queueMemory.startsWhereLeftOff = index === 1
                }
                SettingsHint { text: Strings.startWithHint }
            }
            SettingsGroup {
                title: Strings.themeSection
                SettingsLine {
                    label: Strings.accentColor
                    Picker {
                        name: Strings.accentColor
                        choices: root.tints
                        chosen: Library.appearance.themeAccentMode
                        onChose: index => Library.appearance.themeAccentMode = index
                    }
                }
                SettingsLine {
                    visible: Library.appearance.themeAccentMode === Tint.Custom
                    label: Strings.tintCustom
                    ColorWell {
                        name: Strings.accentColor + ": " + Strings.tintCustom
                        color: Library.appearance.customThemeAccent
                        onChose: color => Library.appearance.customThemeAccent = color
                    }
                }
                SettingsLine {
                    label: Strings.cornerStyle
                    SegmentedPicker {
                        name: Strings.cornerStyle
                        choices: [Strings.cornerSharp, Strings.cornerStandard, Strings.cornerRound]
                        chosen: Library.appearance.themeCornerStyle
                        onChose: index => Library.appearance.themeCornerStyle = index
                    }
                }
                SettingsLine {
                    label: Strings.backgroundStyle
                    Picker {
                        name: Strings.backgroundStyle
                        choices: [Strings.bgDark, Strings.bgOLED, Strings.bgAmbient]
                        chosen: Library.appearance.themeBackgroundStyle
                        onChose: index => Library.appearance.themeBackgroundStyle = index
                    }
                }
            }
        }
    }
    WheelScroller {
        parent: scroll
        view: scroll
    }
}
