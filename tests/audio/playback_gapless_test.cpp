// SPDX-License-Identifier: MIT
#include "audio/engine_test.h"

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

struct Format {
    const char* suffix;
    const char* command;
    bool lossless;
};

void PrintTo(const Format& format, std::ostream* stream) {
    *stream << format.suffix;
}

class GaplessFormats : public Gapless, public testing::WithParamInterface<Format> {};

TEST_P(GaplessFormats, FourPiecesPlayAsTheOneSignal) {
    const auto whole = music(100'000);
    const std::array<std::size_t, 5> cuts = {0, 20'123, 41'000, 73'211, 100'000};
    std::vector<QString> paths;
    for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
        paths.push_back(encoded(whole.cut(cuts[i], cuts[i + 1]),
                                QString::fromLatin1(GetParam().suffix),
                                QString::fromLatin1(GetParam().command)));
    }
    auto heard = playChain(paths);
    EXPECT_EQ(output.opens, 1);
    // What follows the last piece is silence; the chain's own length is known from the position.
    const auto expected = whole.floats();
    ASSERT_GE(heard.size(), expected.size());
    for (std::size_t i = expected.size(); i < heard.size(); ++i)
        ASSERT_EQ(heard[i], 0) << "sample " << i << " after the end of " << expected.size();
    heard.resize(expected.size());
    if (GetParam().lossless) {
        EXPECT_TRUE(heard == expected);
        return;
    }
    // Where pieces meet, the decoded signal follows the original as closely as elsewhere.
    const auto error = [&](std::size_t begin, std::size_t end) {
        double sum = 0;
        for (std::size_t i = 2 * begin; i < 2 * end; ++i)
            sum += std::pow(double(heard[i]) - double(expected[i]), 2);
        return std::sqrt(sum / double(2 * (end - begin)));
    };
    const double everywhere = error(0, 100'000);
    for (std::size_t i = 1; i + 1 < cuts.size(); ++i)
        EXPECT_LT(error(cuts[i] - 32, cuts[i] + 32), 4 * everywhere) << "joint at " << cuts[i];
}

INSTANTIATE_TEST_SUITE_P(
    All, GaplessFormats,
    testing::Values(Format{".flac", "flac -s -f -o $OUT $IN", true},
                    Format{".wav", "cp $IN $OUT", true}, Format{".aiff", "sox $IN $OUT", true},
                    Format{".caf", "ffmpeg -v error -y -i $IN -c:a pcm_s16le $OUT", true},
                    Format{".m4a", "ffmpeg -v error -y -i $IN -c:a alac $OUT", true},
                    Format{".mp3", "lame --quiet -b 256 $IN $OUT", false},
                    Format{".aac.m4a", "ffmpeg -v error -y -i $IN -c:a aac -b:a 256k $OUT", false}),
    [](const auto& test) {
        auto name = std::string(test.param.suffix + 1);
        std::replace(name.begin(), name.end(), '.', '_');
        return name;
    });

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
    ASSERT_EQ(engine.scheduleSegment(20'000 / 44'100.0, true), std::nullopt);
    listen(1000);
    EXPECT_EQ(elapsedFrames(), 21'000);
    EXPECT_EQ(frameOf(output.recording().back()), 121'000);
    listen(9000);
    EXPECT_EQ(trackEnds, 2);
    EXPECT_FALSE(engine.isPlaying());
}

TEST_F(Gapless, RefusesWhatCannotFollow) {
    const auto same = wave(numbered(1000));
    EXPECT_FALSE(preschedule(same)) << "nothing is loaded";
    ASSERT_EQ(engine.load(wave(numbered(20'000))), std::nullopt);
    EXPECT_FALSE(preschedule(same)) << "nothing is scheduled";
    ASSERT_EQ(engine.scheduleSegment(0, true), std::nullopt);
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
        EXPECT_TRUE(engine.prescheduleNextIfCompatible(dropped));
        ASSERT_EQ(engine.scheduleSegment(0, true), std::nullopt);
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
    ASSERT_EQ(engine.scheduleSegment(299'000 / 44'100.0, true), std::nullopt);
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

    ASSERT_EQ(engine.scheduleSegment(1, false), std::nullopt);
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
