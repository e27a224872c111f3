#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# check_package.sh BUILD-FOLDER: makes the Debian package, asks lintian, and where this machine
# allows it (root, overlay mounts) installs, starts and removes it on a throw-away copy of the root.
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

(cd "$build" && cpack -G DEB -B "$work" >"$work/cpack.log") || { cat "$work/cpack.log"; exit 1; }
package=$(ls "$work"/*.deb)

lintian --fail-on error --suppress-tags bad-distribution-in-changes-file "$package"

if [[ $(id -u) -ne 0 ]]; then
    echo "not root: the package was made and checked, not installed"
    exit 0
fi
mkdir "$work/space"
export package work
unshare --mount --propagation private bash -euo pipefail -c '
    mount -t tmpfs tmpfs "$work/space"
    mkdir "$work/space/upper" "$work/space/work" "$work/space/root"
    mount -t overlay overlay \
        -o lowerdir=/,upperdir="$work/space/upper",workdir="$work/space/work" "$work/space/root" || {
        echo "no overlay mounts here: the package was made and checked, not installed"
        exit 0
    }
    root=$work/space/root
    mount -t proc proc "$root/proc"
    mount --bind /dev "$root/dev"
    cp "$package" "$root/halvane.deb"
    files() { chroot "$root" find /usr /etc /opt -newer /halvane.deb -not -type d \
                  -not -path "*/icon-theme.cache" -not -path "*.cache" | sort; }

    chroot "$root" dpkg --install /halvane.deb >/dev/null
    chroot "$root" halvane --version
    chroot "$root" dpkg --listfiles halvane >"$work/listed"
    chroot "$root" grep -q "org.halvane.Halvane.desktop" /usr/share/applications/mimeinfo.cache ||
        echo "(no desktop database on this machine)"
    chroot "$root" dpkg --purge halvane >/dev/null
    left=$(grep -v "/\.$" "$work/listed" | while read -r file; do
        [[ -f $root$file ]] && echo "$file" || true; done)
    [[ -z $left ]] || { echo "left behind: $left"; exit 1; }
'
echo "the package installs, starts and goes without trace"
