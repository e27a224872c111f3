// SPDX-License-Identifier: MIT
// Four pieces of one continuous signal, cut anywhere, encoded apart and read one after the other.
#include "audio_reading.h"

#include <QFile>
#include <QTemporaryFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

// No multiple of any codec's block, and one piece shorter than several of them.
constexpr std::array<std::size_t, 5> cuts{0, 61'511, 122'777, 125'043, 190'001};

struct Encoding {
    const char* name;
    QString suffix;
    QString command;
    int bits = 16;
};

void PrintTo(const Encoding& encoding, std::ostream* out) {
    *out << encoding.name;
}

std::string nameOf(const testing::TestParamInfo<Encoding>& info) {
    return info.param.name;
}

/// The pieces' sound, one after the other; every piece has to have the frames that went into it.
std::vector<float> playedThrough(const Pcm& whole, const Encoding& encoding) {
    std::vector<float> played;
    for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
        const QString path =
            encoded(whole.cut(cuts[i], cuts[i + 1]), encoding.suffix, encoding.command);
        const auto file = opened(path);
        EXPECT_EQ(file->lengthFrames(), std::int64_t(cuts[i + 1] - cuts[i])) << "piece " << i;
        const auto samples = readAll(*file);
        EXPECT_EQ(samples.size() / 2, cuts[i + 1] - cuts[i]) << "piece " << i;
        EXPECT_FALSE(file->failure());
        played.insert(played.end(), samples.begin(), samples.end());
    }
    return played;
}

class Lossless : public testing::TestWithParam<Encoding> {};

TEST_P(Lossless, PiecesPlayAsTheOriginalBitForBit) {
    const Pcm whole = music(cuts.back(), 44'100, 2, GetParam().bits);
    EXPECT_TRUE(playedThrough(whole, GetParam()) == whole.floats());
}

INSTANTIATE_TEST_SUITE_P(
    Formats, Lossless,
    testing::Values(
        Encoding{"flac16", u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s},
        Encoding{"flac24", u"flac"_s, u"flac -s -8 -o \"$OUT\" \"$IN\""_s, 24},
        Encoding{"flac_unknown_length", u"flac"_s, ffmpeg + u"-f flac - > \"$OUT\""_s},
        Encoding{"flac_in_ogg", u"flac"_s, u"flac -s --ogg -o \"$OUT\" \"$IN\""_s},
        Encoding{"wav16", u"wav"_s, u"cp \"$IN\" \"$OUT\""_s},
        Encoding{"wav24", u"wav"_s, u"cp \"$IN\" \"$OUT\""_s, 24},
        Encoding{"wav_float", u"wav"_s, ffmpeg + u"-c:a pcm_f32le \"$OUT\""_s, 24},
        Encoding{"wav_unknown_length", u"wav"_s, ffmpeg + u"-f wav - > \"$OUT\""_s},
        Encoding{"wav_with_tags_behind", u"wav"_s,
                 u"cp \"$IN\" \"$OUT\"; printf 'LIST\\010\\000\\000\\000INFOISFT' >> \"$OUT\""_s},
        Encoding{"aiff16", u"aiff"_s, ffmpeg + u"\"$OUT\""_s},
        Encoding{"aif24", u"aif"_s, ffmpeg + u"-c:a pcm_s24be -f aiff \"$OUT\""_s, 24},
        Encoding{"aifc_sowt", u"aifc"_s, ffmpeg + u"-c:a pcm_s16le -f aiff \"$OUT\""_s},
        Encoding{"caf16", u"caf"_s, ffmpeg + u"\"$OUT\""_s},
        Encoding{"caf24", u"caf"_s, ffmpeg + u"-c:a pcm_s24be \"$OUT\""_s, 24},
        Encoding{"alac16", u"m4a"_s, ffmpeg + u"-c:a alac \"$OUT\""_s},
        Encoding{"alac24", u"alac"_s,
                 ffmpeg + u"-c:a alac -sample_fmt s32p -bits_per_raw_sample 24 -f ipod \"$OUT\""_s,
                 24},
        Encoding{"alac_in_caf", u"caf"_s, ffmpeg + u"-c:a alac \"$OUT\""_s}),
    nameOf);

class Lossy : public testing::TestWithParam<Encoding> {};

/// Root mean square of the difference from the original over the frames [from, to), with what was
/// played taken `late` frames later.
double errorWith(int late, const std::vector<float>& played, const std::vector<float>& original,
                 std::size_t from, std::size_t to) {
    double sum = 0;
    for (std::size_t i = from * 2; i < to * 2; ++i) {
        const double difference = played[i + std::size_t(late * 2)] - original[i];
        sum += difference * difference;
    }
    return std::sqrt(sum / double((to - from) * 2));
}

/// One frame out of place would differ by far more than the codec's own error does.
void expectInPlace(const std::vector<float>& played, const std::vector<float>& original,
                   std::size_t from, std::size_t to) {
    const double inPlace = errorWith(0, played, original, from, to);
    EXPECT_LT(inPlace, 0.6 * errorWith(1, played, original, from, to)) << from;
    EXPECT_LT(inPlace, 0.6 * errorWith(-1, played, original, from, to)) << from;
}

TEST_P(Lossy, PiecesKeepTheirLengthAndPlaceAndJoinWithoutAClick) {
    const Pcm whole = music(cuts.back());
    const auto original = whole.floats();
    const auto played = playedThrough(whole, GetParam());
    ASSERT_EQ(played.size(), original.size());

    constexpr std::size_t margin = 2'500; // beyond the first and last blocks
    for (std::size_t piece : {0U, 1U, 3U})
        expectInPlace(played, original, cuts[piece] + margin, cuts[piece + 1] - margin);

    // No step at a joint that the signal's own steps and the codec's own error do not account for.
    float step = 0;
    float error = 0;
    for (std::size_t i = 0; i + 2 < original.size(); ++i) {
        step = std::max(step, std::abs(original[i + 2] - original[i]));
        error = std::max(error, std::abs(played[i] - original[i]));
    }
    for (std::size_t joint : {cuts[1], cuts[2], cuts[3]})
        for (std::size_t i = (joint - 1) * 2; i < joint * 2; ++i)
            EXPECT_LT(std::abs(played[i + 2] - played[i]), step + error) << "at " << joint;
}

INSTANTIATE_TEST_SUITE_P(
    Formats, Lossy,
    testing::Values(
        Encoding{"mp3_cbr", u"mp3"_s, u"lame --quiet --cbr -b 320 \"$IN\" \"$OUT\""_s},
        Encoding{"mp3_vbr", u"mp3"_s, u"lame --quiet -V0 \"$IN\" \"$OUT\""_s},
        Encoding{
            "mp3_behind_a_picture", u"mp3"_s,
            u"ffmpeg -nostdin -v error -f lavfi -i mandelbrot=s=400x400 -frames:v 1 "
            "\"$OUT.jpg\"; lame --quiet -V0 --ti \"$OUT.jpg\" \"$IN\" \"$OUT\"; rm \"$OUT.jpg\""_s},
        Encoding{"aac_edit_list_in_milliseconds", u"m4a"_s,
                 ffmpeg + u"-c:a aac -b:a 256k \"$OUT\""_s},
        Encoding{"aac_edit_list_exact", u"m4b"_s,
                 ffmpeg + u"-c:a aac -b:a 256k -movie_timescale 44100 -f ipod \"$OUT\""_s},
        Encoding{"aac_header_in_front", u"m4a"_s,
                 ffmpeg + u"-c:a aac -b:a 256k -movflags +faststart \"$OUT\""_s}),
    nameOf);

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

} // namespace
} // namespace halvane::test
