#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""How soon Halvane is heard, and how soon it answers, while every read of its disk is slow.

usage: slow_disk_bench.py HALVANE GATE [--delays MS ...] [--seeks N]

GATE is build/release/tests/support/libhalvane_disk_gate.so, which stands between the program and a
folder: each read of more than 4,000 bytes takes as long as --delays says. The file has sound on the
left in its first half and on the right in its second, so a seek between them is heard. It is there
twice: with the table of places that the flac command writes, and without. A click is Stop, silence
and PlayPause; both are sent over MPRIS and end when the sink's monitor has the first sample. Answers
are those of MPRIS, asked for ten times a second meanwhile. Frames are those of the full-screen player
while it seeks: the time from one to the next. Holes are the server's underruns.

Needs what playback_bench.py needs, and flac, ffmpeg and python3-gi.
"""
import argparse
import os
import pathlib
import random
import re
import statistics
import subprocess
import tempfile
import threading
import time

from gi.repository import GLib

import playback_bench as players
from playback_bench import LEFT, RIGHT, Halvane, Sound, end, first_sound, until

HALF = 150  # seconds
# The renderer that is chosen without a graphics card tells no times.
RENDER_LOG = ["QT_LOGGING_RULES=qt.scenegraph.time.renderloop.debug=true",
              "QSG_RHI_BACKEND=opengl"]


def make_file(path, *options):
    """Noise whose loudness wanders, so that no guess of where a second lies is right at once."""
    wave = path.with_suffix(".wav")
    level = "volume='0.02+0.9*abs(sin(t/7))':eval=frame"
    noise = f"anoisesrc=c=pink:r=44100:a=0.4:d={HALF}"
    subprocess.run(
        ["ffmpeg", "-loglevel", "error", "-filter_complex",
         f"{noise}:seed=1,{level},pan=stereo|c0=c0|c1=0*c0[a];"
         f"{noise}:seed=2,{level},pan=stereo|c0=0*c0|c1=c0[b];[a][b]concat=v=0:a=1",
         "-sample_fmt", "s16", "-bitexact", str(wave)], check=True)
    subprocess.run(["flac", "--totally-silent", *options, "-o", str(path), str(wave)], check=True)
    wave.unlink()


class Answers:
    """Asks for the position ten times a second, and keeps the longest time until the answer."""

    def __init__(self, player):
        self.slowest = 0
        self.player = player
        self.ended = threading.Event()
        self.thread = threading.Thread(target=self.run)
        self.thread.start()

    def run(self):
        while not self.ended.wait(0.1):
            start = time.monotonic()
            self.player.bus.call_sync(
                "org.mpris.MediaPlayer2.halvane", "/org/mpris/MediaPlayer2",
                "org.freedesktop.DBus.Properties", "Get",
                GLib.Variant("(ss)", ("org.mpris.MediaPlayer2.Player", "Position")), None, 0, -1,
                None)
            self.slowest = max(self.slowest, time.monotonic() - start)

    def end(self):
        self.ended.set()
        self.thread.join()
        return self.slowest


class SlowHalvane(Halvane):
    def __init__(self, sound, file, folder, gate, delay):
        os.environ.update(HALVANE_TEST_DISK=str(file.parent), HALVANE_TEST_DISK_MS=str(delay))
        self.log = folder / "log"
        super().__init__(sound, file, folder, [f"LD_PRELOAD={gate}", *RENDER_LOG], self.log)

    def seek(self, seconds):
        self.command("Seek", GLib.Variant("(x)", (int(seconds * 1e6),)))

    def holes(self):
        return self.log.read_text().count(": hole ")

    def frames_while(self, act):
        """Times in ms between the frames of the full-screen player, whose record turns, while
        something is done."""
        before = self.log.stat().st_size
        act()
        lines = self.log.read_bytes()[before:].decode(errors="replace")
        return [int(gap) for gap in re.findall(
            r"polishAndSync: start, elapsed since last call: (\d+) ms", lines)]


def measure(sound, file, folder, options, delay):
    folder.mkdir()
    recorder = sound.listen()
    player = SlowHalvane(sound, file, folder, options.gate.resolve(), delay)
    clicks, seeks = [], []
    chance = random.Random(3)

    def heard_after(act, where):
        recorder = sound.listen()
        time.sleep(0.3)
        start = time.monotonic()
        act()
        return first_sound(recorder, where) - start

    try:
        first_sound(recorder, LEFT)
        player.command("Pause")
        player.command("Play")
        answers = Answers(player)
        for _ in range(options.seeks):
            player.command("Stop")
            time.sleep(1)
            clicks.append(heard_after(lambda: player.command("PlayPause"), LEFT))
            time.sleep(1)
            way = HALF + chance.uniform(0, HALF - 20)
            seeks.append(heard_after(lambda: player.seek(way), RIGHT))
            time.sleep(1)
            seeks.append(heard_after(lambda: player.seek(-way), LEFT))
            time.sleep(1)
        slowest = answers.end()
        player.run(str(Halvane.program), "--action", "FullPlayer")
        time.sleep(3)

        def seek_about():
            for way in [HALF / 2, -HALF / 3] * options.seeks:
                player.seek(way)
                time.sleep(1)
        return clicks, seeks, slowest, player.frames_while(seek_about), player.holes()
    finally:
        end(player.process)
        until(lambda: not sound.playing())


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("halvane", type=pathlib.Path)
    parser.add_argument("gate", type=pathlib.Path)
    parser.add_argument("--delays", type=int, nargs="+", default=[0, 20, 60])
    parser.add_argument("--seeks", type=int, default=5)
    options = parser.parse_args()
    if not options.gate.is_file():
        parser.error(f"{options.gate} is not there, and no disk would be slow")
    Halvane.program = options.halvane.resolve()
    players.missing_tools()
    with tempfile.TemporaryDirectory() as name:
        root = pathlib.Path(name)
        files = {"with table": root / "a" / "table.flac", "without": root / "b" / "bare.flac"}
        for file in files.values():
            file.parent.mkdir()
        make_file(files["with table"])
        make_file(files["without"], "--no-seektable")
        sound = Sound(root)
        print(f"{'ms a read':>9} {'file':<12} {'click ms':>9} {'(range)':>12} {'seek ms':>8} "
              f"{'(range)':>12} {'slowest answer':>15} {'frames 99 %, longest':>15} {'holes':>6}")
        try:
            for delay in options.delays:
                for kind, file in files.items():
                    clicks, seeks, slowest, frames, holes = measure(
                        sound, file, root / f"{file.stem}{delay}", options, delay)
                    print(f"{delay:>9} {kind:<12} {figures(clicks)} {figures(seeks):>21} "
                          f"{slowest * 1000:>12.0f} ms "
                          f"{statistics.quantiles(frames, n=100)[98]:>6.0f} {max(frames):>4} ms "
                          f"{holes:>6}")
        finally:
            end(sound.process)


def figures(seconds):
    span = f"({min(seconds) * 1000:.0f}..{max(seconds) * 1000:.0f})"
    return f"{statistics.median(seconds) * 1000:>9.0f} {span:>12}"


if __name__ == "__main__":
    main()
