#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Reads a running window through AT-SPI: every control has a name and a fitting role, and the
counts by role. Give the program to start after its options; ends with 1 when something is wrong."""

import collections
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

CONTROLS = {
    "push button", "check box", "radio button", "slider", "entry", "text", "combo box", "menu item",
    "link", "page tab", "list item", "list", "table", "password text", "toggle button",
}


def find_application(name, pid, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application and application.get_process_id() == pid and application.get_child_count():
                return application
        time.sleep(0.2)
    sys.exit(f"{name} did not appear")


def walk(thing):
    try:
        states = thing.get_state_set()
        if not states.contains(Atspi.StateType.VISIBLE) and thing.get_role_name() != "application":
            return
        yield thing
        for index in range(thing.get_child_count()):
            child = thing.get_child_at_index(index)
            if child:
                yield from walk(child)
    except Exception as error:  # it went away while it was read
        print(f"gone: {error}", file=sys.stderr)


def main():
    process = subprocess.Popen(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        application = find_application(sys.argv[1], process.pid, 60)
        time.sleep(3)
        roles = collections.Counter()
        unnamed = []
        unreachable = []
        for thing in walk(application):
            role = thing.get_role_name()
            roles[role] += 1
            if role in CONTROLS and not thing.get_name():
                unnamed.append(role)
            if role in {"push button", "slider", "page tab", "link", "entry", "text"}:
                states = thing.get_state_set()
                if states.contains(Atspi.StateType.ENABLED) and not states.contains(
                        Atspi.StateType.FOCUSABLE):
                    unreachable.append(f"{role} '{thing.get_name()}'")
    finally:
        process.terminate()
        process.wait()
    for role, count in sorted(roles.items()):
        print(f"{count:5} {role}")
    print(f"{sum(roles.values())} things, {len(unnamed)} unnamed controls, "
          f"{len(unreachable)} not focusable")
    for line in unnamed + unreachable:
        print("wrong:", line)
    return 1 if unnamed or unreachable else 0


if __name__ == "__main__":
    sys.exit(main())
