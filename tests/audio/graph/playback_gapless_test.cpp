// SPDX-License-Identifier: MIT
#include "audio/files/audio_reading.h"
#include "audio/graph/engine_test.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class Gapless : public EngineTest {
  protected:
    Gapless() { adoptAtEnd = true; }

    /// Plays files one after another, each pre-scheduled while the one before it plays, and returns
    /// what was heard up to the last one's end.
    std::vector<float> playChain(const std::vector<QString>& paths) {
        output.clearRecording();
        play(paths.front());
        std::size_t next = 1;
        const int before = trackEnds;
        for (int guard = 0; engine.isPlaying() && guard < 1000; ++guard) {
            if (next < paths.size() && preschedule(paths[next]))
                ++next;
            listen(3000);
        }
        EXPECT_EQ(next, paths.size());
        EXPECT_EQ(trackEnds - before, int(paths.size()));
        return output.recording();
    }
};

// No multiple of any codec's block, and one piece shorter than several of them.
constexpr std::array<std::size_t, 5> cuts{0, 61'511, 122'777, 125'043, 190'001};

struct Encoding {
    const char* name;
    QString suffix;
    QString command;
    int bits = 16; ///< of a lossless one
    int sampleRate = 44'100;
};

void PrintTo(const Encoding& encoding, std::ostream* out) {
    *out << encoding.name;
}

class GaplessFormats : public Gapless, public testing::WithParamInterface<Encoding> {
  protected:
    /// The pieces of one signal, encoded apart, as they are heard one after the other: as many
    /// frames as there were, and then silence.
    std::vector<float> heardOf(const Pcm& whole) {
        std::vector<QString> pieces;
        for (std::size_t i = 0; i + 1 < cuts.size(); ++i)
            pieces.push_back(
                encoded(whole.cut(cuts[i], cuts[i + 1]), GetParam().suffix, GetParam().command));
        auto heard = playChain(pieces);
        EXPECT_EQ(output.opens, 1);
        EXPECT_GE(heard.size(), whole.samples.size());
        EXPECT_TRUE(std::all_of(heard.begin() + std::ptrdiff_t(whole.samples.size()), heard.end(),
                                [](float sample) { return sample == 0; }));
        heard.resize(whole.samples.size());
        return heard;
    }
};

class Lossless : public GaplessFormats {};

TEST_P(Lossless, PiecesPlayAsTheOriginalBitForBit) {
    const auto whole = music(cuts.back(), 44'100, 2, GetParam().bits);
    EXPECT_TRUE(heardOf(whole) == whole.floats());
}

class Lossy : public GaplessFormats {};

TEST_P(Lossy, PiecesKeepTheirPlaceAndJoinWithoutAClick) {
    const auto whole = music(cuts.back(), GetParam().sampleRate);
    const auto original = whole.floats();
    const auto heard = heardOf(whole);
    constexpr std::size_t margin = 2'500; // beyond the first and last blocks
    for (const std::size_t piece : {0u, 1u, 3u})
        expectInPlace(heard, original, cuts[piece] + margin, cuts[piece + 1] - margin);

    // No step at a joint that the signal's own steps and the codec's own error do not account for.
    float step = 0, error = 0;
    for (std::size_t i = 0; i + 2 < original.size(); ++i) {
        step = std::max(step, std::abs(original[i + 2] - original[i]));
        error = std::max(error, std::abs(heard[i] - original[i]));
    }
    for (const std::size_t joint : {cuts[1], cuts[2], cuts[3]})
        for (std::size_t i = (joint - 1) * 2; i < joint * 2; ++i)
            EXPECT_LT(std::abs(heard[i + 2] - heard[i]), step + error) << "at " << joint;
}

std::string nameOf(const testing::TestParamInfo<Encoding>& info) {
    return info.param.name;
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
        Encoding{"alac_in_caf", u"caf"_s, ffmpeg + u"-c:a alac \"$OUT\""_s},
        Encoding{"wavpack16", u"wv"_s, ffmpeg + u"-c:a wavpack \"$OUT\""_s},
        Encoding{"wavpack24", u"wv"_s, ffmpeg + u"-c:a wavpack -sample_fmt s32p \"$OUT\""_s, 24},
        Encoding{"tta16", u"tta"_s, ffmpeg + u"-c:a tta \"$OUT\""_s},
        Encoding{"tta24", u"tta"_s,
                 ffmpeg + u"-c:a tta -sample_fmt s32 -bits_per_raw_sample 24 \"$OUT\""_s, 24}),
    nameOf);

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
                 ffmpeg + u"-c:a aac -b:a 256k -movflags +faststart \"$OUT\""_s},
        Encoding{"vorbis", u"ogg"_s, ffmpeg + u"-c:a libvorbis -q:a 8 \"$OUT\""_s},
        Encoding{"opus", u"opus"_s, ffmpeg + u"-c:a libopus -b:a 256k \"$OUT\""_s, 16, 48'000},
        Encoding{"musepack", u"mpc"_s, u"mpcenc --silent --insane --overwrite \"$IN\" \"$OUT\""_s}),
    nameOf);

