#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Reads every window through AT-SPI as a screen reader does, and goes from view to view by the
actions that it finds there: every control has a name, a fitting role and a size, and can have the
keyboard's focus. Prints the counts. Give it the program that shows the windows, with options."""

import collections
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
sys.dont_write_bytecode = True
from screen_reader import (  # noqa: E402
    CONTROLS, children, faults, find_application, press, role_of, turn_on, wait_for, walk)

# Each view: what to press to come to it, in which window, and what must be read out there.
VIEWS = [
    ("albums", None, {"Kelp & Salt, Mira Holt": "list item", "Up Next": "list",
                      "Search title, artist, album, format": "text", "Library": "list item",
                      "Pause": "button", "Albums": "page tab"}),
    ("tracks", "Tracks", {"Sodium, The Lanterns": "list item", "Title": "column header",
                          "Tracks": "table"}),
    ("artists", "Artists", {"Mira Holt": "list item"}),
    ("equalizer", "Equalizer", {"1K": "slider", "Preamp": "slider", "Equalizer": "check box"}),
    ("tidy-up", "2 items need attention", {"Done": "button"}),
    ("full-screen", "Full-Screen Player", {"Back to Main Window": "button"}),
]


def shows(root, expected):
    found = {(thing.get_name(), role_of(thing)) for thing in walk(root)}
    return all((name, role) in found for name, role in expected.items())


def read(view, root, roles):
    here = collections.Counter()
    found = sorted(set(faults(root, here)))
    print(f"{view:12} {sum(here.values()):5} things, "
          f"{sum(here[role] for role in CONTROLS):4} controls, {len(found)} faults")
    for fault in found:
        print("  wrong:", fault)
    roles.update(here)
    return len(found)


def main():
    turn_on()
    process = subprocess.Popen(sys.argv[1:], stdout=subprocess.DEVNULL)
    roles = collections.Counter()
    try:
        application = find_application(process)
        windows = wait_for("every window", lambda: [*children(application)] if
                           application.get_child_count() == sys.argv.count("--window") else None)
        window = wait_for("the main window", lambda: next(
            (w for w in windows if shows(w, {"Up Next": "list"})), None))
        wrong = sum(read(w.get_name(), w, roles) for w in windows if w != window)
        for view, button, expected in VIEWS:
            if button:
                press(window, button)
            wait_for(f"{', '.join(expected)} in {view}", lambda: shows(window, expected))
            wrong += read(view, window, roles)
            if view == "tidy-up":
                press(window, "Done")
    finally:
        process.terminate()
        process.wait()
    print(", ".join(f"{count} {role}" for role, count in roles.most_common()))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
