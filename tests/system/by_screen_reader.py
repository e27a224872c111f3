#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Listens to music with the real program as somebody does who sees nothing: by its tree alone. Give
it the program's path."""

import collections
import sys

from real_program import RealProgram
from screen_reader import CONTROLS, faults, press


def read(place, root):
    roles = collections.Counter()
    found = sorted(set(faults(root, roles)))
    print(f"{place:20} {sum(roles.values()):4} things, "
          f"{sum(roles[role] for role in CONTROLS):3} controls, {len(found)} faults", flush=True)
    if found:
        sys.exit("\n".join(found))


def main():
    with RealProgram(sys.argv[1]) as program:
        window = program.window
        program.wait_for_media("Playing", "status")
        read("main window", window)
        press(window, "Pause")
        program.wait_for_media("Paused", "status")


if __name__ == "__main__":
    main()
