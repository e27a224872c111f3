#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""make_samples.py FOLDER: tagged files as other programs write them, and as badly as some do."""
import os, shutil, struct, subprocess, sys
from mutagen.aiff import AIFF
from mutagen.apev2 import APEv2
from mutagen.asf import ASF, ASFByteArrayAttribute
from mutagen.flac import FLAC, Picture
from mutagen.id3 import APIC, ID3, POPM, TALB, TCMP, TCON, TDRC, TIT2, TPE1, TPE2, TPOS, TRCK, TSO2, TSOA, TSOP, TXXX
from mutagen.mp4 import MP4, MP4Cover, MP4FreeForm
from mutagen.oggflac import OggFLAC
from mutagen.oggopus import OggOpus
from mutagen.oggspeex import OggSpeex
from mutagen.oggvorbis import OggVorbis
from mutagen.wave import WAVE

FREE = "----:com.apple.iTunes:"

out = sys.argv[1]
os.makedirs(out, exist_ok=True)
os.chdir(out)


def run(*command):
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)


def ff(*arguments):
    run("ffmpeg", "-nostdin", "-loglevel", "error", "-y", *arguments)


def copy(base, name):
    shutil.copyfile(base, name)
    return name


# Two seconds of each kind of stream.
ff("-f", "lavfi", "-i", "sine=440:duration=2", "-ac", "2", "-ar", "44100", "tone.wav")
ff("-i", "tone.wav", "-ar", "96000", "-c:a", "pcm_s24le", "deep.wav")
run("lame", "--quiet", "-b", "128", "tone.wav", "bare.mp3")
run("flac", "-s", "-f", "tone.wav", "-o", "bare.flac")
run("flac", "-s", "-f", "deep.wav", "-o", "deep.flac")
for codec in ("aac", "alac"):
    ff("-i", "tone.wav", "-c:a", codec, "-map_metadata", "-1", f"bare_{codec}.m4a")
ff("-i", "tone.wav", "-f", "adts", "bare.aac")
ff("-i", "tone.wav", "-f", "aiff", "bare.aiff")
ff("-i", "tone.wav", "-c:a", "pcm_s16le", "-f", "aiff", "sowt.aifc")
ff("-i", "tone.wav", "-c:a", "pcm_mulaw", "-f", "aiff", "ulaw.aifc")
ff("-i", "tone.wav", "-c:a", "adpcm_ms", "adpcm.wav")
ff("-i", "tone.wav", "-c:a", "pcm_f32le", "float.wav")
ff("-i", "tone.wav", "-c:a", "pcm_s16be", "-metadata", "title=Lamplight", "-metadata",
   "artist=The Lanterns", "-metadata", "album=Night Walk", "pcm.caf")
ff("-i", "tone.wav", "-c:a", "alac", "alac.caf")
ff("-i", "tone.wav", "-movflags", "frag_keyframe+empty_moov", "fragmented.m4a")
for name, codec in (("vorbis.ogg", "libvorbis"), ("bare.opus", "libopus"), ("flac.oga", "flac"), ("bare.wv", "wavpack"), ("bare.tta", "tta"), ("bare.wma", "wmav2")):
    ff("-i", "tone.wav", "-c:a", codec, "-map_metadata", "-1", name)
ff("-i", "tone.wav", "-af", "apad=pad_dur=0.1", "-c:a", "libspeex", "-map_metadata", "-1", "speex.ogg")
ff("-i", "deep.wav", "-c:a", "wavpack", "deep.wv")
run("mpcenc", "--silent", "--overwrite", "tone.wav", "bare.mpc")
# One-bit sound: silence, which is a bit pattern of its own, of 2 seconds at 64 times 44.1 kHz.
DSD_RATE, DSD_BYTES = 2822400, 705600


