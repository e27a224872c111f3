# SPDX-License-Identifier: MIT
# Sourced by ./run and ./check: installs what packages.txt lists for the given purposes.

# first_available NAME...: the first package that apt knows, or else the last, for apt to complain of.
first_available() {
    local name
    for name; do
        [[ -z $(apt-cache show "$name" 2>/dev/null) ]] || break
    done
    echo "$name"
}

# install_packages PURPOSE... (build, run, test)
install_packages() {
    local wanted=() missing=() chosen=() purpose name
    while read -r purpose name; do
        [[ " $* " == *" $purpose "* ]] && wanted+=("$name")
    done < <(grep -Ev '^(#|$)' packages.txt)
    for name in "${wanted[@]}"; do
        [[ $(dpkg-query -W -f='<${db:Status-Status}>' ${name//|/ } 2>/dev/null) == *'<installed>'* ]] ||
            missing+=("$name")
    done
    [[ ${#missing[@]} -eq 0 ]] && return 0

    local as_root=()
    if [[ $(id -u) -ne 0 ]]; then
        command -v sudo >/dev/null || {
            echo "Install these packages as root first: ${missing[*]}" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing ${#missing[@]} packages: ${missing[*]}" >&2
    local apt=("${as_root[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -qq -y)
    with_the_lock "${apt[@]}" update
    for name in "${missing[@]}"; do
        chosen+=("$(first_available ${name//|/ })")
    done
    with_the_lock "${apt[@]}" install --no-install-recommends "${chosen[@]}"
}

# with_the_lock COMMAND...: runs apt, again and again for two minutes while another program holds one
# of its locks. (Its own DPkg::Lock::Timeout does not cover the lock of the lists.)
with_the_lock() {
    local errors end=$((SECONDS + 120)) said=
    until errors=$("$@" 3>&1 >&2 2>&3 3>&-); do
        if [[ $errors != *"Could not get lock"* || $SECONDS -ge $end ]]; then
            printf '%s\n' "$errors" >&2
            return 1
        fi
        [[ $said ]] || echo "Another program is installing packages; waiting for it" >&2
        said=yes
        sleep 2
    done
    [[ -z $errors ]] || printf '%s\n' "$errors" >&2
}
