#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# check_completion.sh FILE: what bash offers, with the words as the shell splits them.
set -euo pipefail
source "$1"

problems=0
check() {
    local expected=$1
    shift
    COMP_WORDS=(halvane "$@") COMP_CWORD=$# COMPREPLY=()
    _halvane 2>/dev/null || true # compopt works only while a person completes
    if [[ ${COMPREPLY[*]-} != "$expected" ]]; then
        echo "\"$*\" offers \"${COMPREPLY[*]-}\" instead of \"$expected\""
        problems=1
    fi
}
check 'Repeat' --action Re
check 'off all one' --action Repeat =
check 'off one' --action Repeat = o
check 'on off' --action Love =
check '' --action Volume = 3
check '--screenshots --status' --s
check 'json' --status j
check '' al
exit $problems
