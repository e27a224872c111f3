// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// How tracks are brought to one level, in the place of Sound Check's own way.
Column {
    id: root

    readonly property bool isByLoudness: Library.soundCheck.levelBy !== LevelChoice.SoundCheck
    readonly property string preampText: Library.soundCheck.preamp.toFixed(1) + " dB"

    spacing: Theme.gapSmall

    SettingsLine {
        label: Strings.levelByLabel
        Picker {
            name: Strings.levelByLabel
            choices: [Strings.soundCheck, Strings.levelByTrack, Strings.levelByAlbum]
            chosen: Library.soundCheck.levelBy
            onChose: index => Library.soundCheck.levelBy = index
        }
    }
    SettingsLine {
        visible: root.isByLoudness
        label: Strings.levelPreamp
        Row {
            spacing: Theme.gapSmall

            PlainText {
                anchors.verticalCenter: parent.verticalCenter
                text: root.preampText
                font: Theme.caption
                color: Theme.tertiaryText
            }
            ValueSlider {
                name: Strings.levelPreamp
                spokenValue: root.preampText
                from: -12
                to: 12
                stepSize: 0.5
                snapMode: ValueSlider.SnapAlways
                shown: Library.soundCheck.preamp
                onAsked: value => Library.soundCheck.preamp = value
            }
        }
    }
    SettingsLine {
        visible: root.isByLoudness
        label: Strings.preventClipping
        ToggleSwitch {
            name: Strings.preventClipping
            checked: Library.soundCheck.preventsClipping
            onToggled: Library.soundCheck.preventsClipping = checked
        }
    }
    SettingsHint { visible: root.isByLoudness; text: Strings.levelByLoudnessHint }
    SettingsHint { visible: Library.soundCheck.levelBy === LevelChoice.Album; text: Strings.levelByAlbumHint }
    SettingsHint { visible: root.isByLoudness; text: Strings.preventClippingHint }
}
