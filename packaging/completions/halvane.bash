# SPDX-License-Identifier: MIT
# What bash offers after "halvane".

_halvane() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    # "=" ends a word for the shell: "Repeat=a" comes as three.
    if [[ $word == = ]]; then
        before='=' word=''
    fi
    local argument=
    if [[ $before == = ]]; then
        argument=${COMP_WORDS[COMP_CWORD - 1]}
        [[ $argument == = ]] && argument=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    compopt +o default 2>/dev/null
    case $argument in
    Mute | Shuffle | Love | FullPlayer | StopAfterCurrent) COMPREPLY=($(compgen -W 'on off' -- "$word")); return ;;
    Repeat) COMPREPLY=($(compgen -W 'off all one' -- "$word")); return ;;
    Rate) COMPREPLY=($(compgen -W '0 1 2 3 4 5' -- "$word")); return ;;
    SleepTimer) COMPREPLY=($(compgen -W '0 15 30 45 60 90' -- "$word")); return ;;
    Seek | Volume) COMPREPLY=(); return ;;
    esac
    case $before in
    --action)
        COMPREPLY=($(compgen -W 'PlayPause Play Pause Stop Next Previous Seek= Volume= Mute Shuffle
            Repeat Love Rate= ShowHide FullPlayer StopAfterCurrent SleepTimer=' -- "$word"))
        [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace 2>/dev/null
        return
        ;;
    --status) COMPREPLY=($(compgen -W 'text json' -- "$word")); return ;;
    --log) COMPREPLY=($(compgen -W 'debug info warning error' -- "$word")); return ;;
    --screenshots) COMPREPLY=($(compgen -d -- "$word")); return ;;
    esac
    if [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W '--action --help --log --screenshots --status --version' -- "$word"))
    else
        compopt -o default 2>/dev/null # files
        COMPREPLY=()
    fi
}
complete -o default -F _halvane halvane
