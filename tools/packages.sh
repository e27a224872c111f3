# SPDX-License-Identifier: MIT
# Sourced by ./run and ./check: installs what packages.txt lists for the given purposes.

# install_packages PURPOSE... (build, run, test)
install_packages() {
    local wanted=() missing=() purpose name
    while read -r purpose name; do
        [[ " $* " == *" $purpose "* ]] && wanted+=("$name")
    done < <(grep -Ev '^(#|$)' packages.txt)
    for name in "${wanted[@]}"; do
        dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null | grep -qx installed ||
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
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -y)
    { "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "${missing[@]}"; } >&2
}
