// SPDX-License-Identifier: MIT
#include "libav/container.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <cstring>

namespace halvane {

void PrintTo(Container container, std::ostream* out) {
    *out << static_cast<int>(container);
}

namespace {

QByteArray hex(const char* digits) {
    return QByteArray::fromHex(digits);
}

// A tag of the version with so many bytes behind its header, the last ten of which are the footer
// if it has one.
QByteArray tag(int version, int size, int flags = 0) {
    QByteArray bytes("ID3");
    for (int byte : {version, 0, flags, 0, 0, size >> 7, size & 0x7f})
        bytes += static_cast<char>(byte);
    return bytes + QByteArray(size + (version >= 4 && (flags & 0x10) ? 10 : 0), 't');
}

TEST(Container, ShowsInTheBytesBehindTags) {
    const QByteArray flac("fLaC\0\0\0\x22rest", 12);
    const QByteArray mp3 = hex("fffb9064") + QByteArray(8, '\0');
    const QByteArray adts = hex("fff15080017ffc") + QByteArray(8, '\0');
    const QByteArray badSize = "ID3\4" + hex("000000000080");
    const struct {
        const char* what;
        QByteArray bytes;
        Container container = Container::other;
        qint64 audioStart = 0;
    } cases[] = {
        {"nothing", {}},
        {"text", "Once upon a time"},
        {"flac", flac, Container::flac},
        {"wave", "RIFF____WAVEfmt ", Container::wav},
        {"another RIFF", "RIFF____AVI LIST"},
        {"aiff", "FORM____AIFFCOMM", Container::aiff},
        {"compressed aiff", "FORM____AIFCFVER", Container::aiff},
        {"another FORM", "FORM____AIFXCOMM"},
        {"caf", QByteArray("caff\0\1\0\0desc", 12), Container::caf},
        {"adif", "ADIF____________", Container::adif},
        {"ogg", "OggS____________", Container::ogg},
        {"wavpack", "wvpk____________", Container::wavpack},
        {"monkey's audio", "MAC ____________", Container::ape},
        {"musepack 8", "MPCKSH__________", Container::musepack},
        {"musepack 7", "MP+\x17____________", Container::musepack},
        {"musepack of an unknown version", "MP+\x15____________"},
        {"true audio", "TTA1____________", Container::tta},
        {"dsf", "DSD ____________", Container::dsf},
        {"dsdiff", "FRM8____________", Container::dff},
        {"asf", hex("3026b2758e66cf11a6d900aa"), Container::asf},
        {"mp4", "____ftypM4A ____", Container::mp4},
        {"early QuickTime", "____moov____mvhd", Container::mp4},
        {"sound in front", "____mdat________", Container::mp4},
        {"layer III", mp3, Container::mpeg},
        {"layer II", hex("fffd9064") + QByteArray(8, '\0'), Container::mpeg},
        {"version 2.5", hex("ffe39064") + QByteArray(8, '\0'), Container::mpeg},
        {"reserved version", hex("ffeb9064") + QByteArray(8, '\0')},
        {"reserved bitrate", hex("fffbf064") + QByteArray(8, '\0')},
        {"no bitrate", hex("fffb0064") + QByteArray(8, '\0')},
        {"reserved sample rate", hex("fffb9c64") + QByteArray(8, '\0')},
        {"a text in UTF-16, or layer I", hex("fffe41006e00640020006100")},
        {"adts", adts, Container::adts},
        {"adts, reserved rate", hex("fff17480017ffc") + QByteArray(8, '\0')},
        {"adts, no room for the header", hex("fff15080001ffc") + QByteArray(8, '\0')},
        {"cut short", mp3.left(11)},
        {"junk in front", QByteArray(4, '\0') + mp3},
        {"one tag", tag(3, 200) + mp3, Container::mpeg, 210},
        {"a footer", tag(4, 30, 0x10) + flac, Container::flac, 50},
        {"no footer before 2.4", tag(3, 30, 0x10) + flac, Container::flac, 40},
        {"tags in a row", tag(4, 5) + tag(3, 0) + tag(2, 7) + adts, Container::adts, 42},
        {"eight tags", tag(3, 0).repeated(8) + flac, Container::flac, 80},
        {"nine tags", tag(3, 0).repeated(9) + flac, Container::other, 90},
        {"nothing behind the tag", tag(3, 20), Container::other, 30},
        {"junk behind the tag", tag(3, 20) + QByteArray(4, '\0') + mp3, Container::other, 30},
        {"a tag beyond the end", tag(3, 200).left(100), Container::other, 210},
        {"no tag: a size of eight bits", badSize + mp3},
        {"no tag: version 255", QByteArray("ID3\xff\0\0\0\0\0\0", 10) + mp3},
    };
    for (const auto& [what, bytes, container, audioStart] : cases) {
        SCOPED_TRACE(what);
        const auto facts = detectContainer([&file = bytes](qint64 offset, OpeningBytes& into) {
            const QByteArray found = file.mid(offset, std::ssize(into));
            std::memcpy(into.data(), found.constData(), static_cast<std::size_t>(found.size()));
            return found.size() == std::ssize(into);
        });
        EXPECT_EQ(facts.container, container);
        EXPECT_EQ(facts.audioStart, audioStart);
    }
}

} // namespace
} // namespace halvane
