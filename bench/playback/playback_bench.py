#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Processor time and wake-ups of whole players while they play one file through one sound server,
and how soon Halvane is heard after a command.

usage: playback_bench.py HALVANE [FILE] [--seconds N] [--rounds N]

Everything runs privately: a PulseAudio with a null sink, and for Halvane a display, a bus and home
folders (tools/private-desktop). The players take turns, each is left alone for five seconds and then
watched; printed are the medians over the rounds, per minute of music. "hidden" is Halvane with its
windows minimised, "paused" after a pause over MPRIS. Shown, it is measured with the renderer that it
chooses where there is no graphics card, and with OpenGL, which the processor computes there. Without
FILE, a FLAC of 16 bits at 44.1 kHz is made. Wake-ups are voluntary context switches.

A click is a stop, silence, and PlayPause over MPRIS, which opens the file again. A skip is Next from a
file that sounds on the left to one that sounds on the right. Both end when the sink's monitor has the
first sample, and both contain the recorder's own share of about 5 ms.

Needs pulseaudio, pactl, parec and Xvfb. Of the other tools it says which are missing, and what is left
out for that.
"""
import argparse
import array
import os
import pathlib
import random
import shutil
import signal
import socket
import statistics
import subprocess
import sys
import tempfile
import time
import wave

try:
    from gi.repository import Gio
except ImportError:
    Gio = None

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "support"))
from private_sound import QUIET, Sound, end, until  # noqa: E402

TOOLS = ROOT / "tools"
SETTLE = 5
REACTIONS = 5  # clicks and skips a round
LEFT, RIGHT, ANY = range(0, 2), range(2, 4), range(4)  # bytes of a frame of two 16-bit samples


def missing_tools():
    """Says what is not installed; ends the program when nothing can be measured without it."""
    needed = [tool for tool in ("pulseaudio", "pactl", "parec", "Xvfb") if not shutil.which(tool)]
    if needed:
        sys.exit(f"missing: {', '.join(needed)}: nothing can be measured")
    for tool, use in (("ffmpeg", "the files are WAV instead of FLAC"), ("mpd", "MPD is left out"),
                      ("mpv", "mpv is left out"), ("openbox", "the hidden player is left out"),
                      ("xdotool", "the hidden player is left out")):
        if not shutil.which(tool):
            print(f"missing: {tool}: {use}")
    if not Gio:
        print("missing: python3-gi: the paused player, clicks and skips are left out")


def noise(path, seconds, pan="stereo|c0=c0|c1=c0"):
    """A file of noise: ffmpeg's pan says on which channels."""
    if shutil.which("ffmpeg"):
        file = path.with_suffix(".flac")
        subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i",
                        f"anoisesrc=c=pink:r=44100:a=0.2:d={seconds}:seed=1", "-af", f"pan={pan}",
                        "-sample_fmt", "s16", str(file)], check=True)
        return file
    file = path.with_suffix(".wav")
    frames = array.array("h")
    for _ in range(44100):
        value = random.randrange(-6000, 6000)
        frames.extend(value if f"c{channel}=c0" in pan else 0 for channel in (0, 1))
    with wave.open(str(file), "wb") as out:
        out.setparams((2, 2, 44100, 0, "NONE", ""))
        for _ in range(seconds):
            out.writeframes(frames.tobytes())
    return file


def first_sound(recorder, where=ANY, seconds=20):
    """When the recorder first hears something in these bytes of a frame."""
    end, position = time.monotonic() + seconds, 0
    try:
        while time.monotonic() < end:
            block = recorder.stdout.read(4096)
            heard = time.monotonic()
            if any(any(block[(byte - position) % 4::4]) for byte in where):
                return heard
            position += len(block)
        raise RuntimeError("heard nothing")
    finally:
        recorder.kill()
        recorder.wait()


def sample(pid):
    """Per thread name: processor time in seconds and voluntary switches."""
    threads = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        try:
            # Threads without a name of their own bear the program's.
            name = "main" if task.name == str(pid) else (task / "comm").read_text().strip()
            spent = int((task / "schedstat").read_text().split()[0]) / 1e9
            status = (task / "status").read_text()
        except (FileNotFoundError, ProcessLookupError):
            continue
        switches = int(status.split("\nvoluntary_ctxt_switches:")[1].split()[0])
        before = threads.get(name, (0, 0))
        threads[name] = (before[0] + spent, before[1] + switches)
    return threads


