#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Records an album of a loud and a quiet track from the real program, first leveled track by track
and then as an album. Give it the program's path.

By track both are heard equally loud. As an album each keeps its distance from the other. Nothing is
heard between them in either case.
"""

import array
import pathlib
import subprocess
import sys
import tempfile
import time

from real_program import RealProgram
from private_sound import Sound, end, until
from screen_reader import children, expect, find, press, wait_for

RATE = 44100
SECONDS = 4
PATIENCE = 90  # measuring takes what nobody else wants of the processors
LOUD, QUIET = 0.2, 0.05  # of full scale
TONE = 441  # a period is a hundred samples
WINDOW = RATE // 200
LISTENED = 3 * SECONDS  # both tracks are heard in it, and a joint of each kind
AT_JOINTS = 8  # windows that hold something of both tracks, or of a gain that is changing


def make_music(folder):
    for number, level in enumerate((LOUD, QUIET)):
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i",
                        f"aevalsrc={level}*sin(2*PI*{TONE}*t)|{level}*sin(2*PI*{TONE}*t):s={RATE}:d={SECONDS}",
                        "-sample_fmt", "s32", "-metadata", f"title={number}", "-metadata", "album=Steps",
                        "-metadata", "artist=Nina", "-metadata", f"track={number + 1}",
                        folder / f"{number}.flac"], check=True)


def last_peaks(recording):
    """Of each window that was recorded last."""
    samples = array.array("h", recording.read_bytes()[-LISTENED * RATE * 4 // WINDOW * WINDOW:])[::2]
    return [max(map(abs, samples[i:i + WINDOW])) / 32768 for i in range(0, len(samples) - WINDOW, WINDOW)]


def is_at(peak, levels):
    return any(abs(peak - level) < 0.02 * level for level in levels)


def levels_heard(recording):
    """The levels that the last seconds stay at, the largest first; none where there are others."""
    peaks = last_peaks(recording)
    if not peaks or len(peaks) < LISTENED * 190:
        return []
    levels = []
    for peak in sorted(peaks, reverse=True):
        if not is_at(peak, levels) and sum(is_at(other, [peak]) for other in peaks) > len(peaks) / 5:
            levels.append(peak)
    between = sum(not is_at(peak, levels) for peak in peaks)
    return levels if between <= AT_JOINTS else []


def choose(settings, way):
    press(settings, "Level by", "combo box")
    press(settings, way, "menu item")


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        heard = folder / "heard"
        sound = Sound(folder)
        recorder = sound.record(heard)
        try:
            with RealProgram(sys.argv[1], make_music, PULSE_SERVER=sound.server) as program:
                program.wait_for_media("Playing", "status")
                program.media("volume", "1")
                program.media("loop", "Playlist")
                bar = wait_for("the menu bar", lambda: find(program.window, None, "menu bar"))
                press(bar, "File", "menu item")
                press(program.window, "Settings", "menu item")
                settings = wait_for("Settings", lambda: next(
                    (w for w in children(program.application) if w.get_name() == "Settings"), None))
                press(settings, "Sound Check", "check box")
                choose(settings, "Loudness, by track")
                until(lambda: len(levels_heard(heard)) == 1, PATIENCE)
                even = levels_heard(heard)[0]
                print(f"by track both are heard at {even:.4f}")
                choose(settings, "Loudness, by album or track")
                until(lambda: len(levels_heard(heard)) == 2, PATIENCE)
                time.sleep(LISTENED)
                loud, quiet = levels_heard(heard)
                print(f"as an album they are heard at {loud:.4f} and {quiet:.4f}")
        finally:
            end(recorder)
            end(sound.process)
    expect(abs(loud / quiet - LOUD / QUIET) < 0.05, "the album's own distances are not kept")
    expect(quiet < even < loud, "the album is not at the level of its tracks")


if __name__ == "__main__":
    main()
