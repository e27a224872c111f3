# SPDX-License-Identifier: MIT
"""Checks that the Flatpak manifest names what it must and asks for no more than it may."""
import sys

import yaml

allowed = {
    "--share=ipc",
    "--socket=fallback-x11",
    "--socket=wayland",
    "--socket=pulseaudio",
    "--device=dri",
    "--filesystem=xdg-music:ro",
}
with open(sys.argv[1], encoding="utf-8") as file:
    manifest = yaml.safe_load(file)

problems = [key for key in ("id", "runtime", "runtime-version", "sdk", "command", "modules")
            if not manifest.get(key)]
problems += [argument for argument in manifest["finish-args"]
             if argument not in allowed
             and not argument.startswith(("--own-name=org.mpris.MediaPlayer2.halvane", "--talk-name="))]
problems += [module for module in manifest["modules"]
             if not module.get("name") or not module.get("sources")]
if problems:
    sys.exit(f"missing or not allowed: {problems}")