def watch(pid, seconds):
    before, start = sample(pid), time.monotonic()
    time.sleep(seconds)
    after, span = sample(pid), time.monotonic() - start
    rates = {}
    for name, (spent, switches) in after.items():
        spent0, switches0 = before.get(name, (0, 0))
        rates[name] = ((spent - spent0) * 60 / span, (switches - switches0) / span)
    return rates


class Mpd:
    name = "MPD"
    states = ("playing",)
    program = "mpd"

    def __init__(self, sound, file, folder):
        (folder / "playlists").mkdir()
        address = folder / "control"
        (folder / "conf").write_text(
            f'music_directory "{file.parent}"\nplaylist_directory "{folder}/playlists"\n'
            f'db_file "{folder}/db"\nlog_file "{folder}/log"\nbind_to_address "{address}"\n'
            f'auto_update "no"\naudio_output {{\ntype "pulse"\nname "pulse"\n'
            f'server "{sound.server}"\n}}\n')
        self.process = subprocess.Popen(["mpd", "--no-daemon", str(folder / "conf")], **QUIET)
        self.pid = self.process.pid
        until(address.exists)
        with socket.socket(socket.AF_UNIX) as control:
            control.connect(str(address))
            control.recv(100)

            def ask(command):
                control.sendall(command.encode() + b"\n")
                return control.recv(1000).endswith(b"OK\n")

            ask("update")
            until(lambda: ask(f'add "{file.name}"'))
            self.started = time.monotonic()
            ask("play")

    def enter(self, state):
        pass


class Mpv:
    name = "mpv --no-video"
    states = ("playing",)
    program = "mpv"

    def __init__(self, sound, file, folder):
        self.started = time.monotonic()
        self.process = subprocess.Popen(
            ["mpv", "--no-config", "--no-video", "--no-terminal", "--ao=pulse", str(file)],
            env=dict(os.environ, PULSE_SERVER=sound.server), **QUIET)
        self.pid = self.process.pid

    def enter(self, state):
        pass


