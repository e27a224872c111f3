# SPDX-License-Identifier: MIT
"""A sound server of one's own, and what it plays."""

import os
import signal
import subprocess
import time

QUIET = dict(stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def until(condition, seconds=20):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise RuntimeError("gave up waiting")
        time.sleep(0.02)


def end(process):
    process.send_signal(signal.SIGTERM)
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


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
             "--latency-msec=5"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, bufsize=0)
        until(lambda: len(recorder.stdout.read(4)) == 4)
        return recorder

    def playing(self):
        listed = subprocess.run(["pactl", f"--server={self.server}", "list", "short", "sink-inputs"],
                                capture_output=True, text=True).stdout
        return bool(listed.strip())

    def record(self, file):
        """Records what the sink plays, as two channels of 16 bits, until the recorder is ended."""
        with open(file, "wb") as out:
            return subprocess.Popen(
                ["parec", f"--server={self.server}", "--device=null.monitor", "--raw"],
                stdin=subprocess.DEVNULL, stdout=out)
