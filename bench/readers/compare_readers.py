#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Reads files of every kind with Halvane, ffprobe and mutagen, and prints where they differ.

The files are made from one sound of 300,000 frames, with the encoders that are installed, and tagged
by mutagen with one set of tags. A row of the table is a file and what differs in it; what was put
into the file stands first where that is known.

    bench/readers/compare_readers.py build/release/bin/describe_files FOLDER
"""
import base64
import json
import os
import pathlib
import shutil
import struct
import subprocess
import sys

import mutagen
from mutagen import aiff, apev2, asf, dsdiff, dsf, flac, id3, mp4, oggflac, oggopus, oggspeex, oggvorbis, wave

FRAMES = 300_000
TAGS = {"title": "Lamplight 夜曲", "artist": "A Singer", "album": "Night Walk", "albumArtist": "The Band",
        "discNumber": 2, "trackNumber": 3, "artistSort": "Singer, A", "albumArtistSort": "Band, The",
        "albumSort": "Walk, Night", "genre": "Folk", "year": 2019}
WHOLE = [*TAGS, "picture"]
PICTURE = b"\xff\xd8\xff\xe0" + b"picture " * 500
FF = 'ffmpeg -nostdin -v error -y -i "$IN" '
# (file, rate, channels, bits, command): the encoder reads the WAVE file $IN and writes $OUT.
FILES = [
    ("cbr.mp3", 44100, 2, 0, 'lame --quiet --cbr -b 192 "$IN" "$OUT"'),
    ("vbr.mp3", 44100, 2, 0, 'lame --quiet -V2 "$IN" "$OUT"'),
    ("abr.mp3", 48000, 2, 0, 'lame --quiet --abr 160 "$IN" "$OUT"'),
    ("cbr_without_header.mp3", 44100, 2, 0, 'lame --quiet -t --cbr -b 192 "$IN" "$OUT"'),
    ("vbr_without_header.mp3", 44100, 2, 0, 'lame --quiet -t -V4 "$IN" "$OUT"'),
    ("mono.mp3", 22050, 1, 0, 'lame --quiet -V4 "$IN" "$OUT"'),
    ("libmp3lame.mp3", 44100, 2, 0, FF + '-c:a libmp3lame -b:a 192k "$OUT"'),
    ("shine.mp3", 44100, 2, 0, FF + '-c:a libshine -b:a 192k "$OUT"'),
    ("layer2.mp3", 44100, 2, 0, FF + '-c:a mp2 -b:a 192k -f mp2 "$OUT"'),
    ("aac.m4a", 44100, 2, 0, FF + '-c:a aac "$OUT"'),
    ("aac_in_fragments.m4a", 44100, 2, 0, FF + '-c:a aac -movflags frag_keyframe+empty_moov "$OUT"'),
    ("aac_index_in_front.m4a", 48000, 6, 0, FF + '-c:a aac -movflags faststart "$OUT"'),
    ("aac_22.m4b", 22050, 2, 0, FF + '-c:a aac "$OUT"'),
    ("alac.m4a", 44100, 2, 16, FF + '-c:a alac "$OUT"'),
    ("alac_24.alac", 96000, 2, 24, FF + '-c:a alac -sample_fmt s32p -f ipod "$OUT"'),
    ("flac.m4a", 44100, 2, 16, FF + '-c:a flac -strict -2 -f mp4 "$OUT"'),
    ("flac_24.m4a", 96000, 2, 24, FF + '-c:a flac -strict -2 -f mp4 "$OUT"'),
    ("opus.m4a", 48000, 2, 0, FF + '-c:a libopus -strict -2 -f mp4 "$OUT"'),
    ("pcm.caf", 44100, 2, 16, FF + '-c:a pcm_s16be "$OUT"'),
    ("pcm_little.caf", 96000, 2, 24, FF + '-c:a pcm_s24le "$OUT"'),
    ("alac.caf", 44100, 2, 16, FF + '-c:a alac "$OUT"'),
    ("aac.caf", 44100, 2, 0, FF + '-c:a aac "$OUT"'),
    ("opus.caf", 48000, 2, 0, FF + '-c:a libopus "$OUT"'),
    ("adts.aac", 44100, 2, 0, FF + '-c:a aac "$OUT"'),
    ("flac.flac", 44100, 2, 16, 'flac -s -f -o "$OUT" "$IN"'),
    ("flac_24.flac", 192000, 2, 24, 'flac -s -f -o "$OUT" "$IN"'),
    ("flac_surround.flac", 48000, 6, 24, 'flac -s -f -o "$OUT" "$IN"'),
    ("flac_of_unstated_length.flac", 44100, 2, 16, FF + '-c:a flac -f flac - | cat >"$OUT"'),
    ("pcm.wav", 44100, 2, 16, 'cp "$IN" "$OUT"'),
    ("extensible.wav", 96000, 6, 24, FF + '-c:a pcm_s24le "$OUT"'),
    ("rf64.wav", 44100, 2, 16, FF + '-c:a pcm_s16le -rf64 always "$OUT"'),
    ("w64.wav", 44100, 2, 16, FF + '-c:a pcm_s16le -f w64 "$OUT"'),
    ("float.wav", 44100, 2, 32, FF + '-c:a pcm_f32le "$OUT"'),
    ("eight_bits.wav", 8000, 1, 8, FF + '-c:a pcm_u8 "$OUT"'),
    ("adpcm.wav", 44100, 2, 0, FF + '-c:a adpcm_ms "$OUT"'),
    ("mp3.wav", 44100, 2, 0, FF + '-c:a libmp3lame "$OUT"'),
    ("pcm.aiff", 44100, 2, 16, FF + '"$OUT"'),
    ("pcm_24.aif", 96000, 2, 24, FF + '-c:a pcm_s24be -f aiff "$OUT"'),
    ("sowt.aifc", 44100, 2, 16, FF + '-c:a pcm_s16le -f aiff "$OUT"'),
    ("float.aifc", 44100, 2, 32, FF + '-c:a pcm_f32be -f aiff "$OUT"'),
    ("alaw.aifc", 44100, 2, 0, FF + '-c:a pcm_alaw -f aiff "$OUT"'),
    ("opus.opus", 48000, 2, 0, 'opusenc --quiet "$IN" "$OUT"'),
    ("opus_resampled.opus", 44100, 2, 0, 'opusenc --quiet "$IN" "$OUT"'),
    ("opus_by_libav.opus", 48000, 1, 0, FF + '-c:a libopus "$OUT"'),
    ("vorbis.ogg", 44100, 2, 0, 'oggenc -Q -q 6 -o "$OUT" "$IN"'),
    ("vorbis_by_libav.ogg", 48000, 6, 0, FF + '-c:a libvorbis "$OUT"'),
    ("opus.oga", 48000, 2, 0, FF + '-c:a libopus -f ogg "$OUT"'),
    ("flac.oga", 44100, 2, 16, 'flac -s -f --ogg -o "$OUT" "$IN"'),
    ("flac_24.ogg", 96000, 2, 24, FF + '-c:a flac -sample_fmt s32 "$OUT"'),
    ("speex.ogg", 16000, 1, 0, FF + '-c:a libspeex "$OUT"'),
    ("wavpack.wv", 44100, 2, 16, FF + '-c:a wavpack "$OUT"'),
    ("wavpack_24.wv", 96000, 2, 24, FF + '-c:a wavpack -sample_fmt s32p "$OUT"'),
    ("wavpack_float.wv", 44100, 2, 32, FF + '-c:a wavpack -sample_fmt fltp "$OUT"'),
    ("musepack8.mpc", 44100, 2, 0, 'mpcenc --silent --overwrite "$IN" "$OUT"'),
    ("tta.tta", 44100, 2, 16, FF + '-c:a tta "$OUT"'),
    ("tta_24.tta", 96000, 2, 24, FF + '-c:a tta -sample_fmt s32 "$OUT"'),
    ("wma.wma", 44100, 2, 0, FF + '-c:a wmav2 -b:a 192k "$OUT"'),
    ("wma_1.wma", 44100, 1, 0, FF + '-c:a wmav1 -b:a 96k "$OUT"'),
]


def music(folder, rate, channels, bits):
    path = folder / f"in_{rate}_{channels}_{bits}.wav"
    if not path.exists():
        tone = "0.3*sin(2*PI*220*t+3*sin(2*PI*0.7*t))+0.1*sin(2*PI*1760*t)*mod(floor(t)\\,2)"
        samples = {24: "pcm_s24le", 32: "pcm_f32le", 8: "pcm_u8"}.get(bits, "pcm_s16le")
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i",
                        f"aevalsrc={'|'.join([tone] * channels)}:s={rate}:d=60", "-af", f"atrim=end_sample={FRAMES}",
                        "-c:a", samples, path], check=True)
    return path


# DSD and Monkey's Audio have no encoder here: silence, by hand.
def by_hand(folder):
    rate, size = 2822400, 806400
    form = lambda name, body: name + struct.pack(">Q", len(body)) + body + b"\0" * (len(body) % 2)
    sound = b"\x69" * (4096 * 2 * (size // 4096 + 1))
    fmt = b"fmt " + struct.pack("<QIIIIIIQII", 52, 1, 0, 2, 2, rate, 1, size * 8, 4096, 0)
    data = b"data" + struct.pack("<Q", 12 + len(sound)) + sound
    (folder / "dsd.dsf").write_bytes(b"DSD " + struct.pack("<QQQ", 28, 28 + len(fmt) + len(data), 0) + fmt + data)
    kind = form(b"FS  ", struct.pack(">I", rate)) + form(b"CHNL", struct.pack(">H", 2) + b"SLFTSRGT") + form(
        b"CMPR", b"DSD \x0enot compressed\0")
    (folder / "dsd.dff").write_bytes(form(b"FRM8", b"DSD " + form(b"FVER", b"\1\5\0\0") + form(
        b"PROP", b"SND " + kind) + form(b"DSD ", b"\x69" * size * 2)))
    block = struct.pack("<II", 0x80000000, 3) + b"\0" * 8
    count, last = FRAMES // 73728 + 1, FRAMES % 73728
    table = b"".join(struct.pack("<I", 76 + 4 * count + len(block) * i) for i in range(count))
    (folder / "monkey.ape").write_bytes(
        b"MAC " + struct.pack("<HHIIIIIII16s", 3990, 0, 52, 24, len(table), 0, 0, len(block) * count, 0, b"\0" * 16)
        + struct.pack("<HHIIIHHI", 1000, 32, 73728, last, count, 16, 2, 44100) + table + block * count)
    # Musepack 7: words of 32 bits, from the eighth bit on; a frame is its size in 20 bits and, of
    # silence, 8 bits of no bands.
    frames, rest = FRAMES // 1152 + 1, FRAMES % 1152
    bits = "0" * 8 + (format(8, "020b") + "0" * 8) * frames
    bits = bits.ljust((len(bits) // 32 + 3) * 32, "0")
    words = b"".join(struct.pack("<I", int(bits[i:i + 32], 2)) for i in range(0, len(bits), 32))
    (folder / "musepack7.mpc").write_bytes(b"MP+\x07" + struct.pack("<IIIII", frames, 0, 0, 0, 1 << 31 | rest << 20) + words)
    return [("dsd.dsf", rate, 2, 1, size * 8 / rate), ("dsd.dff", rate, 2, 1, size * 8 / rate),
            ("monkey.ape", 44100, 2, 16, FRAMES / 44100), ("musepack7.mpc", 44100, 2, 0, FRAMES / 44100)]


def make(folder):
    made = []
    for name, rate, channels, bits, command in FILES:
        environment = dict(os.environ, IN=str(music(folder, rate, channels, bits)), OUT=str(folder / name))
        done = subprocess.run(["bash", "-ec", command], env=environment, stdin=subprocess.DEVNULL, capture_output=True)
        if done.returncode:
            print(f"not made: {name}: {done.stderr.decode().strip()}")
        else:
            made.append((name, rate, channels, bits, FRAMES / rate))
    made += by_hand(folder)
    return made


# What mutagen can't tag is tagged by ffmpeg, with the fields that the container has names for.
LIBAV = {"title": "title", "artist": "artist", "album": "album", "albumArtist": "album_artist", "discNumber": "disc",
         "trackNumber": "track", "genre": "genre", "year": "date"}
LIBAV_FIELDS = {".caf": list(LIBAV), ".wav": ["title", "artist", "album", "trackNumber", "genre", "year"]}


def tag_with_libav(path):
    plain = path.rename(path.with_stem("plain_" + path.stem))
    fields = [f"{LIBAV[field]}={TAGS[field]}" for field in LIBAV_FIELDS[path.suffix]]
    subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", "-i", plain, "-c", "copy"]
                   + (["-rf64", "always"] if path.stem == "rf64" else [])
                   + [part for field in fields for part in ("-metadata", field)] + [path], check=True)
    plain.unlink()
    return LIBAV_FIELDS[path.suffix]


def id3_frames():
    return [id3.TIT2(3, TAGS["title"]), id3.TPE1(3, TAGS["artist"]), id3.TALB(3, TAGS["album"]),
            id3.TPE2(3, TAGS["albumArtist"]), id3.TPOS(3, "2/3"), id3.TRCK(3, "3/12"), id3.TCMP(3, "1"),
            id3.TSOP(3, TAGS["artistSort"]), id3.TSO2(3, TAGS["albumArtistSort"]), id3.TSOA(3, TAGS["albumSort"]),
            id3.TCON(3, "Folk"), id3.TDRC(3, "2019-04-01"), id3.APIC(0, "image/jpeg", 3, "front", PICTURE)]


VORBIS = {"title": TAGS["title"], "artist": TAGS["artist"], "album": TAGS["album"], "albumartist": TAGS["albumArtist"],
          "discnumber": "2/3", "tracknumber": "3/12", "compilation": "1", "artistsort": TAGS["artistSort"],
          "albumartistsort": TAGS["albumArtistSort"], "albumsort": TAGS["albumSort"], "genre": "Folk", "date": "2019-04-01"}


def tag(path):
    """Gives the fields that the file has now."""
    if path.stem == "w64":
        return []  # the container has no place for tags
    if path.suffix == ".caf" or path.stem == "rf64":
        return tag_with_libav(path)
    kind = mutagen.File(path)
    if isinstance(kind, (oggvorbis.OggVorbis, oggopus.OggOpus, oggflac.OggFLAC, oggspeex.OggSpeex, flac.FLAC)):
        kind.update(VORBIS)
        picture = flac.Picture()
        picture.type, picture.mime, picture.data = 3, "image/jpeg", PICTURE
        if isinstance(kind, flac.FLAC):
            kind.add_picture(picture)
        else:
            kind["metadata_block_picture"] = [base64.b64encode(picture.write()).decode()]
    elif isinstance(kind, mp4.MP4):
        kind.update({"\xa9nam": TAGS["title"], "\xa9ART": TAGS["artist"], "\xa9alb": TAGS["album"], "\xa9gen": "Folk",
                     "aART": TAGS["albumArtist"], "disk": [(2, 3)], "trkn": [(3, 12)], "cpil": True,
                     "soar": TAGS["artistSort"], "soaa": TAGS["albumArtistSort"], "soal": TAGS["albumSort"],
                     "\xa9day": "2019-04-01", "covr": [mp4.MP4Cover(PICTURE, mp4.MP4Cover.FORMAT_JPEG)]})
    elif isinstance(kind, asf.ASF):
        kind.update({"Title": TAGS["title"], "Author": TAGS["artist"], "WM/AlbumTitle": TAGS["album"],
                     "WM/AlbumArtist": TAGS["albumArtist"], "WM/PartOfSet": "2/3", "WM/TrackNumber": "3",
                     "WM/IsCompilation": True, "WM/ArtistSortOrder": TAGS["artistSort"],
                     "WM/AlbumArtistSortOrder": TAGS["albumArtistSort"], "WM/AlbumSortOrder": TAGS["albumSort"],
                     "WM/Genre": "Folk", "WM/Year": "2019-04-01"})
        body = struct.pack("<bI", 3, len(PICTURE)) + "image/jpeg\0".encode("utf-16-le") + b"\0\0" + PICTURE
        kind["WM/Picture"] = [asf.ASFByteArrayAttribute(body)]
    elif path.suffix in (".wv", ".ape", ".mpc"):
        kind = apev2.APEv2()
        kind.update({"Title": TAGS["title"], "Artist": TAGS["artist"], "Album": TAGS["album"], "Genre": "Folk",
                     "Album Artist": TAGS["albumArtist"], "Disc": "2/3", "Track": "3/12", "Compilation": "1",
                     "ArtistSort": TAGS["artistSort"], "AlbumArtistSort": TAGS["albumArtistSort"],
                     "AlbumSort": TAGS["albumSort"], "Year": "2019-04-01"})
        kind["Cover Art (Front)"] = apev2.APEBinaryValue(b"front.jpg\0" + PICTURE)
        kind.save(path)
        return WHOLE
    elif isinstance(kind, (wave.WAVE, aiff.AIFF, dsf.DSF, dsdiff.DSDIFF)):
        if kind.tags is None:
            kind.add_tags()
        for frame in id3_frames():
            kind.tags.add(frame)
    elif path.suffix in (".mp3", ".aac", ".tta"):
        kind = id3.ID3()
        for frame in id3_frames():
            kind.add(frame)
        kind.save(path, v1=0)
        return WHOLE
    kind.save()
    return WHOLE


def ffprobe(path):
    answer = subprocess.run(["ffprobe", "-v", "error", "-show_format", "-show_streams", "-select_streams", "a:0", "-of", "json", path],
                            capture_output=True)
    answer = json.loads(answer.stdout or "{}")
    stream = (answer.get("streams") or [{}])[0]
    return {"seconds": float(stream.get("duration") or answer.get("format", {}).get("duration") or 0),
            "rate": int(stream.get("sample_rate", 0)), "channels": stream.get("channels"),
            "bits": int(stream.get("bits_per_raw_sample") or stream.get("bits_per_sample") or 0)}


def by_mutagen(path):
    try:
        info = mutagen.File(path).info
    except Exception:
        return {}
    return {"seconds": getattr(info, "length", 0), "rate": getattr(info, "sample_rate", 0),
            "channels": getattr(info, "channels", None), "bits": getattr(info, "bits_per_sample", 0)}


def number(text, unit):
    return float(text.removesuffix(unit) or 0)


def main():
    program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    made = make(folder)
    tagged = {name: tag(folder / name) for name, *_ in made}
    lines = subprocess.run([program, *(folder / name for name, *_ in made)], check=True, capture_output=True).stdout
    print("| file | what | made | Halvane | its engine | ffprobe | mutagen |\n|---|---|---|---|---|---|---|")
    differing = 0
    for (name, rate, channels, bits, seconds), line in zip(made, lines.splitlines()):
        answer = json.loads(line)
        record, engine = answer["record"], answer["engine"] or {}
        probe, other = ffprobe(folder / name), by_mutagen(folder / name)
        rows = [("seconds", seconds, record.get("durationSeconds", 0), engine.get("seconds"), probe, other, 0.0006),
                ("rate", rate, 1000 * number(record["sampleRate"], " kHz"), engine.get("sampleRate"), probe, other, 51),
                ("bits", bits, number(record["bitDepth"], "-bit"), bits, probe, other, 0),
                ("channels", channels, channels, engine.get("channels"), probe, other, 0)]
        lines_of_file = [f"| {name} | {what} | {want:.9g} | {ours:.9g} | {played or 0:.9g} | {probe[what] or 0:.9g} | "
                         f"{other.get(what) or 0:.9g} |"
                         for what, want, ours, played, probe, other, tolerance in rows
                         if any(abs((value or 0) - want) > tolerance for value in (ours, played, probe[what], other.get(what, want)))]
        if "kbps" in record["quality"]:
            whole = (folder / name).stat().st_size * 8 / record["durationSeconds"] / 1000
            if str(round(whole)) not in record["quality"]:
                lines_of_file.append(f"| {name} | bitrate | {whole:.0f} | {record['quality']} |||")
        record["picture"] = record["hasEmbeddedArtwork"]
        lines_of_file += [f"| {name} | {field} | {TAGS.get(field, True)} | {record.get(field)} ||||"
                          for field in tagged[name] if record.get(field) != TAGS.get(field, True)]
        differing += bool(lines_of_file)
        print("\n".join(lines_of_file), end="\n" if lines_of_file else "")
    print(f"\n{len(made)} files, {len(made) - differing} of which all read alike.")


main()
