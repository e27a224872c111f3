// SPDX-License-Identifier: MIT
#include "audio/files/audio_reading.h"

#include <QFile>
#include <QTemporaryFile>
#include <QtEndian>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

TEST(Gapless, RawAacLosesTheConventionalFramesInFront) {
    const Pcm whole = music(50'000);
    const auto original = whole.floats();
    const auto played =
        readAll(encoded(whole, u"aac"_s, ffmpeg + u"-c:a aac -b:a 256k \"$OUT\""_s));
    // What the stream does not say is how much of the last block is music.
    EXPECT_GE(played.size(), original.size());
    EXPECT_LT(played.size(), original.size() + 2 * 1024);
    expectInPlace(played, original, 3'000, 45'000);
}

TEST(Gapless, Mp3WithoutAHeaderPlaysEveryBlock) {
    const Pcm whole = music(50'000);
    const auto file =
        opened(encoded(whole, u"mp3"_s, u"lame --quiet -t -b 128 \"$IN\" \"$OUT\""_s));
    EXPECT_EQ(file->lengthFrames() % 1152, 0);
    EXPECT_GE(file->lengthFrames(), 50'000 + 1105);
    EXPECT_LT(file->lengthFrames(), 50'000 + 1105 + 3 * 1152);
    EXPECT_EQ(std::int64_t(readAll(*file).size() / 2), file->lengthFrames());
}

TEST(Gapless, Mp3LosesWhatItsEncoderAdded) {
    QFile plain(encoded(music(50'000), u"mp3"_s, u"lame --quiet --cbr -b 128 \"$IN\" \"$OUT\""_s));
    ASSERT_TRUE(plain.open(QIODevice::ReadOnly));
    const QByteArray file = plain.readAll();
    const qsizetype tag = file.indexOf("Info");
    const qsizetype encoder = file.indexOf("LAME");
    ASSERT_TRUE(tag > 0 && encoder == tag + 120) << "with count, size, seek table and quality";
    const std::int64_t blocks = qFromBigEndian<quint32>(file.constData() + tag + 8);

    // A tag in front, whose text holds the word by which another header is known.
    const QByteArray text = "Xing Xing, Xing Xing, Xing Xing, Xing Xing";
    const QByteArray comment = QByteArray("ID3\3\0\0\0\0\0", 9) + char(text.size() + 11) + "TIT2" +
                               QByteArray(3, '\0') + char(text.size() + 1) + QByteArray(3, '\0') +
                               text;
    const struct {
        const char* name;
        QByteArray bytes;
        std::int64_t frames;
    } cases[] = {
        {"as it is", file, 50'000},
        {"by an encoder of another name", QByteArray(file).replace(encoder, 4, "Else"), 50'000},
        {"without the number of blocks",
         QByteArray(file)
             .insert(encoder + 24, QByteArray(4, '\0'))
             .remove(tag + 8, 4)
             .replace(tag + 4, 4, QByteArray("\0\0\0\x0E", 4)),
         50'000},
        {"behind a text about another header", comment + file, 50'000},
        // The second file's header frame is a silent block more.
        {"twice in one file", file + file, 50'000 + (blocks + 1) * 1152},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryFile changed;
        ASSERT_TRUE(changed.open());
        changed.write(c.bytes);
        changed.close();
        const auto mp3 = opened(changed.fileName());
        EXPECT_EQ(mp3->lengthFrames(), c.frames);
        EXPECT_EQ(std::int64_t(readAll(*mp3).size() / 2), c.frames);
    }
}

/// An MP4 file with its index at the end, and in the index an "iTunSMPB" tag as its makers write
/// it.
QByteArray withGaplessTag(QByteArray file, const QByteArray& text) {
    const auto number = [](qsizetype value) {
        QByteArray bytes(4, '\0');
        qToBigEndian(quint32(value), bytes.data());
        return bytes;
    };
    const auto box = [&](const QByteArray& type, const QByteArray& body) {
        return number(body.size() + 8) + type + body;
    };
    const QByteArray tag = box("----", box("mean", number(0) + "com.apple.iTunes") +
                                           box("name", number(0) + "iTunSMPB") +
                                           box("data", number(1) + number(0) + text));
    const QByteArray handler =
        box("hdlr", number(0) + number(0) + "mdirappl" + QByteArray(9, '\0'));
    const QByteArray addition = box("udta", box("meta", number(0) + handler + box("ilst", tag)));
    const qsizetype moov = file.lastIndexOf("moov") - 4;
    const qsizetype size = file.size() - moov + addition.size();
    return file.replace(moov, 4, number(size)) + addition;
}

TEST(Gapless, AGaplessTagOutweighsTheEditList) {
    const Pcm whole = music(50'000);
    QFile plain(encoded(whole, u"m4a"_s,
                        ffmpeg + u"-c:a aac -b:a 256k -bitexact -map_metadata -1 \"$OUT\""_s));
    ASSERT_TRUE(plain.open(QIODevice::ReadOnly));
    QTemporaryFile tagged;
    ASSERT_TRUE(tagged.open());
    tagged.write(
        withGaplessTag(plain.readAll(), " 00000000 00000440 00000200 0000000000009000 00000000"));
    tagged.close();

    const auto file = opened(tagged.fileName());
    EXPECT_EQ(file->lengthFrames(), 0x9000);
    const auto played = readAll(*file);
    ASSERT_EQ(played.size(), 2U * 0x9000);
    // The tag's delay is 64 frames more than what this encoder put in front.
    const auto original = whole.cut(64, 50'000).floats();
    expectInPlace(played, original, 3'000, 30'000);
}

/// A DSDIFF file of one-bit silence on two channels, with a tag behind the sound.
QByteArray dsdiff(qint64 bytesOfSound) {
    const auto chunk = [](const char* name, const QByteArray& body) {
        QByteArray size(8, '\0');
        qToBigEndian(qint64(body.size()), size.data());
        return QByteArray(name, 4) + size + body + QByteArray(body.size() % 2, '\0');
    };
    const QByteArray kind = chunk("FS  ", QByteArray("\x00\x2b\x11\x00", 4)) +
                            chunk("CHNL", QByteArray("\x00\x02SLFTSRGT", 10)) +
                            chunk("CMPR", "DSD \x0enot compressed" + QByteArray(1, '\0'));
    return chunk("FRM8", "DSD " + chunk("FVER", QByteArray("\1\5\0\0", 4)) +
                             chunk("PROP", "SND " + kind) +
                             chunk("DSD ", QByteArray(bytesOfSound, '\x69')) +
                             chunk("ID3 ", QByteArray(5'000, 'x')));
}

TEST(Gapless, ATagBehindOneBitSoundIsNoSound) {
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(dsdiff(100'002));
    file.close();
    const auto sound = opened(file.fileName());
    EXPECT_EQ(sound->format().sampleRate, 352'800);
    EXPECT_EQ(sound->lengthFrames(), 50'001);
    const auto samples = readAll(*sound);
    ASSERT_EQ(samples.size(), 2U * 50'001);
    EXPECT_LT(std::abs(samples.back()), 0.01F);
    EXPECT_FALSE(sound->failure());
}

} // namespace
} // namespace halvane::test
