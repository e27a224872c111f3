#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Processor time and wake-ups of whole players while they play one file through one sound server.

usage: playback_bench.py HALVANE [FILE] [--seconds N] [--rounds N]

Everything runs privately: a PulseAudio with a null sink, and for Halvane a display, a bus and home
folders (tools/private-desktop). The players take turns, each is left alone for five seconds and then
watched; printed are the medians over the rounds, per minute of music. "hidden" is Halvane with its
windows minimised, "paused" after a pause over MPRIS. Without FILE, a FLAC of 16 bits at 44.1 kHz is
made. Needs ffmpeg, mpd, mpv, openbox, playerctl and xdotool; a player that is not installed is left out.
"""
import argparse
import os
import pathlib
import shutil
import signal
import socket
import statistics
import subprocess
import tempfile
import time

QUIET = dict(stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
TOOLS = pathlib.Path(__file__).resolve().parents[2] / "tools"
SETTLE = 5


def until(condition, seconds=20):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise RuntimeError("gave up waiting")
        time.sleep(0.02)


class Sound:
    """A PulseAudio of its own, with one null sink."""

    def __init__(self, folder):
        path = folder / "native"
        self.server = f"unix:{path}"
        environment = dict(os.environ, XDG_RUNTIME_DIR=str(folder), PULSE_RUNTIME_PATH=str(folder),
                           PULSE_STATE_PATH=str(folder), HOME=str(folder))
        self.process = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
             "-L", "module-null-sink sink_name=null rate=44100",
             "-L", f"module-native-protocol-unix auth-anonymous=1 socket={path}"],
            env=environment, **QUIET)
        until(path.exists)

    def listen(self):
        """A recorder of what the sink plays; it has begun when this returns."""
        recorder = subprocess.Popen(
            ["parec", f"--server={self.server}", "--device=null.monitor", "--raw",
             "--latency-msec=5"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        recorder.stdout.read(1)
        return recorder

    def playing(self):
        listed = subprocess.run(["pactl", f"--server={self.server}", "list", "short", "sink-inputs"],
                                capture_output=True, text=True).stdout
        return bool(listed.strip())


def first_sound(recorder):
    """When the recorder first hears something."""
    while not any(os.read(recorder.stdout.fileno(), 4096)):
        pass
    heard = time.monotonic()
    recorder.kill()
    recorder.wait()
    return heard


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


def end(process):
    process.send_signal(signal.SIGTERM)
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


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
    states = ("shown", "hidden", "paused")
    program = None  # given on the command line
    has_shown = False

    def __init__(self, sound, file, folder):
        pid = folder / "pid"
        # The shell becomes the program, so its number is the program's.
        self.process = subprocess.Popen(
            [str(TOOLS / "private-desktop"), "env", f"PULSE_SERVER={sound.server}", "sh", "-c",
             f'openbox & echo $$ >"{pid}.part"; mv "{pid}.part" "{pid}"; exec "$0" "$1"',
             str(Halvane.program), str(file)],
            start_new_session=True, **QUIET)
        until(pid.exists)
        self.started = time.monotonic()
        self.pid = int(pid.read_text())
        until(lambda: b"halvane" in pathlib.Path(f"/proc/{self.pid}/comm").read_bytes())
        pairs = pathlib.Path(f"/proc/{self.pid}/environ").read_bytes().split(b"\0")
        self.environment = dict(p.decode().split("=", 1) for p in pairs if b"=" in p)

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
            self.run("playerctl", "--player=halvane", "pause")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("halvane", type=pathlib.Path)
    parser.add_argument("file", type=pathlib.Path, nargs="?")
    parser.add_argument("--seconds", type=int, default=30)
    parser.add_argument("--rounds", type=int, default=3)
    options = parser.parse_args()
    Halvane.program = options.halvane.resolve()
    with tempfile.TemporaryDirectory() as name:
        root = pathlib.Path(name)
        measure(options, root)


def measure(options, root):
    file = options.file.resolve() if options.file else root / "music.flac"
    if not options.file:
        subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i",
                        "anoisesrc=c=pink:r=44100:a=0.2:d=900:seed=1", "-ac", "2", "-sample_fmt",
                        "s16", str(file)], check=True)
    sound = Sound(root)
    results, threads, delays = {}, {}, {}
    try:
        for number in range(options.rounds):
            for player in (Mpd, Mpv, Halvane):
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
    finally:
        end(sound.process)
    report(results, threads)
    print("\nseconds to the first sound: from the start of the program, MPD's from its command to play")
    for player, seconds in delays.items():
        print(f"{player:<16} {statistics.median(seconds):>8.3f}")


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
