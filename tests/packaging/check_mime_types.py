#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""check_mime_types.py SOURCE-FOLDER: the desktop entry names the type of every file that opens."""
import fnmatch
import pathlib
import re
import sys

source = pathlib.Path(sys.argv[1])
scan = (source / "src/metadata/audio_file_scan.cpp").read_text()
playable = re.search(r"hasPlayableExtension.*?extensions\{(.*?)\}", scan, re.DOTALL)[1]
entry = (source / "packaging/org.halvane.Halvane.desktop").read_text()
named = set(re.search(r"^MimeType=(.*)$", entry, re.MULTILINE)[1].rstrip(";").split(";"))

# The desktop's own list, and what the package adds to it.
globs = [line.split(":")[1:3] for line in open("/usr/share/mime/globs2") if line[0] != "#"]
added = (source / "packaging/org.halvane.Halvane.xml").read_text()
for kind in re.finditer(r'<mime-type type="([^"]+)">(.*?)</mime-type>', added, re.DOTALL):
    globs += [[kind[1], pattern] for pattern in re.findall(r'<glob pattern="([^"]+)"', kind[2])]

failed = False
lists = re.findall(r'"\.(\w+)"_L1', (source / "src/metadata/playlists/playlist_file.cpp").read_text())
for extension in re.findall(r'"(\w+)"', playable) + lists:
    kinds = {kind for kind, pattern in globs if fnmatch.fnmatch(f"a.{extension}", pattern.strip())}
    # A file of a type that the desktop does not know is opened by nobody.
    if not kinds & named:
        print(f"*.{extension} is {' or '.join(sorted(kinds)) or 'of no type'}, which the desktop entry does not name")
        failed = True
sys.exit(failed)
