#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Reads every window through AT-SPI as a screen reader does, and goes from view to view by the
actions that it finds there: every control has a name, a fitting role and a size, and can have the
keyboard's focus. Prints the counts. Give it the program that shows the windows, with options."""

import collections
import os
import subprocess
import sys
import time

import warnings

warnings.simplefilter("ignore", DeprecationWarning)
import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 20
NAMED = {
    "button", "push button", "check box", "radio button", "slider", "entry", "text", "combo box",
    "menu item", "link", "page tab", "list item", "list", "table", "toggle button", "menu", "dialog",
    "column header", "table column header", "heading", "frame", "label",
}
CONTROLS = {
    "button", "check box", "radio button", "slider", "entry", "text", "combo box", "link", "page tab",
    "toggle button",
}
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


def role_of(thing):
    return {"push button": "button", "table column header": "column header"}.get(
        thing.get_role_name(), thing.get_role_name())


def children(thing):
    for index in range(thing.get_child_count()):
        child = thing.get_child_at_index(index)
        if child:
            yield child


def walk(thing):
    """Everything that is showing, from here on down; what goes away meanwhile is passed over."""
    try:
        is_application = thing.get_role_name() == "application"
        if not is_application and not thing.get_state_set().contains(Atspi.StateType.VISIBLE):
            return
        yield thing
        for child in children(thing):
            yield from walk(child)
    except GLib.Error:
        return


def wait_for(what, look):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            found = look()
        except GLib.Error:
            found = None
        if found:
            return found
        time.sleep(0.1)
    sys.exit(f"waited in vain for {what}")


def find_application(process):
    def look():
        if process.poll() is not None:
            sys.exit(f"the program ended with {process.returncode}")
        return next((application for application in children(Atspi.get_desktop(0))
                     if application.get_process_id() == process.pid
                     and application.get_child_count()), None)
    return wait_for("the program", look)


def shows(root, expected):
    found = {(thing.get_name(), role_of(thing)) for thing in walk(root)}
    return all((name, role) in found for name, role in expected.items())


def press(root, name):
    def look():
        thing = next((thing for thing in walk(root) if thing.get_name() == name
                      and role_of(thing) in ("button", "page tab")), None)
        count = Atspi.Action.get_n_actions(thing) if thing else 0
        number = next((n for n in range(count)
                       if Atspi.Action.get_action_name(thing, n) in ("Press", "Toggle")), None)
        return number is not None and Atspi.Action.do_action(thing, number)
    wait_for(f"a button {name}", look)


def faults(root, roles):
    for thing in walk(root):
        try:
            role = role_of(thing)
            name = thing.get_name()
            states = thing.get_state_set()
            roles[role] += 1
            if role in NAMED and not name:
                yield f"{role} without a name in {thing.get_parent().get_name()!r}"
            works = role in CONTROLS or (role == "list item" and Atspi.Action.get_n_actions(thing))
            if works and states.contains(Atspi.StateType.ENABLED):
                if not states.contains(Atspi.StateType.FOCUSABLE):
                    yield f"{role} {name!r} can't be reached by the keyboard"
            if role in ("unknown", "invalid", "filler") and name:
                yield f"{name!r} has no role"
        except GLib.Error:
            continue


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
    environment = {**os.environ, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
    process = subprocess.Popen(sys.argv[1:], env=environment, stdout=subprocess.DEVNULL)
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