TEST_F(Gapless, CountsThePositionAnewInTheAdoptedFile) {
    play(wave(numbered(20'000)), 5000 / 44'100.0);
    const auto next = wave(numbered(30'000, 44'100, 2, 100'001));
    EXPECT_EQ(engine.adoptPrescheduledTrack(), std::nullopt);
    ASSERT_TRUE(preschedule(next));
    EXPECT_FALSE(preschedule(next)) << "one is waiting already";
    listen(15'000 - 10);
    EXPECT_EQ(elapsedFrames(), 20'000 - 10);
    listen(500);
    EXPECT_EQ(adopted, QStringList{next});
    EXPECT_TRUE(engine.isPlaying());
    EXPECT_EQ(elapsedFrames(), 490);
    EXPECT_EQ(frameOf(output.recording()[2 * 15'000]), 100'001);
    EXPECT_NEAR(engine.durationSeconds(), 30'000 / 44'100.0, 1e-9);
    // The adopted file can be sought in and followed like any other.
    ASSERT_TRUE(engine.scheduleSegment(20'000 / 44'100.0, true));
    listen(1000);
    EXPECT_EQ(elapsedFrames(), 21'000);
    EXPECT_EQ(frameOf(output.recording().back()), 121'000);
    listen(9000);
    EXPECT_EQ(trackEnds, 2);
    EXPECT_FALSE(engine.isPlaying());
}

TEST_F(Gapless, EachFileHasItsOwnGainFromItsFirstSampleOn) {
    const auto level = [this](std::size_t frames) {
        Pcm pcm = numbered(frames);
        std::fill(pcm.samples.begin(), pcm.samples.end(), 1 << 20); // 1/8
        return wave(pcm);
    };
    const auto heardWith = [](double dB) { return float(0.125 * std::pow(10, dB / 20)); };
    for (const std::size_t block : {1, 512, 60'000}) {
        output.blockFrames = block;
        output.clearRecording();
        engine.setTrackGain(-6);
        play(level(20'000));
        ASSERT_TRUE(preschedule(level(7), 3)); // shorter than any block
        listen(15'000);
        engine.setTrackGain(-4); // of what plays, not of what follows
        output.pull(5'100);      // the joint has been rendered, and is not heard yet
        engine.setTrackGain(-2);
        output.pull(1'000);
        const auto& heard = output.recording();
        for (std::size_t i = 0; i < 15'000; ++i)
            ASSERT_FLOAT_EQ(heard[2 * i], heardWith(-6)) << i;
        for (std::size_t i = 15'441; i < 20'000; ++i)
            ASSERT_FLOAT_EQ(heard[2 * i], heardWith(-4)) << i << " behind the ramp";
        for (std::size_t i = 20'000; i < 20'007; ++i)
            ASSERT_FLOAT_EQ(heard[2 * i], heardWith(3)) << i;
        for (std::size_t i = 20'007; 2 * i < heard.size(); ++i)
            ASSERT_EQ(heard[2 * i], 0) << i;
    }
}

TEST_F(Gapless, RefusesWhatCannotFollow) {
    const auto same = wave(numbered(1000));
    EXPECT_FALSE(preschedule(same)) << "nothing is loaded";
    ASSERT_TRUE(open(wave(numbered(20'000))));
    EXPECT_FALSE(preschedule(same)) << "nothing is scheduled";
    ASSERT_TRUE(engine.scheduleSegment(0, true));
    EXPECT_FALSE(preschedule(wave(numbered(1000, 48'000))));
    EXPECT_FALSE(preschedule(wave(numbered(1000, 44'100, 1))));
    EXPECT_FALSE(preschedule(u"/no/such.flac"_s));
    EXPECT_TRUE(preschedule(same));
}

TEST_F(Gapless, OpensNothingTwice) {
    // What has been opened to follow needs no disk any more, whether it can follow or not.
    for (const auto& [sampleRate, follows] : {std::pair{48'000, false}, std::pair{44'100, true}}) {
        play(wave(numbered(200'000)));
        const auto next = wave(numbered(3000, sampleRate));
        EXPECT_EQ(preschedule(next), follows);
        ASSERT_TRUE(QFile::remove(next));
        play(next);
        output.clearRecording();
        output.play(1000);
        EXPECT_EQ(frameOf(output.recording().back()), 1000);
        // What is dropped while it is being opened never comes.
        const auto dropped = wave(numbered(1000, sampleRate));
        EXPECT_TRUE(engine.prescheduleNextIfCompatible(dropped, 0));
        ASSERT_TRUE(engine.scheduleSegment(0, true));
        EXPECT_TRUE(preschedule(wave(numbered(1000, sampleRate))));
        engine.unload();
        EXPECT_EQ(engine.adoptPrescheduledTrack(), std::nullopt);
    }
}

TEST_F(Gapless, DropsTheNextFileOnASeekAndWhenAsked) {
    const auto next = wave(numbered(1000, 44'100, 2, 500'000));
    // A long file: the next one has not been decoded, and nothing is heard of its going.
    play(wave(numbered(300'000)));
    ASSERT_TRUE(preschedule(next));
    output.play(1000);
    engine.invalidatePreschedule();
    EXPECT_EQ(output.flushes, 0);
    output.play(1000);
    EXPECT_EQ(frameOf(output.recording()[2 * 1999]), 2000);
    EXPECT_EQ(elapsedFrames(), 2000);
    EXPECT_EQ(engine.adoptPrescheduledTrack(), std::nullopt);

    // Near the end it has, and has to be taken out of what is queued.
    ASSERT_TRUE(preschedule(next));
    ASSERT_TRUE(engine.scheduleSegment(299'000 / 44'100.0, true));
    EXPECT_EQ(engine.adoptPrescheduledTrack(), std::nullopt);
    ASSERT_TRUE(preschedule(next));
    output.play(500); // the decoder has long run through both
    engine.invalidatePreschedule();
    EXPECT_TRUE(engine.isPlaying());
    EXPECT_EQ(elapsedFrames(), 299'500);
    output.clearRecording();
    listen(2000);
    EXPECT_EQ(frameOf(output.recording()[2 * 499]), 300'000);
    EXPECT_EQ(output.recording()[2 * 500], 0);
    EXPECT_EQ(trackEnds, 1);
    EXPECT_EQ(adopted, QStringList{QString()});

    ASSERT_TRUE(engine.scheduleSegment(1, false));
    ASSERT_TRUE(preschedule(next));
    engine.invalidatePreschedule();
    EXPECT_FALSE(engine.isPlaying());
}

TEST_F(Gapless, GoesOnBehindAFileThatIsCutShort) {
    // Long enough that the ring does not hold what is going to be missing.
    const auto cut = wave(numbered(400'000));
    const auto next = wave(numbered(2000, 44'100, 2, 500'000));
    play(cut);
    ASSERT_TRUE(preschedule(next));
    output.play(1000);
    ASSERT_TRUE(QFile::resize(cut, 44 + 300'000 * 6));
    listen(299'500);
    ASSERT_EQ(adopted, QStringList{next});
    EXPECT_EQ(elapsedFrames(), 500);
    EXPECT_EQ(frameOf(output.recording()[2 * 299'999]), 300'000);
    EXPECT_EQ(frameOf(output.recording()[2 * 300'000]), 500'000);
    listen(2000);
    EXPECT_EQ(trackEnds, 2);
}

} // namespace
} // namespace halvane::test
