# SPDX-License-Identifier: MIT
# What fish offers after "halvane".

set -l actions PlayPause Play Pause Stop Next Previous Seek= Volume= Mute Mute=on Mute=off \
    Shuffle Shuffle=on Shuffle=off Repeat Repeat=off Repeat=all Repeat=one Love Love=on Love=off \
    Rate=0 Rate=1 Rate=2 Rate=3 Rate=4 Rate=5 ShowHide FullPlayer FullPlayer=on FullPlayer=off \
    StopAfterCurrent StopAfterCurrent=on StopAfterCurrent=off SleepTimer=0 SleepTimer=15 SleepTimer=30 \
    SleepTimer=45 SleepTimer=60 SleepTimer=90
complete -c halvane -s h -l help -d 'List the options and end'
complete -c halvane -s v -l version -d 'Print the version and end'
complete -c halvane -l action -x -a "$actions" -d 'Ask the running player for an action'
complete -c halvane -l status -x -a 'text json' -d 'Print what the running player plays and end'
complete -c halvane -l log -x -a 'debug info warning error' -d 'Log from this level on'
complete -c halvane -l screenshots -x -a '(__fish_complete_directories)' -d 'Save a picture of every window and end'