class Halvane:
    name = "Halvane"
    states = ["shown"] + ["hidden"] * bool(shutil.which("openbox") and shutil.which("xdotool")) + \
        ["paused"] * bool(Gio)
    program = None  # given on the command line
    has_shown = False

    def __init__(self, sound, file, folder, settings=(), log=os.devnull):
        """`settings` are the program's own; its log goes to a file."""
        pid = folder / "pid"
        # The shell becomes the program, so its number is the program's.
        self.process = subprocess.Popen(
            [str(TOOLS / "private-desktop"), "env", f"PULSE_SERVER={sound.server}", "sh", "-c",
             f'openbox & echo $$ >"{pid}.part"; mv "{pid}.part" "{pid}"; exec env "$@" 2>"{log}"',
             "sh", *settings, str(Halvane.program), str(file)],
            start_new_session=True, **QUIET)
        until(pid.exists)
        self.started = time.monotonic()
        self.pid = int(pid.read_text())
        until(lambda: b"halvane" in pathlib.Path(f"/proc/{self.pid}/comm").read_bytes())
        until(self.read_environment)  # a program has its name a moment before its environment

    def read_environment(self):
        pairs = pathlib.Path(f"/proc/{self.pid}/environ").read_bytes().split(b"\0")
        self.environment = dict(p.decode().split("=", 1) for p in pairs if b"=" in p)
        return self.environment

    def run(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True, text=True).stdout

    def minimise_all(self):
        visible = self.run("xdotool", "search", "--onlyvisible", "--pid", str(self.pid)).split()
        for window in visible:
            self.run("xdotool", "windowminimize", window)
        self.has_shown = self.has_shown or bool(visible)  # it may play before it shows anything
        return self.has_shown and not visible

    def enter(self, state):
        if state == "hidden":
            until(self.minimise_all)
        elif state == "paused":
            self.command("Pause")

    def command(self, name, arguments=None):
        """Sends an MPRIS command, without waiting until it has been obeyed."""
        if not hasattr(self, "bus"):
            self.bus = Gio.DBusConnection.new_for_address_sync(
                self.environment["DBUS_SESSION_BUS_ADDRESS"],
                Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self.bus.call("org.mpris.MediaPlayer2.halvane", "/org/mpris/MediaPlayer2",
                      "org.mpris.MediaPlayer2.Player", name, arguments, None,
                      Gio.DBusCallFlags.NO_AUTO_START, -1, None, None)


class HalvaneOnOpenGl(Halvane):
    """As it would draw on a display without a graphics card, had it not chosen another renderer."""
    name = "Halvane, OpenGL"
    states = ["shown"]

    def __init__(self, sound, file, folder):
        super().__init__(sound, file, folder, ["QSG_RHI_BACKEND=opengl"])


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("halvane", type=pathlib.Path)
    parser.add_argument("file", type=pathlib.Path, nargs="?")
    parser.add_argument("--seconds", type=int, default=30)
    parser.add_argument("--rounds", type=int, default=3)
    options = parser.parse_args()
    Halvane.program = options.halvane.resolve()
    missing_tools()
    with tempfile.TemporaryDirectory() as name:
        root = pathlib.Path(name)
        measure(options, root)


def measure(options, root):
    file = options.file.resolve() if options.file else noise(root / "music", 900)
    sides = root / "sides"
    sides.mkdir()
    noise(sides / "left", 60, "stereo|c0=c0|c1=0*c0")
    noise(sides / "right", 60, "stereo|c0=0*c0|c1=c0")
    sound = Sound(root)
    results, threads, delays, reactions = {}, {}, {}, {"click": [], "skip": []}
    try:
        for number in range(options.rounds):
            for player in (Mpd, Mpv, Halvane, HalvaneOnOpenGl):
                if player.program and not shutil.which(str(player.program)):
                    continue
                folder = root / f"{player.__name__}{number}"
                folder.mkdir()
                recorder = sound.listen()
                running = player(sound, file, folder)
                try:
                    delays.setdefault(player.name, []).append(
                        first_sound(recorder) - running.started)
                    for state in player.states:
                        running.enter(state)
                        time.sleep(SETTLE)
                        rates = watch(running.pid, options.seconds)
                        total = [sum(figures) for figures in zip(*rates.values())]
                        results.setdefault((player.name, state), []).append(total)
                        threads[(player.name, state)] = rates
                finally:
                    end(running.process)
                until(lambda: not sound.playing())
            if Gio:
                react(sound, sides, root / f"reactions{number}", reactions)
                until(lambda: not sound.playing())
    finally:
        end(sound.process)
    report(results, threads)
    print("\nseconds to the first sound: from the start of the program, MPD's from its command to play")
    for player, seconds in delays.items():
        print(f"{player:<16} {statistics.median(seconds):>8.3f}")
    if Gio:
        print("\nHalvane, milliseconds from the command to the first sound: median (range)")
    for name, seconds in reactions.items():
        if seconds:
            print(f"{name:<16} {statistics.median(seconds) * 1000:>8.1f} "
                  f"({min(seconds) * 1000:.1f}..{max(seconds) * 1000:.1f}), {len(seconds)} times")


def react(sound, sides, folder, reactions):
    """Clicks and skips in a folder of two files, and notes how long each took to be heard."""
    folder.mkdir()
    recorder = sound.listen()
    running = Halvane(sound, sides, folder)

    def heard_after(command, where):
        recorder = sound.listen()
        time.sleep(0.3)
        start = time.monotonic()
        running.command(command)
        return first_sound(recorder, where) - start

    try:
        first_sound(recorder, LEFT)
        for _ in range(REACTIONS):
            time.sleep(1)
            running.command("Stop")
            time.sleep(1)
            reactions["click"].append(heard_after("PlayPause", LEFT))
            time.sleep(1)
            reactions["skip"].append(heard_after("Next", RIGHT))
            running.command("Previous")
    finally:
        end(running.process)


def report(results, threads):
    print(f"{'player':<16} {'state':<8} {'processor s/min':>15} {'(range)':>15} {'wake-ups/s':>11}")
    for (player, state), rounds in results.items():
        spent = [r[0] for r in rounds]
        woken = statistics.median(r[1] for r in rounds)
        span = f"({min(spent):.3f}..{max(spent):.3f})"
        print(f"{player:<16} {state:<8} {statistics.median(spent):>15.3f} {span:>15} {woken:>11.1f}")
    print("\nHalvane's threads in the last round")
    for (player, state), rates in threads.items():
        if player != "Halvane":
            continue
        for name, (spent, woken) in sorted(rates.items(), key=lambda item: -item[1][0]):
            if woken > 0.01 or spent > 0.001:
                print(f"{state:<8} {name:<16} {spent:>10.3f} s/min {woken:>8.1f} wake-ups/s")


if __name__ == "__main__":
    main()
