#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Goes through the real program's main window with keys alone, as a window manager hands them on, and
looks where the keyboard is by the tree. Give it the program's path."""

import subprocess
import sys

from real_program import RealProgram
from screen_reader import Atspi, expect, find, has, role_of, thing, wait_for, walk

FOCUSED = Atspi.StateType.FOCUSED


class Keys:
    def __init__(self, program):
        self._program = program
        self.window = program.window

    def press(self, *keys):
        # Later keyboard maps have a second F10, with Alt, which xdotool would take: it gets the key's
        # own number.
        pressed = ["76" if key == "F10" else key for key in keys]
        subprocess.run(["xdotool", "key", "--delay", "40", *pressed], check=True)

    def focused(self):
        """What has the keyboard: the row, where a list has it."""
        found = [one for one in walk(self.window) if has(one, FOCUSED)]
        return found[-1] if found else None

    def where(self):
        found = self.focused()
        return found and (found.get_name(), role_of(found))

    def is_at(self, name, role):
        wait_for(f"the keyboard on {role} {name!r}, not on {self.where()}",
                 lambda: self.where() == (name, role))

    def press_until(self, key, name, role, at_most=80):
        for _ in range(at_most):
            if self.where() == (name, role):
                return
            before = self.where()
            self.press(key)
            wait_for(f"the keyboard to leave {before}", lambda: self.where() != before)
        sys.exit(f"{at_most} times {key} did not lead to {role} {name!r}")

    def expect_in_view(self):
        item = wait_for("the keyboard anywhere", self.focused)
        place = item.get_extents(Atspi.CoordType.SCREEN)
        frame = self.window.get_extents(Atspi.CoordType.SCREEN)
        inside = (frame.y <= place.y and place.y + place.height <= frame.y + frame.height
                  and frame.x <= place.x and place.x + place.width <= frame.x + frame.width)
        expect(inside, f"{self.where()} has the keyboard out of sight")

    def keeps_its_window(self):
        self.press("Escape", "Escape")
        wait_for("its window", lambda: find(self.window, "Artists, 2", "list item"))
        expect(self._program.process.poll() is None, "Escape has ended it")

    def opens_menus(self):
        self.press("F10")
        self.is_at("Add to Library...", "menu item")
        self.press("Right")
        self.is_at("Find", "menu item")
        self.press("Left", "Left")
        self.is_at("Halvane Help", "menu item")
        self.press("Escape")
        wait_for("no menu", lambda: not find(self.window, None, "popup menu"))
        for letter, entry in (("f", "Add to Library..."), ("p", "Play/Pause"), ("h", "Halvane Help")):
            self.press(f"alt+{letter}")
            self.is_at(entry, "menu item")
            self.press("Escape")
            wait_for("no menu", lambda: not find(self.window, None, "popup menu"))
        self._program.wait_for_media("Playing", "status")
        self.press("alt+p", "Return")
        self._program.wait_for_media("Paused", "status")
        bar = find(self.window, None, "menu bar")
        wait_for("every title to go out", lambda: not any(
            has(title, Atspi.StateType.EXPANDED) for title in walk(bar)))

    def goes_round(self):
        """Tab comes to everything once, in sight, and back to where it began."""
        self.press("Tab")
        first = wait_for("the keyboard anywhere", self.where)
        seen = [first]
        while True:
            before = self.where()
            self.press("Tab")
            wait_for(f"the keyboard to leave {before}", lambda: self.where() not in (None, before))
            if self.where() == first:
                break
            self.expect_in_view()
            seen.append(self.where())
            expect(len(seen) < 80, f"Tab never comes round: {seen}")
        for stop in (("Library", "list item"), ("Search title, artist, album, format", "text"),
                     ("Albums", "page tab"), ("Kelp, Mira Holt", "list item"),
                     ("Amber, Mira Holt", "list item"), ("Volume", "slider"),
                     ("Equalizer", "button")):
            expect(stop in seen, f"Tab does not come to {stop}: {seen}")
        order = [seen.index(stop) for stop in (
            ("Library", "list item"), ("Albums", "page tab"), ("Kelp, Mira Holt", "list item"),
            ("Amber, Mira Holt", "list item"), ("Volume", "slider"))]
        expect(order == sorted(order), f"Tab goes another way than the eye: {seen}")
        print(f"Tab comes to {len(seen)} places", flush=True)

    def plays_an_album(self):
        self.press_until("Tab", "Kelp, Mira Holt", "list item")
        self.press("Right")
        self.is_at("Sodium, The Lanterns", "list item")
        self.press("Return")
        self._program.wait_for_media("Cinder", "metadata", "title")

    def finds_by_typing(self):
        self.press_until("shift+Tab", "Tracks", "page tab")
        self.press("Return")
        thing(self.window, "Tracks", "table")
        self.press_until("Tab", "Amber, Mira Holt", "list item")
        self.press("b")
        self.is_at("Bellows, Mira Holt", "list item")
        self.press("Return")
        self._program.wait_for_media("Bellows", "metadata", "title")

    def works_a_rows_menu(self):
        self.press("Menu")
        wait_for("the menu", lambda: find(self.window, None, "popup menu"))
        self.press("Down")
        self.is_at("Pause", "menu item")
        self.press_until("Down", "Loved", "menu item")
        self.press("Return")
        wait_for("the love", lambda: has(thing(self.window, "Loved", "button"), Atspi.StateType.CHECKED))
        self.is_at("Bellows, Mira Holt", "list item")

    def searches(self):
        self.press("ctrl+f")
        self.is_at("Search title, artist, album, format", "text")
        self.press("d", "u", "n", "e")
        wait_for("what was found", lambda: not find(thing(self.window, "Tracks", "table"),
                                                    "Amber, Mira Holt", "list item"))
        self.press("Escape")
        thing(self.window, "Amber, Mira Holt", "list item")

    def chooses_a_column_and_sorts_by_it(self):
        self.press_until("Tab", "Choose columns", "button")
        self.press("space")
        entry = wait_for("the columns", lambda: find(self.window, "Year", "check box"))
        self.press_until("Down", "Year", "check box")
        self.press("space")
        wait_for("the check mark", lambda: has(entry, Atspi.StateType.CHECKED))
        self.press("Escape")
        self.is_at("Choose columns", "button")
        self.press_until("shift+Tab", "Title", "column header")
        self.press("Return", "Return")
        self.keeps_its_table()

    def keeps_its_table(self):
        table = thing(self.window, "Tracks", "table")
        thing(self.window, "Year", "column header")
        wait_for("the order", lambda: thing(self.window, "Title", "column header").get_description()
                 .startswith("Sorted, descending"))
        rows = [one.get_name() for one in walk(table) if role_of(one) == "list item"]
        expect(rows == sorted(rows, reverse=True) and len(rows) == 4, f"{rows} are not sorted")

    def still_has_its_table(self):
        self.press_until("Tab", "Tracks", "page tab")
        self.press("Return")
        self.keeps_its_table()

    def scrolls_with_the_keyboard(self):
        """More playlists than the sidebar has room for. One below the window would not be told of."""
        for number in range(8):
            self.press_until("Tab", "New Playlist...", "button") if number == 0 else None
            self.press("Return")
            wait_for("the question", lambda: find(self.window, "New Playlist", "dialog"))
            self.press("p", *str(number), "Return")
            thing(self.window, f"p{number}, 0", "list item")
            self.is_at("New Playlist...", "button")
        for _ in range(8):
            self.press("Tab")
        self.is_at("p7, 0", "list item")
        self.expect_in_view()
        self.press("a", "r")
        self.is_at("Artists, 2", "list item")
        self.expect_in_view()

    def quits(self):
        self.press("alt+f", "Up")
        self.is_at("Quit", "menu item")
        self.press("Return")
        expect(self._program.process.wait(timeout=20) == 0, "it did not end well")


def main():
    with RealProgram(sys.argv[1]) as program:
        program.wait_for_media("Playing", "status")
        keys = Keys(program)
        for step in (keys.keeps_its_window, keys.opens_menus, keys.goes_round,
                     keys.plays_an_album, keys.finds_by_typing,
                     keys.works_a_rows_menu, keys.searches,
                     keys.chooses_a_column_and_sorts_by_it, keys.scrolls_with_the_keyboard,
                     keys.quits):
            step()
            print("done:", step.__name__, flush=True)
        program.start()
        keys = Keys(program)
        keys.still_has_its_table()
        print("done: still_has_its_table", flush=True)


if __name__ == "__main__":
    main()
