#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Does with the real program, by its tree alone, what somebody does who sees nothing and holds no
mouse. Every place that is reached on the way is read out, and what is wrong with it is told. Give it
the program's path."""

import collections
import sys

from real_program import RealProgram, SECONDS
from screen_reader import (
    Atspi, CONTROLS, Ear, act, actions, children, expect, faults, find, has, press, role_of, thing,
    type_into, wait_for)

CHECKED = Atspi.StateType.CHECKED
SELECTED = Atspi.StateType.SELECTED
EXPANDED = Atspi.StateType.EXPANDED


class Walk:
    def __init__(self, program):
        self._program = program
        self.window = program.window
        self._roles = collections.Counter()
        self._wrong = []
        self._done = []

    def read(self, place, root=None):
        roles = collections.Counter()
        self._wrong += [f"{place}: {fault}" for fault in sorted(set(faults(root or self.window, roles)))]
        print(f"{place:16} {sum(roles.values()):4} things, "
              f"{sum(roles[role] for role in CONTROLS):3} controls", flush=True)
        self._roles += roles

    def did(self, what):
        print("done:", what, flush=True)
        self._done.append(what)

    def end(self):
        print(f"{len(self._done)} things done; {sum(self._roles[role] for role in CONTROLS)} controls "
              f"read, {len(self._wrong)} faults")
        sys.exit("\n".join(self._wrong) or 0)

    def titles_in(self, name, role):
        return [row.get_name().split(",")[0] for row in children(thing(self.window, name, role))
                if role_of(row) == "list item"]

    def chooses_an_album(self):
        tile = thing(self.window, "Sodium, The Lanterns", "list item")
        expect(actions(tile)[0] == "Press", f"a tile's first action is {actions(tile)[0]}")
        press(self.window, "Sodium, The Lanterns", "list item")
        wait_for("the chosen album", lambda: has(tile, SELECTED))
        wait_for("its tracks", lambda: find(self.window, "Tracks", "table"))
        self.did("chose an album")
        press(self.window, "Play Album", "button")
        self._program.wait_for_media("Cinder", "metadata", "title")
        self.did("played it")

    def plays_and_pauses(self):
        press(self.window, "Pause", "button")
        self._program.wait_for_media("Paused", "status")
        press(self.window, "Play", "button")
        self._program.wait_for_media("Playing", "status")
        press(self.window, "Pause", "button")
        self._program.wait_for_media("Paused", "status")
        self.did("paused and played")

    def seeks(self):
        slider = thing(self.window, "Playback", "slider")
        value = slider.get_value_iface()
        ends = value.get_minimum_value(), value.get_maximum_value()
        expect(ends == (0, 100), f"the ends of the slider are {ends}")
        value.set_current_value(50)
        self._program.wait_for_media(f"{SECONDS / 2:.6f}", "position")
        wait_for("the time in words", lambda: slider.get_description() == "0:30 / 1:00")
        Atspi.Action.do_action(slider, actions(slider).index("Increase"))
        self._program.wait_for_media(f"{SECONDS * 0.52:.6f}", "position")
        self.did("sought through the slider, to a place and by a step")

    def changes_the_volume(self):
        slider = thing(self.window, "Volume", "slider")
        slider.get_value_iface().set_current_value(40)
        self._program.wait_for_media("0.400000", "volume")
        wait_for("the volume in words", lambda: slider.get_description() == "40 %")
        self.did("changed the volume")

    def orders_the_queue(self):
        before = self.titles_in("Up Next", "list")
        expect(len(before) == 2, f"up next is {before}")
        name = f"{before[1]}, The Lanterns"
        act(self.window, "MoveUp", name, "list item", within=("Up Next", "list"))
        wait_for("the new order", lambda: self.titles_in("Up Next", "list") == before[::-1])
        act(self.window, "MoveDown", name, "list item", within=("Up Next", "list"))
        wait_for("the old order", lambda: self.titles_in("Up Next", "list") == before)
        self.did("moved an entry of the queue up and down")

    def searches(self):
        press(self.window, "Tracks", "page tab")
        wait_for("all tracks", lambda: len(self.titles_in("Tracks", "table")) == 4)
        self.read("tracks")
        field = thing(self.window, "Search title, artist, album, format", "text")
        type_into(field, "bell")
        wait_for("what was found", lambda: self.titles_in("Tracks", "table") == ["Bellows"])
        self.did("searched")
        press(self.window, "Bellows, Mira Holt", "list item", within=("Tracks", "table"))
        self._program.wait_for_media("Bellows", "metadata", "title")
        self.did("played a track by its row's first action")
        press(self.window, "Clear search", "button")
        wait_for("all tracks again", lambda: len(self.titles_in("Tracks", "table")) == 4)
        self.did("cleared the search")

    def menu_of(self, title):
        act(self.window, "ShowMenu", title, "list item", within=("Tracks", "table"))
        return wait_for("a menu", lambda: find(self.window, None, "popup menu"))

    def rates(self):
        menu = self.menu_of("Bellows, Mira Holt")
        self.read("track's menu", menu)
        press(self.window, "Rating", "menu item")
        press(self.window, "4", "menu item")
        wait_for("no menu", lambda: not find(self.window, None, "popup menu"))
        self.menu_of("Bellows, Mira Holt")
        press(self.window, "Rating", "menu item")
        wait_for("the rating", lambda: has(thing(self.window, "4", "menu item"), CHECKED))
        press(self.window, "4", "menu item")
        wait_for("no menu", lambda: not find(self.window, None, "popup menu"))
        self.did("rated a track")

    def loves(self):
        heart = thing(self.window, "Loved", "button")
        expect(not has(heart, CHECKED), "the track is loved already")
        press(self.window, "Loved", "button")
        wait_for("the love", lambda: has(heart, CHECKED))
        self.did("loved a track")

    def makes_a_playlist(self):
        press(self.window, "New Playlist...", "button")
        dialog = thing(self.window, "New Playlist", "dialog")
        self.read("new playlist", dialog)
        type_into(wait_for("the field", lambda: find(dialog, None, "text")), "Evening")
        press(dialog, "Done", "button")
        thing(self.window, "Evening, 0", "list item")
        self.menu_of("Cinder, The Lanterns")
        press(self.window, "Add to Playlist", "menu item")
        press(self.window, "Evening", "menu item")
        press(self.window, "Evening, 1", "list item")
        wait_for("the playlist", lambda: self.titles_in("Tracks", "table") == ["Cinder"])
        wait_for("where we are", lambda: has(thing(self.window, "Evening, 1", "list item"), SELECTED))
        self.did("made a playlist and put a track into it")

    def equalizes(self):
        button = thing(self.window, "Equalizer", "button")
        press(self.window, "Equalizer", "button")
        sheet = thing(self.window, "Equalizer", "dialog")
        wait_for("word that it is open", lambda: has(button, EXPANDED))
        self.read("equalizer", sheet)
        press(sheet, "Equalizer", "check box")
        wait_for("the switch", lambda: has(thing(sheet, "Equalizer", "check box"), CHECKED))
        band = thing(sheet, "1K", "slider")
        band.get_value_iface().set_current_value(6)
        wait_for("the gain", lambda: band.get_description() == "6 dB")
        press(sheet, "Equalizer: Custom", "combo box")
        press(self.window, "Rock", "menu item")
        wait_for("the preset", lambda: find(sheet, "Equalizer: Rock", "combo box"))
        press(self.window, "Equalizer", "button")
        wait_for("the end of it", lambda: not find(self.window, "Equalizer", "dialog"))
        self.did("switched the equalizer on, moved a band, chose a preset")

    def tidies_up(self):
        press(self.window, "Tidy Up Library", "button")
        dialog = thing(self.window, "Tidy Up Library", "dialog")
        self.read("tidy up", dialog)
        press(dialog, "Done", "button")
        wait_for("the end of it", lambda: not find(self.window, "Tidy Up Library", "dialog"))
        self.did("looked through what there is to tidy up")

    def fills_the_screen(self):
        press(self.window, "Full-Screen Player", "button")
        thing(self.window, "Back to Main Window", "button")
        wait_for("the player alone", lambda: not find(self.window, "Up Next", "list"))
        self.read("full screen")
        press(self.window, "Back to Main Window", "button")
        thing(self.window, "Up Next", "list")
        self.did("went to the full-screen player and back")

    def choose(self, title, entry):
        """Chooses from the menu bar."""
        bar = wait_for("the menu bar", lambda: find(self.window, None, "menu bar"))
        press(bar, title, "menu item")
        wait_for("word that it is open", lambda: has(thing(bar, title, "menu item"), EXPANDED))
        self.read(f"menu {title}", wait_for("a menu", lambda: find(self.window, None, "popup menu")))
        press(self.window, entry, "menu item")

    def opens_the_other_windows(self):
        for title, entry, name in (("File", "Settings", "Settings"), ("Help", "Halvane Help", "Halvane Help")):
            self.choose(title, entry)
            self.read(name, self.other_window(name))
        self.did("opened settings and help from the menus")

    def chooses_a_language(self):
        settings = self.other_window("Settings")
        press(settings, "中文", "radio button")
        thing(settings, "音量均衡", "check box")
        press(settings, "English", "radio button")
        thing(settings, "Sound Check", "check box")
        self.did("chose another language, and the first again")

    def other_window(self, name):
        return wait_for(name, lambda: next(
            (w for w in children(self._program.application) if w.get_name() == name), None))

    def hears_what_changes(self):
        with Ear() as ear:
            press(self.window, "Next track", "button")
            ear.wait_for("Dune, The Lanterns")
        self.did("heard what plays next")

    def opens_a_list(self):
        folder = self._program.music
        written = folder.parent / "walk.m3u8"
        written.write_text("#EXTM3U\n#PLAYLIST:Night Walk\nmusic/3.flac\nmusic/gone.flac\n"
                           f"file://{folder}/0.flac\n")
        with Ear() as ear:
            self._program.open(written)
            ear.wait_for('Added "Night Walk" · 1 of 3 not found')
        press(self.window, "Night Walk, 3", "list item")
        wait_for("its tracks", lambda: self.titles_in("Tracks", "table") == ["Dune", "Amber"])
        self._program.wait_for_media("Dune", "metadata", "title")
        self.did("opened a list")

    def quits(self):
        self.choose("File", "Quit")
        expect(self._program.process.wait(timeout=20) == 0, "it did not end well")
        self.did("quit from the menu")


def main():
    with RealProgram(sys.argv[1]) as program:
        program.wait_for_media("Playing", "status")
        walk = Walk(program)
        walk.did("started with a folder")
        walk.read("albums")
        for step in (walk.chooses_an_album, walk.plays_and_pauses, walk.seeks,
                     walk.changes_the_volume, walk.orders_the_queue, walk.hears_what_changes,
                     walk.searches, walk.rates, walk.loves, walk.makes_a_playlist, walk.equalizes,
                     walk.tidies_up, walk.fills_the_screen, walk.opens_the_other_windows, walk.opens_a_list,
                     walk.chooses_a_language,
                     walk.quits):
            step()
        walk.end()


if __name__ == "__main__":
    main()
