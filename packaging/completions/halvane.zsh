#compdef halvane
# SPDX-License-Identifier: MIT
# What zsh offers after "halvane".

_halvane_actions() {
    local -a plain switches
    plain=(PlayPause Play Pause Stop Next Previous ShowHide Mute Shuffle Repeat Love FullPlayer
        StopAfterCurrent)
    switches=(Mute Shuffle Love FullPlayer StopAfterCurrent)
    if compset -P 'Repeat='; then
        compadd off all one
    elif compset -P 'Rate='; then
        compadd 0 1 2 3 4 5
    elif compset -P 'SleepTimer='; then
        compadd 0 15 30 45 60 90
    elif compset -P "(${(j:|:)switches})="; then
        compadd on off
    elif ! compset -P '(Seek|Volume)='; then
        compadd -a plain
        compadd -S '' Seek= Volume= Rate= SleepTimer=
    fi
}

_arguments -s \
    '(- *)'{-h,--help}'[list the options and end]' \
    '(- *)'{-v,--version}'[print the version and end]' \
    '*--action[ask the running player for an action]:action:_halvane_actions' \
    '(*)--status[print what the running player plays and end]::format:(text json)' \
    '--log[log from this level on]:level:(debug info warning error)' \
    '--screenshots[save a picture of every window and end]:folder:_files -/' \
    '*:file:_files'