def dsf(tag=b""):
    sound = b"\x69" * (4096 * 2 * (DSD_BYTES // 4096 + 1))
    data = b"data" + struct.pack("<Q", 12 + len(sound)) + sound
    fmt = b"fmt " + struct.pack("<QIIIIIIQII", 52, 1, 0, 2, 2, DSD_RATE, 1, DSD_BYTES * 8, 4096, 0)
    size = 28 + len(fmt) + len(data)
    return b"DSD " + struct.pack("<QQQ", 28, size + len(tag), size if tag else 0) + fmt + data + tag


def chunk(name, body):
    return name + struct.pack(">Q", len(body)) + body + b"\0" * (len(body) % 2)


def dff(behind=b""):
    kind = chunk(b"FS  ", struct.pack(">I", DSD_RATE)) + chunk(b"CHNL", struct.pack(">H", 2) + b"SLFTSRGT") + chunk(
        b"CMPR", b"DSD \x0enot compressed\0")
    body = b"DSD " + chunk(b"FVER", b"\1\5\0\0") + chunk(b"PROP", b"SND " + kind) + chunk(b"DSD ", b"\x69" * DSD_BYTES * 2)
    return chunk(b"FRM8", body + behind)


open("bare.dsf", "wb").write(dsf())
open("bare.dff", "wb").write(dff())
# Monkey's Audio: a header of version 3.99 and one block of silence, 2 seconds long.
SILENT_BLOCK = struct.pack(">II", 0x80000000, 3 << 24)
open("bare.ape", "wb").write(
    b"MAC " + struct.pack("<HHIIIIIII16s", 3990, 0, 52, 24, 4, 44, 0, len(SILENT_BLOCK), 0, b"\0" * 16)
    + struct.pack("<HHIIIHHI", 1000, 0, 73728 * 4, 88200, 1, 16, 2, 44100) + struct.pack("<I", 80) + SILENT_BLOCK)
# Names that mislead.
copy("bare_alac.m4a", "really_mp4.alac")
copy("bare.flac", "really_flac.mp3")
copy("bare_aac.m4a", "really_mp4.aac")
copy("bare_aac.m4a", "book.m4b")
copy("bare.aiff", "short.aif")
copy("bare.mp3", "noext")
copy("vorbis.ogg", "really_vorbis.mp3")
# ADIF: no copyright, original, home 0, constant rate of 16,000 bits a second, one program, buffer
# fullness 0, instance 0, profile LC, 44.1 kHz.
bits = "0" "0" "0" "0" + format(16000, "023b") + "0000" + "0" * 20 + "0000" + "01" + "0100"
bits = bits.ljust((len(bits) + 7) // 8 * 8, "0")
header = b"ADIF" + bytes(int(bits[i:i + 8], 2) for i in range(0, len(bits), 8))
open("adif.aac", "wb").write(header.ljust(4000, b"\0"))

JPEG, PNG = b"\xff\xd8\xff\xe0front", b"\x89PNG\r\n\x1a\nback"


# ID3 by hand, for what careful writers refuse to write.
def synchsafe(n):
    return bytes((n >> s) & 0x7F for s in (21, 14, 7, 0))


def frame(version, name, body):
    if version == 2:
        return name + struct.pack(">I", len(body))[1:] + body
    return name + (synchsafe(len(body)) if version == 4 else struct.pack(">I", len(body))) + b"\0\0" + body


def id3(version, frames, flags=0, unsync=False):
    body = b"".join(frame(version, n, b) for n, b in frames)
    if unsync:
        body = body.replace(b"\xff\x00", b"\xff\x00\x00").replace(b"\xff\xe0", b"\xff\x00\xe0")
    return b"ID3" + bytes([version, 0, flags]) + synchsafe(len(body)) + body


def with_tag(name, tag, base="bare.mp3"):
    open(name, "wb").write(tag + open(base, "rb").read())


def id3v1(title, artist, album, year=b"2019", genre=17):
    pad = lambda b, n: b[:n].ljust(n, b"\0")
    return b"TAG" + pad(title, 30) + pad(artist, 30) + pad(album, 30) + pad(year, 4) + b"\0" * 30 + bytes([genre])


def append(name, tail):
    open(copy("bare.mp3", name), "ab").write(tail)


TEXT = [(b"TIT2", "Lamplight"), (b"TPE1", "The Lanterns"), (b"TALB", "Night Walk")]
latin = lambda s: b"\0" + s.encode("latin-1")
append("id3v1.mp3", id3v1(b"Lamplight", b"The Lanterns", b"Night Walk"))
append("id3v1_gbk.mp3", id3v1("夜曲".encode("gbk"), "周杰伦".encode("gbk"), "十一月的萧邦".encode("gbk")))
append("id3v1_cut.mp3", id3v1(("a" + "天" * 15).encode("gbk"), b"A", b"B"))
with_tag("v22.mp3", id3(2, [(b"TT2", latin("Lamplight")), (b"TP1", latin("The Lanterns")),
                            (b"TAL", latin("Night Walk")), (b"TYE", latin("2019")), (b"TCO", latin("(17)")),
                            (b"PIC", b"\0JPG\x03\0" + JPEG)]))
with_tag("v23_bom.mp3", id3(3, [(n, b"\1" + t.encode("utf-16")) for n, t in TEXT]
                            + [(b"TYER", latin("2019")), (b"TCON", latin("(17)"))]))
with_tag("v23_nobom_le.mp3", id3(3, [(n, b"\1" + t.encode("utf-16-le")) for n, t in TEXT]))
with_tag("v23_nobom_be.mp3", id3(3, [(n, b"\1" + t.encode("utf-16-be")) for n, t in TEXT]))
with_tag("v24_utf8.mp3", id3(4, [(n, b"\3" + t.encode()) for n, t in TEXT] + [(b"TDRC", b"\x032019-04-01")]))
with_tag("v24_unsync.mp3", id3(4, [(n, b"\1\xff\xfe" + t.encode("utf-16-le")) for n, t in TEXT], 0x80, True))
with_tag("v24_two_artists.mp3", id3(4, [(b"TPE1", b"\x03One\0Two")]))
with_tag("gbk.mp3", id3(3, [(b"TIT2", b"\0" + "中文".encode("gbk")), (b"TPE1", latin("Björk")),
                            (b"TALB", b"\0" + "爱 Love".encode("gbk"))]))
with_tag("latin.mp3", id3(3, [(b"TIT2", latin("Jää à l'été")), (b"TPE1", latin("Mötley Crüe")),
                              (b"TALB", latin("¿Qué? «Señor» Ænima"))]))
with_tag("utf8_as_latin.mp3", id3(3, [(b"TIT2", b"\0" + "Кино".encode()), (b"TPE1", b"\0" + "Beyoncé".encode()),
                                      (b"TALB", b"\0" + "夜曲".encode())]))
apic = lambda kind, data: (b"APIC", b"\0image/png\0" + bytes([kind]) + b"\0" + data)
with_tag("kinds.mp3", id3(3, [(b"TIT2", latin("Lamplight")), apic(6, PNG), apic(0, JPEG), apic(4, PNG), apic(8, PNG)]))
with_tag("link_picture.mp3", id3(3, [(b"TIT2", latin("Lamplight")), (b"APIC", b"\0-->\0\x03\0http://nowhere")]))
# A frame without content, and pictures so large that the texts behind them are far away.
with_tag("empty_frame.mp3", id3(3, [(b"POPM", b"")] + [(n, latin(t)) for n, t in TEXT]))
with_tag("large_picture.mp3", id3(3, [(b"APIC", b"\0image/jpeg\0\x03\0" + JPEG.ljust(45 << 20, b"\0"))]
                                  + [(n, latin(t)) for n, t in TEXT]))
with_tag("empty_picture.mp3", id3(3, [(b"TIT2", latin("Lamplight")), (b"APIC", b"\0image/jpeg\0\x03\0")]))

t = ID3()
for f in (TIT2(3, ["Lamplight"]), TPE1(3, ["The Lanterns"]), TALB(3, ["Night Walk"]), TDRC(3, ["2019"]), TCON(3, ["Folk"]),
          APIC(0, "image/jpeg", 3, "front", JPEG), APIC(0, "image/png", 4, "back", PNG)):
    t.add(f)
t.save(copy("bare.mp3", "mutagen.mp3"))
w = WAVE(copy("tone.wav", "id3.wav")); w.add_tags(); w.tags.update(t); w.save()
a = AIFF(copy("bare.aiff", "id3.aiff")); a.add_tags(); a.tags.update(t); a.save()
t.save(copy("bare.aac", "id3.aac"), v1=0)
p = APEv2(); p["Title"], p["Artist"], p["Album"], p["Genre"], p["Year"] = "Lamplight", "The Lanterns", "Night Walk", "Folk", "2019"
from mutagen.apev2 import APEBinaryValue
p["Cover Art (Front)"] = APEBinaryValue(b"front.jpg\0" + JPEG)
p.save(copy("bare.mp3", "ape.mp3"))
tail = open("ape.mp3", "rb").read()[os.path.getsize("bare.mp3"):]
with_tag("ape_in_front.mp3", tail[:-128] if tail[-128:-125] == b"TAG" else tail)
run("lame", "--quiet", "-b", "128", "--tt", "Lamplight", "--ta", "The Lanterns", "--tl", "Night Walk", "--ty", "2019",
    "--tg", "Folk", "--add-id3v2", "tone.wav", "lame.mp3")
ff("-i", "tone.wav", "-metadata", "title=Lamplight", "-metadata", "artist=The Lanterns", "-metadata", "album=Night Walk",
   "-metadata", "date=2019", "-metadata", "genre=Folk", "info.wav")
ff("-i", "tone.wav", "-metadata", "title=Lamplight", "-metadata", "author=The Lanterns", "-f", "aiff", "chunks.aiff")

run("metaflac", "--set-tag=TITLE=Lamplight", "--set-tag=ARTIST=The Lanterns", "--set-tag=ALBUM=Night Walk",
    "--set-tag=GENRE=Folk", "--set-tag=DATE=2019-04-01", copy("bare.flac", "metaflac.flac"))
f = FLAC(copy("bare.flac", "repeated.flac"))
f["title"], f["artist"], f["year"] = ["First", "Lamplight"], ["One", "   ", "The Lanterns"], "2018"
for kind, data in ((4, PNG), (3, JPEG), (4, PNG)):
    picture = Picture(); picture.type, picture.mime, picture.data = kind, "image/jpeg", data
    f.add_picture(picture)
f.save()
picture = b"\0\0\0\x03" + b"\0\0\0\x0aimage/jpeg" + b"\0" * 20 + struct.pack(">I", 14 << 20) + JPEG.ljust(14 << 20, b"\0")
tagged, info = open("metaflac.flac", "rb").read(), 4 + 38
with open("pictures_first.flac", "wb") as flac:
    flac.write(tagged[:info])
    for _ in range(9):
        flac.write(b"\x06" + struct.pack(">I", len(picture))[1:] + picture)
    flac.write(tagged[info:])
m = MP4(copy("bare_aac.m4a", "mutagen.m4a"))
m["\xa9nam"], m["\xa9ART"], m["\xa9alb"], m["\xa9gen"], m["\xa9day"] = "Lamplight", "The Lanterns", "Night Walk", "Folk", "2019-04-01T07:00:00Z"
m[FREE + "TITLE"] = [MP4FreeForm(b"Not this")]
m["covr"] = [MP4Cover(JPEG, MP4Cover.FORMAT_JPEG), MP4Cover(PNG, MP4Cover.FORMAT_PNG)]
m.save()

import base64
front, back = Picture(), Picture()
front.type, front.mime, front.data = 3, "image/jpeg", JPEG
back.type, back.mime, back.data = 4, "image/png", PNG
FIELDS = {"title": "Lamplight", "artist": "The Lanterns", "album": "Night Walk", "genre": "Folk"}
for base, name, kind in (("vorbis.ogg", "tagged.ogg", OggVorbis), ("bare.opus", "tagged.opus", OggOpus),
                         ("flac.oga", "tagged.oga", OggFLAC), ("speex.ogg", "tagged_speex.ogg", OggSpeex),
                         ("vorbis.ogg", "tagged_vorbis.mp3", OggVorbis)):
    o = kind(copy(base, name))
    o.update(FIELDS)
    o["date"] = "2019-04-01"
    o["metadata_block_picture"] = [base64.b64encode(picture.write()).decode() for picture in (front, back)]
    o.save()
# A second song behind the first, as a recorded broadcast has it.
ff("-i", "tone.wav", "-c:a", "libvorbis", "-metadata", "title=Second", "-metadata", "artist=Others", "second.ogg")
open("chained.ogg", "wb").write(open("tagged.ogg", "rb").read() + open("second.ogg", "rb").read())
for name in ("tagged.wv", "tagged.mpc", "tagged.ape", "ape.tta"):
    p.save(copy("bare." + name.split(".")[1], name))
t.save(copy("bare.tta", "tagged.tta"), v1=0)
w = ASF(copy("bare.wma", "tagged.wma"))
w["Title"], w["Author"], w["WM/AlbumTitle"], w["WM/Genre"], w["WM/Year"] = "Lamplight", "The Lanterns", "Night Walk", "Folk", "2019"
w["WM/Picture"] = [ASFByteArrayAttribute(struct.pack("<bI", kind, len(data)) + "image/jpeg\0".encode("utf-16-le") + b"\0\0" + data)
                   for kind, data in ((3, JPEG), (4, PNG))]
w.save()
t.save("tag.id3", v1=0)
TAG = open("tag.id3", "rb").read()
open("tagged.dsf", "wb").write(dsf(TAG))
open("tagged.dff", "wb").write(dff(chunk(b"ID3 ", TAG)))
text = lambda s: struct.pack(">I", len(s)) + s
open("diin.dff", "wb").write(dff(chunk(b"DIIN", chunk(b"DITI", text(b"Lamplight")) + chunk(b"DIAR", text(b"The Lanterns")))))

# A place in an album, in each container: whole, by two artists, and two artists of a compilation.
PLACE = {"albumartist": "The Band", "discnumber": "2/3", "tracknumber": "03/12", "artistsort": "Singer, A",
         "albumartistsort": "Band, The", "albumsort": "Walk, Night"}
ID3_NAMES = {"albumartist": TPE2, "discnumber": TPOS, "tracknumber": TRCK, "artistsort": TSOP, "albumartistsort": TSO2,
             "albumsort": TSOA, "compilation": TCMP}
APE_NAMES = {"discnumber": "Disc", "tracknumber": "Track", "albumartist": "Album Artist"}
MP4_NAMES = {"albumartist": "aART", "artistsort": "soar", "albumartistsort": "soaa", "albumsort": "soal"}
KINDS = {"whole": (["A Singer"], PLACE), "duet": (["One", "Two"], {}), "sampler": (["One", "Two"], {"compilation": "1"})}


def set_id3(tags, artists, place):
    tags.add(TPE1(3, artists))
    for key, value in place.items():
        tags.add(ID3_NAMES[key](3, [value]))


for kind, (artists, place) in KINDS.items():
    for version in (3, 4):
        t = ID3()
        set_id3(t, artists, place)
        t.save(copy("bare.mp3", f"{kind}_v2{version}.mp3"), v2_version=version, v23_sep=None)
    t.save(copy("bare.aac", f"{kind}.aac"), v1=0)
    for base, file in (("tone.wav", WAVE), ("bare.aiff", AIFF)):
        f = file(copy(base, kind + os.path.splitext(base)[1])); f.add_tags(); set_id3(f.tags, artists, place); f.save()
    f = FLAC(copy("bare.flac", f"{kind}.flac")); f["artist"] = artists; f.update(place); f.save()
    f = APEv2(); f["Artist"] = artists
    for key, value in place.items():
        f[APE_NAMES.get(key, key)] = value
    f.save(copy("bare.mp3", f"{kind}_ape.mp3"))
    f = MP4(copy("bare_aac.m4a", f"{kind}.m4a")); f["\xa9ART"] = artists
    for key, value in place.items():
        if key in ("discnumber", "tracknumber"):
            f["disk" if key == "discnumber" else "trkn"] = [tuple(int(part) for part in value.split("/"))]
        elif key == "compilation":
            f["cpil"] = True
        else:
            f[MP4_NAMES[key]] = value
    f.save()
with_tag("whole_v22.mp3", id3(2, [(n, latin(v)) for n, v in (
    (b"TP1", "A Singer"), (b"TP2", "The Band"), (b"TPA", "2/3"), (b"TRK", "3"), (b"TSP", "Singer, A"),
    (b"TS2", "Band, The"), (b"TSA", "Walk, Night"))]))
with_tag("frames.mp3", id3(4, [(b"TPE1", b"\3One"), (b"TPE1", b"\3Two"), (b"TRCK", b"\3A3"), (b"TPOS", b"\0000")]))
with_tag("gbk_band.mp3", id3(3, [(n, b"\0" + v.encode("gbk")) for n, v in (
    (b"TIT2", "夜曲"), (b"TPE1", "周杰伦"), (b"TPE2", "华语群星"), (b"TSOA", "十一月的萧邦"))]))
f = FLAC(copy("bare.flac", "spaced.flac")); f["artist"], f["album artist"], f["compilation"] = "One", "The Band", "1"; f.save()
f = FLAC(copy("bare.flac", "twice.flac")); f["artist"], f["tracknumber"] = ["One", " One ", ""], "70000"; f.save()
f = FLAC(copy("bare.flac", "no_sampler.flac")); f["artist"], f["compilation"] = "One", "0"; f.save()
ff("-i", "tone.wav", "-metadata", "artist=A Singer", "-metadata", "track=3/12", "track.wav")
ff("-i", "tone.wav", "-c:a", "pcm_s16be", *(part for key, value in (
    ("artist", "A Singer"), ("album_artist", "The Band"), ("disc", "2"), ("track number", "3"))
    for part in ("-metadata", f"{key}={value}")), "whole.caf")
os.makedirs("CD 2", exist_ok=True)
shutil.copyfile("duet.flac", "CD 2/duet.flac")
shutil.copyfile("whole.flac", "CD 2/whole.flac")

# Levels, in each container, with the names in the case that its programs write.
LEVELS = {"replaygain_track_gain": "-7.03 dB", "replaygain_track_peak": "0.500000", "replaygain_album_gain": "+2,50 dB",
          "replaygain_album_peak": "1.25"}
UPPER = {name.upper(): value for name, value in LEVELS.items()}
t = ID3()
for name, value in UPPER.items():
    t.add(TXXX(3, desc=name, text=[value]))
t.save(copy("bare.mp3", "level.mp3"))
t.save(copy("bare.aac", "level.aac"), v1=0)
t.save(copy("bare.tta", "level.tta"), v1=0)
t.save("level.id3", v1=0)
TAG = open("level.id3", "rb").read()
open("level.dsf", "wb").write(dsf(TAG))
open("level.dff", "wb").write(dff(chunk(b"ID3 ", TAG)))
with_tag("level_v23.mp3", id3(3, [(b"TXXX", b"\1" + f"{n}\0".encode("utf-16") + v.encode("utf-16")) for n, v in LEVELS.items()]))
for base, file in (("tone.wav", WAVE), ("bare.aiff", AIFF)):
    f = file(copy(base, "level" + os.path.splitext(base)[1])); f.add_tags(); f.tags.update(t); f.save()
for base, name, kind in (("bare.flac", "level.flac", FLAC), ("vorbis.ogg", "level.ogg", OggVorbis), ("flac.oga", "level.oga", OggFLAC),
                         ("speex.ogg", "level_speex.ogg", OggSpeex), ("bare.opus", "level.opus", OggOpus)):
    f = kind(copy(base, name)); f.update(UPPER); f.save()
f = APEv2(); f.update(LEVELS)
for kind in ("mp3", "wv", "mpc", "ape"):
    f.save(copy("bare." + kind, f"level_ape.{kind}"))
for codec in ("aac", "alac"):
    f = MP4(copy(f"bare_{codec}.m4a", f"level_{codec}.m4a"))
    for name, value in LEVELS.items():
        f[FREE + name] = [MP4FreeForm(value.encode())]
    f.save()
f = ASF(copy("bare.wma", "level.wma"))
for name, value in LEVELS.items():
    f[name] = value
f.save()
ff("-i", "tone.wav", "-c:a", "pcm_s16be", *(part for key, value in UPPER.items() for part in ("-metadata", f"{key}={value}")), "level.caf")
f = OggOpus(copy("bare.opus", "r128.opus")); f.update({"R128_TRACK_GAIN": "-512", "R128_ALBUM_GAIN": "256"}); f.save()
f = OggOpus(copy("level.opus", "r128_too.opus")); f["R128_TRACK_GAIN"] = "-512"; f.save()
f = FLAC(copy("bare.flac", "level_nonsense.flac"))
f.update({"REPLAYGAIN_TRACK_GAIN": "loud", "REPLAYGAIN_TRACK_PEAK": "0", "REPLAYGAIN_ALBUM_GAIN": "-1e9 dB",
          "REPLAYGAIN_ALBUM_PEAK": "nan", "R128_TRACK_GAIN": "-99999"})
f.save()
f = FLAC(copy("bare.flac", "level_short.flac")); f.update({"REPLAYGAIN_TRACK_GAIN": "-7.03dB", "REPLAYGAIN_TRACK_PEAK": ".5"}); f.save()

# Ratings and plays, on the scales of the programs that write them.
def rated(base, name, kind, **said):
    f = kind(copy(base, name)); f.update(said); f.save()
def popular(name, *frames):
    t = ID3()
    for frame in frames:
        t.add(frame)
    t.save(copy("bare.mp3", name))
popular("said.mp3", POPM(email="a", rating=0, count=3), POPM(email="b", rating=196, count=12))
popular("said_user.mp3", TXXX(3, desc="FMPS_Rating", text=["0.8"]), TXXX(3, desc="FMPS_Playcount", text=["12.0"]),
        POPM(email="", rating=255, count=0))
f = WAVE(copy("tone.wav", "said.wav")); f.add_tags(); f.tags.add(POPM(email="", rating=192, count=12)); f.save()
for base, name, kind in (("bare.flac", "said.flac", FLAC), ("vorbis.ogg", "said.ogg", OggVorbis), ("bare.opus", "said.opus", OggOpus)):
    rated(base, name, kind, RATING="80", PLAYCOUNT="12")
f = FLAC(copy("bare.flac", "said_whose.flac")); f.update({"rating:somebody@example.org": "0.8", "playcount:somebody@example.org": "12"}); f.save()
rated("bare.flac", "said_both.flac", FLAC, FMPS_RATING="0.8", RATING="5", FMPS_PLAYCOUNT="12")
rated("bare.flac", "said_nonsense.flac", FLAC, FMPS_RATING="1.5", RATING="-3", PLAYCOUNT="many")
f = APEv2(); f.update({"Rating": "4", "Play_Count": "12"}); f.save(copy("bare.wv", "said.wv"))
for name, values in (("said.m4a", {"rate": "80", FREE + "PLAYCOUNT": [MP4FreeForm(b"12")]}),
                     ("said_free.m4a", {FREE + "FMPS_Rating": [MP4FreeForm(b"0.8")], FREE + "FMPS_Playcount": [MP4FreeForm(b"12")]})):
    f = MP4(copy("bare_aac.m4a", name)); f.update(values); f.save()
f = ASF(copy("bare.wma", "said.wma")); f["WM/SharedUserRating"], f["FMPS_Playcount"] = 75, "12"; f.save()
ff("-i", "tone.wav", "-c:a", "pcm_s16be", "-metadata", "RATING=80", "-metadata", "PLAYCOUNT=12", "said.caf")

# Wrong on purpose.
open("empty.mp3", "wb").close()
open("text.flac", "wb").write(b"not music at all\n" * 40)
open("claims.mp3", "wb").write(b"ID3\x04\0\0" + b"\x7f\x7f\x7f\x7f" + b"TIT2" + b"\x7f\x7f\x7f\x7f" + b"\0" * 90)
open("claims.flac", "wb").write(b"fLaC\x06\xff\xff\xff" + b"\0" * 64)
open("claims.wav", "wb").write(b"RIFF\xff\xff\xff\xffWAVEfmt \xff\xff\xff\xff" + b"\0" * 64)
open("claims_info.wav", "wb").write(b"RIFF\xff\xff\xff\x7fWAVEfmt \x10\0\0\0" + struct.pack("<HHIIHH", 1, 2, 8000, 32000, 4, 16)
                                    + b"LIST\xff\xff\xff\x7fINFOIART\0\0\0\x60" + b"\0" * 64)
os.mkfifo("pipe.mp3")
atom = b"moov"
open("nested.m4a", "wb").write(struct.pack(">I", 16) + b"ftypM4A \0\0\0\0" + b"".join(
    struct.pack(">I", 8 * (100000 - i)) + atom for i in range(100000)))
open("self.m4a", "wb").write(struct.pack(">I", 16) + b"ftypM4A \0\0\0\0" + (struct.pack(">I", 0) + b"moov") * 50)
with_tag("crowded.mp3", id3(4, [(b"TXXX", b"\3")] * 200000))
