# SPDX-License-Identifier: MIT
"""The real program with a window manager and a screen reader, on the display and the session bus
that are there. Without a sound server it plays silently."""

import os
import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from screen_reader import find_application, turn_on, wait_for  # noqa: E402

SECONDS = 60
# Title, artist, album.
TRACKS = [
    ("Amber", "Mira Holt", "Kelp"), ("Bellows", "Mira Holt", "Kelp"),
    ("Cinder", "The Lanterns", "Sodium"), ("Dune", "The Lanterns", "Sodium"),
]


def make_music(folder):
    for number, (title, artist, album) in enumerate(TRACKS):
        tags = [f"title={title}", f"artist={artist}", f"album={album}"]
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i",
                        f"sine=frequency={220 + 110 * number}:duration={SECONDS}",
                        *(word for tag in tags for word in ("-metadata", tag)),
                        folder / f"{number}.flac"], check=True)


class RealProgram:
    """Give it the program's path, and what makes its music in a folder. Ends the program when it is
    left."""

    def __init__(self, program, make_music=make_music, **environment):
        self._program = program
        self._make_music = make_music
        self._environment = dict(os.environ, **environment)

    def __enter__(self):
        self._folder = tempfile.TemporaryDirectory()
        music = pathlib.Path(self._folder.name) / "music"
        music.mkdir()
        self.music = music
        self._make_music(music)
        self._manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
        turn_on()
        self.start(music)
        return self

    def start(self, *paths):
        self.process = subprocess.Popen([self._program, *paths], env=self._environment)
        self.application = find_application(self.process)
        self.window = wait_for("the main window", lambda: self.application.get_child_at_index(0))

    def __exit__(self, *_):
        for process in (self.process, self._manager):
            process.terminate()
            process.wait()
        self._folder.cleanup()

    def open(self, path):
        """What a file manager does; the program runs already."""
        subprocess.run([self._program, path], env=self._environment, check=True)

    def media(self, *arguments):
        """What a media client says."""
        return subprocess.run(["playerctl", "--player=halvane", *arguments], text=True,
                              capture_output=True).stdout.strip()

    def wait_for_media(self, expected, *arguments):
        wait_for(f"{expected} from {' '.join(arguments)}", lambda: self.media(*arguments) == expected)
