# SPDX-License-Identifier: MIT
"""Checks that the Flatpak manifest names what it must and asks for no more than it may."""
import shutil
import subprocess
import sys

import yaml

allowed = {
    "--share=ipc",
    "--socket=fallback-x11",
    "--socket=wayland",
    "--socket=pulseaudio",
    "--device=dri",
    "--filesystem=xdg-music:ro",
    "--own-name=org.mpris.MediaPlayer2.halvane",
    "--talk-name=org.freedesktop.Notifications",
    "--talk-name=org.kde.StatusNotifierWatcher",
    "--talk-name=com.canonical.AppMenu.Registrar",
}
with open(sys.argv[1], encoding="utf-8") as file:
    manifest = yaml.safe_load(file)

problems = [key for key in ("id", "runtime", "runtime-version", "sdk", "command", "modules")
            if not manifest.get(key)]
problems += [argument for argument in manifest["finish-args"]
             if argument not in allowed]
problems += [module for module in manifest["modules"]
             if not module.get("name") or not module.get("sources")]
if problems:
    sys.exit(f"missing or not allowed: {problems}")

builder = shutil.which("flatpak-builder")  # where this machine has it
if builder:
    subprocess.run([builder, "--show-manifest", sys.argv[1]], check=True, stdout=subprocess.DEVNULL)
