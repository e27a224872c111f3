#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Records an album from the real program while the listener turns Sound Check on and off at random
moments, and looks under which gain every stretch of it was heard. Give it the program's path, and a
number for the same moments again.

Loud and quiet tracks take turns, each a steady tone, so that the level tells the track and its gain.
The last two have another sample rate.
"""

import array
import itertools
import math
import pathlib
import random
import subprocess
import sys
import tempfile
import time

from real_program import RealProgram
from private_sound import Sound, end, until
from screen_reader import children, expect, find, has, press, thing, wait_for, Atspi

RATE = 44100
SECONDS = 5
PATIENCE = 60  # measuring takes what nobody else wants of the processors
QUIET, LOUD = 0.10, 0.12  # of full scale
RATES = [RATE] * 6 + [48000] * 2
TONE = 441  # a period is a hundred samples
# Sound Check brings a track to -16 dB of full scale; a tone's peak is 3.01 dB above that.
EVEN = 10 ** ((-16 + 20 * math.log10(math.sqrt(2))) / 20)
ALLOWED = {"silence": 0, "quiet": QUIET, "loud": LOUD, "even": EVEN}
# What one track would be under the other's gain.
FORBIDDEN = {"quiet under the loud one's gain": QUIET * EVEN / LOUD,
             "loud under the quiet one's gain": LOUD * EVEN / QUIET}
WINDOW = RATE // 200
AT_MOST = 4  # windows of a forbidden level in a row: a change takes 10 ms, and passes every level


def make_music(folder):
    for number, rate in enumerate(RATES):
        level = LOUD if number % 2 else QUIET
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i",
                        f"aevalsrc={level}*sin(2*PI*{TONE}*t):s={rate}:d={SECONDS}", "-ac", "2",
                        "-af", "pan=stereo|c0=c0|c1=c0", "-sample_fmt", "s32",
                        "-metadata", f"title={number}", "-metadata", "album=Steps",
                        "-metadata", f"track={number + 1}", folder / f"{number}.flac"], check=True)


def level_of(peak):
    for name, level in {**ALLOWED, **FORBIDDEN}.items():
        if abs(peak - level) <= 0.02 * level + 1e-3:
            return name
    return "between"


def levels(recording):
    """The recording as stretches of one level: its name and its windows."""
    samples = array.array("h", recording.read_bytes())[::2]
    peaks = (max(map(abs, samples[i:i + WINDOW])) / 32768
             for i in range(0, len(samples) - WINDOW, WINDOW))
    return [(name, sum(1 for _ in group)) for name, group in itertools.groupby(map(level_of, peaks))]


class Listener:
    def __init__(self, program, seed):
        self._program = program
        self._chance = random.Random(seed)

    def opens_settings(self):
        window = self._program.window
        bar = wait_for("the menu bar", lambda: find(window, None, "menu bar"))
        press(bar, "File", "menu item")
        press(window, "Settings", "menu item")
        self._settings = wait_for("Settings", lambda: next(
            (w for w in children(self._program.application) if w.get_name() == "Settings"), None))

    def turns_the_switch(self):
        before = self._is_on()
        press(self._settings, "Sound Check", "check box")
        wait_for("the switch to turn", lambda: self._is_on() != before)

    def _is_on(self):
        return has(thing(self._settings, "Sound Check", "check box"), Atspi.StateType.CHECKED)

    def listens(self):
        """To the end of the album. Gives what the desktop was told of the state."""
        follower = subprocess.Popen(["playerctl", "--player=halvane", "--follow", "status"],
                                    stdout=subprocess.PIPE, text=True)
        turns = 0
        while self._program.media("status") == "Playing":
            self.turns_the_switch()
            turns += 1
            time.sleep(self._chance.uniform(0.2, 2.5))
        follower.terminate()
        told = follower.communicate()[0].split()
        return turns, told


def main():
    seed = int(sys.argv[2]) if len(sys.argv) > 2 else random.randrange(1 << 32)
    print(f"seed {seed}")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        sound = Sound(folder)
        recorder = sound.record(folder / "heard")
        try:
            with RealProgram(sys.argv[1], make_music, PULSE_SERVER=sound.server) as program:
                program.wait_for_media("Playing", "status")
                program.media("volume", "1")
                listener = Listener(program, seed)
                program.media("loop", "Playlist")
                listener.opens_settings()
                listener.turns_the_switch()
                until(lambda: "even" in dict(levels(folder / "heard")), PATIENCE)
                program.media("loop", "None")
                turns, told = listener.listens()
        finally:
            end(recorder)
            end(sound.process)
        heard = levels(folder / "heard")
    for name, windows in heard:
        print(f"{windows * 5:>7} ms {name}")
    print(f"the switch was turned {turns} times; the desktop was told {' '.join(told)}")
    wrong = [stretch for stretch in heard if stretch[0] in FORBIDDEN and stretch[1] > AT_MOST]
    expect(not wrong, f"heard {wrong}")
    expect([state for state, _ in itertools.groupby(told)] in (["Playing"], ["Playing", "Stopped"]),
           f"the state flickered: {told}")


if __name__ == "__main__":
    main()
