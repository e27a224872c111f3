#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Says how many names of many languages are read right when their encoding is not told.

Names of places, languages and currencies come from the translations of iso-codes, names of people
from python3-fake-factory. Both are packages of the distribution, and nothing in the program was
made from them. "alone" is a file with one text, "file" one with three, of which each text counts.
"mixed" files hold Chinese texts in GBK beside Western ones in Latin-1. Code pages that the program
does not read (Turkish, Vietnamese, Central European) count as right unless they become Chinese,
Japanese or Korean.

    bench/encodings/encodings.py build/release/bin/decide_encodings
"""
import gettext
import random
import subprocess
import sys
import unicodedata

try:
    from faker import Faker
except ImportError:
    sys.exit("python3-fake-factory is missing")

DOMAINS = ["iso_3166-1", "iso_3166-2", "iso_4217", "iso_639-3", "iso_15924"]
READ = {"gb18030", "big5", "cp932", "euc_kr", "cp1251", "cp1253", "cp1252"}
LISTS = [  # name, encoding, locale of iso-codes, locale of people's names
    ("Chinese, GBK", "gb18030", "zh_CN", "zh_CN"),
    ("traditional Chinese, GBK", "gb18030", "zh_TW", "zh_TW"),
    ("traditional Chinese, Big5", "big5", "zh_TW", "zh_TW"),
    ("Japanese, Shift-JIS", "cp932", "ja", "ja_JP"),
    ("Korean, EUC-KR", "euc_kr", "ko", "ko_KR"),
    ("Russian, Windows-1251", "cp1251", "ru", "ru_RU"),
    ("Greek, Windows-1253", "cp1253", "el", "el_GR"),
    ("French", "cp1252", "fr", "fr_FR"),
    ("German", "cp1252", "de", "de_DE"),
    ("Swedish", "cp1252", "sv", "sv_SE"),
    ("Norwegian", "cp1252", "nb", "no_NO"),
    ("Icelandic", "cp1252", "is", None),
    ("Finnish", "cp1252", "fi", "fi_FI"),
    ("Portuguese", "cp1252", "pt", "pt_BR"),
    ("Spanish", "cp1252", "es", "es_ES"),
    ("Italian", "cp1252", "it", None),
    ("Turkish, Windows-1254", "cp1254", "tr", "tr_TR"),
    ("Vietnamese, Windows-1258", "cp1258", "vi", None),
    ("Polish, Windows-1250", "cp1250", "pl", "pl_PL"),
    ("Czech, Windows-1250", "cp1250", "cs", None),
]
AT_MOST = 2000


def places(locale):
    names = set()
    for domain in DOMAINS:
        try:
            table = gettext.translation(domain, "/usr/share/locale", languages=[locale])
        except OSError:
            continue
        names |= {text for key, text in table._catalog.items() if key}
    return sorted(names)


def people(locale, count):
    faker = Faker(locale)
    faker.seed_instance(7)
    return sorted({faker.name() for _ in range(count)})


def encoded(text, encoding):
    """The bytes; in Vietnamese the tones stand apart."""
    try:
        if encoding != "cp1258":
            return text.encode(encoding)
        result = b""
        for letter in unicodedata.normalize("NFC", text):
            try:
                result += letter.encode(encoding)
            except UnicodeEncodeError:
                apart = unicodedata.normalize("NFD", letter)
                tone = "".join(c for c in apart if c in "\u0300\u0301\u0303\u0309\u0323")
                base = "".join(c for c in apart if c not in tone)
                result += (unicodedata.normalize("NFC", base) + tone).encode(encoding)
        return result
    except UnicodeEncodeError:
        return b""


def rows_of(encoding, texts, rng):
    rows = [(text, encoded(text, encoding)) for text in texts]
    rows = [(text, data) for text, data in rows if any(byte >= 0x80 for byte in data)]
    rng.shuffle(rows)
    return rows[:AT_MOST]


def decided(program, files):
    lines = "\n".join(" ".join(data.hex() for _, data in file) for file in files) + "\n"
    output = subprocess.run([program], input=lines.encode(), stdout=subprocess.PIPE, check=True)
    return [line.split("\t") for line in output.stdout.decode().split("\n")[:-1]]


def is_right(encoding, text, got):
    if encoding in READ:
        return got == text
    return not any(ord(c) >= 0x2E80 for c in got)


def wrong(program, encoding, files):
    found = []
    for file, got in zip(files, decided(program, files)):
        found += [(t, g) for (t, _), g in zip(file, got) if not is_right(encoding, t, g)]
    return found


def report(name, total, alone, in_files, of_files):
    def percent(count, of):
        return f"{100 * (1 - count / max(1, of)):6.2f}"
    examples = ", ".join(f"{text} → {got}" for text, got in (in_files or alone)[:3])
    print(f"{name:28} {total:6} {percent(len(alone), total)} {percent(len(in_files), of_files)}  {examples}")


def main():
    program = sys.argv[1]
    rng = random.Random(3)
    chinese, western = [], []
    print(f"{'':28} {'names':>6}  alone   file")
    for name, encoding, iso, faker in LISTS:
        kinds = [("places", places(iso))] + ([("people", people(faker, 2500))] if faker else [])
        for kind, texts in kinds:
            rows = rows_of(encoding, texts, rng)
            files = [[rows[(3 * i + 7 * k) % len(rows)] for k in range(3)] for i in range(len(rows))]
            report(f"{name}, {kind}", len(rows), wrong(program, encoding, [[row] for row in rows]),
                   wrong(program, encoding, files), 3 * len(files))
            chinese += rows if encoding == "gb18030" else []
            western += rows if encoding == "cp1252" else []
    short = [row for row in chinese if len(row[0]) <= 3]
    report("Chinese of 1 to 3, GBK", len(short), wrong(program, "gb18030", [[r] for r in short]),
           wrong(program, "gb18030", list(zip(short, short[1:]))), 2 * len(short))
    report("all Western", len(western), wrong(program, "cp1252", [[r] for r in western]), [], 1)
    rng.shuffle(chinese)
    rng.shuffle(western)
    for ours, theirs in (2, 1), (1, 1), (1, 2):
        files = [[chinese[(ours * i + k) % len(chinese)] for k in range(ours)] +
                 [western[(theirs * i + k) % len(western)] for k in range(theirs)]
                 for i in range(AT_MOST)]
        report(f"mixed, {ours} Chinese, {theirs} Western", len(files), [],
               wrong(program, "cp1252", files), (ours + theirs) * len(files))


if __name__ == "__main__":
    main()
