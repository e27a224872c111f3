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
# In a container or below chroot(1) the root may be no mount of its own.
if ! unshare --mount --propagation private true 2>/dev/null; then
    echo "no mounts of its own here: the package was made and checked, not installed"
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
    chroot "$root" dpkg --install /halvane.deb >/dev/null

    # The real windows, from the installed program, without a display or a bus.
    chroot "$root" env -i HOME=/home/listener PATH=/usr/bin:/bin LANG=C.UTF-8 \
        QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software \
        halvane --screenshots /pictures 2>"$work/started.log" || { cat "$work/started.log"; exit 1; }
    [[ -s $root/pictures/main-albums-en-1x.png ]] || { echo "no picture of its window"; exit 1; }
    chroot "$root" gio mime audio/flac >"$work/players"
    grep -q org.halvane.Halvane.desktop "$work/players" || { echo "opens no FLAC file"; exit 1; }
    # As the menu starts it: through the session bus.
    chroot "$root" env -i HOME=/home/listener PATH=/usr/bin:/bin LANG=C.UTF-8 \
        QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software dbus-run-session -- \
        gdbus call --session --dest org.halvane.Halvane --object-path /org/halvane/Halvane \
        --method org.freedesktop.Application.Activate {} >/dev/null 2>"$work/bus.log" || {
        cat "$work/bus.log"; exit 1; }

    chroot "$root" dpkg --purge halvane >/dev/null
    # No file that was written since has anything of it, by its name or inside, but for the records of
    # the package manager and for caches, which forget in their own time. Other packages rewrite their
    # own lists whenever one comes or goes.
    cd "$work/space/upper"
    rm -rf home/listener pictures halvane.deb
    left=$(find . \( -path ./var/lib/dpkg -o -path ./var/log -o -path ./var/cache \) -prune -o -type f \
        \( -ipath "*halvane*" -o -exec grep -qi halvane {} \; \) -print)
    [[ -z $left ]] || { echo "left behind: $left"; exit 1; }
'
echo "the package installs, starts and goes without trace"
