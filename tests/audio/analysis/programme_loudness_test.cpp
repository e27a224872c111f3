// SPDX-License-Identifier: MIT
#include "audio/analysis/loudness_analyzer.h"
#include "audio/analysis/programme_meter.h"
#include "support/audio_material.h"

#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <random>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

const QString toFlac = u"flac -s --channel-map=none -o \"$OUT\" \"$IN\""_s;

// Music whose level wanders by `range` dB, and pauses now and then.
Pcm lively(double seconds, double range, double level, unsigned seed, int rate = 44'100,
           int channels = 2) {
    Pcm pcm = music(std::size_t(seconds * rate), rate, channels, 16);
    std::mt19937 random(seed);
    double gain = level;
    double target = level;
    for (std::size_t i = 0; i < pcm.frames(); ++i) {
        if (i % std::size_t(rate / 2) == 0)
            target = random() % 8 == 0
                         ? 0
                         : level * std::pow(10, -range / 20 * double(random() % 100) / 100);
        gain += (target - gain) * 20 / rate;
        for (int c = 0; c < channels; ++c) {
            auto& sample = pcm.samples[i * std::size_t(channels) + std::size_t(c)];
            sample = int(std::lround(sample * gain));
        }
    }
    return pcm;
}

ProgrammeLoudness measured(const Pcm& pcm) {
    const std::vector<float> samples = pcm.floats();
    ProgrammeMeter meter({pcm.sampleRate, pcm.channels, 0});
    for (std::size_t done = 0; done < samples.size();) {
        const auto room = meter.room();
        const std::size_t count = std::min(room.size(), samples.size() - done);
        std::copy_n(samples.begin() + std::ptrdiff_t(done), count, room.begin());
        meter.add(count / std::size_t(pcm.channels));
        done += count;
    }
    return meter.result();
}

// What another implementation prints of a file: loudness, true peak.
std::pair<double, double> byFfmpeg(const QString& path) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"ffmpeg"_s, {u"-nostdin"_s, u"-i"_s, path, u"-af"_s, u"ebur128=peak=true"_s,
                                u"-f"_s, u"null"_s, u"-"_s});
    process.waitForFinished(60'000);
    const QString text = QString::fromUtf8(process.readAll());
    const auto number = [summary =
                             text.mid(text.lastIndexOf(u"Summary:"_s))](const QString& label) {
        const auto match = QRegularExpression(label + u":\\s+(-?[0-9.]+)"_s).match(summary);
        EXPECT_TRUE(match.hasMatch()) << label.toStdString() << summary.toStdString();
        return match.captured(1).toDouble();
    };
    return {number(u"I"_s), number(u"Peak"_s)};
}

TEST(ProgrammeLoudness, AgreesWithFfmpegToATenth) {
    struct Case {
        const char* name;
        Pcm pcm;
        QString suffix;
        QString command;
    };
    const Case cases[] = {
        {"even", lively(20, 1, 1, 1), u"flac"_s, toFlac},
        {"wide", lively(30, 25, 1, 2), u"flac"_s, toFlac},
        {"soft", lively(20, 12, 0.02, 3), u"flac"_s, toFlac},
        {"mono, 48 kHz", lively(12, 12, 0.7, 4, 48'000, 1), u"flac"_s, toFlac},
        {"low rate", lively(12, 12, 0.7, 5, 22'050), u"flac"_s, toFlac},
        {"high rate", lively(10, 6, 0.7, 6, 96'000), u"flac"_s, toFlac},
        {"highest rate", lively(6, 6, 0.7, 7, 192'000), u"flac"_s, toFlac},
        {"six channels", lively(8, 6, 0.7, 8, 44'100, 6), u"flac"_s, toFlac},
        {"low tone", sine(40, 0.5, 441'000), u"flac"_s, toFlac},
        {"mp3", lively(15, 12, 0.9, 9), u"mp3"_s, u"lame --quiet -V2 \"$IN\" \"$OUT\""_s},
        {"opus", lively(15, 12, 0.9, 10), u"opus"_s,
         u"ffmpeg -v error -y -i \"$IN\" -c:a libopus \"$OUT\""_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const QString path = encoded(c.pcm, c.suffix, c.command);
        const auto own = LoudnessAnalyzer::measure(path);
        ASSERT_TRUE(own);
        const auto [lufs, peak] = byFfmpeg(path);
        EXPECT_NEAR(own->programme.lufs, lufs, 0.1);
        EXPECT_NEAR(own->programme.truePeakDb, peak, 0.15); // its figures have one decimal
        EXPECT_GE(own->programme.truePeakDb, own->peakDb - 1e-4);
    }
}

TEST(ProgrammeLoudness, SeesPeaksBetweenSamples) {
    // A quarter of the rate, and an eighth of a period late.
    Pcm pcm{44'100, 2, 16, {}};
    for (int i = 0; i < 44'100; ++i)
        pcm.samples.insert(pcm.samples.end(), 2,
                           int(std::lround(16384 * std::sin(std::numbers::pi * (i / 2.0 + 0.25)))));
    const double sampled = 20 * std::log10(0.5 * std::sqrt(0.5));
    EXPECT_NEAR(measured(pcm).truePeakDb, sampled + 3.01, 0.2); // as much as EBU Tech 3341 allows
}

TEST(ProgrammeLoudness, OfSilenceAndOfLessThanABlockIsNone) {
    for (const Pcm& pcm : {sine(441, 0, 88'200), sine(441, 0.5, 17'000), Pcm{44'100, 2, 16, {}}}) {
        const ProgrammeLoudness own = measured(pcm);
        EXPECT_TRUE(own.isSilent());
        EXPECT_EQ(own.lufs, ProgrammeLoudness::silence);
    }
    EXPECT_FALSE(measured(sine(441, 0.5, 17'641)).isSilent());
}

// The tail of one sound and the head of the next share blocks in the joined file, which is why some
// hundredths are between them.
TEST(ProgrammeLoudness, OfAlbumsIsThatOfTheirTracksJoined) {
    struct Part {
        double seconds;
        double range;
        double level;
    };
    const std::vector<Part> albums[] = {
        {{40, 3, 0.9}, {40, 3, 0.2}},
        {{60, 10, 0.9}, {20, 10, 0.02}, {30, 5, 0.5}},
        {{30, 2, 0.9}, {60, 2, 0.28}}, // about at the gate
        {{30, 6, 0.01}, {30, 6, 0.02}},
    };
    unsigned seed = 100;
    for (const auto& parts : albums) {
        SCOPED_TRACE(seed);
        Pcm joined{8000, 1, 16, {}};
        std::vector<ProgrammeLoudness> tracks;
        std::vector<const ProgrammeLoudness*> known;
        for (const Part& part : parts) {
            const Pcm pcm = lively(part.seconds, part.range, part.level, ++seed, 8000, 1);
            tracks.push_back(measured(pcm));
            joined.samples.insert(joined.samples.end(), pcm.samples.begin(), pcm.samples.end());
        }
        for (const ProgrammeLoudness& track : tracks)
            known.push_back(&track);
        EXPECT_NEAR(loudnessOfAll(known), measured(joined).lufs, 0.1);
    }
    EXPECT_EQ(loudnessOfAll({}), ProgrammeLoudness::silence);
}

TEST(LevelKernels, GiveTheSameOnEveryProcessor) {
    const LevelKernels& here = levelKernels();
    const std::vector<float> samples = music(400).floats();
    const float filter[LevelKernels::taps] = {0.1F, -0.2F, 0.3F,  0.4F, 0.5F,  0.6F,
                                              0.5F, 0.4F,  -0.3F, 0.2F, -0.1F, 0.05F};
    const auto peak = [&](const LevelKernels& kernels) {
        return std::bit_cast<float>(kernels.largestBetween(&samples[100], 2, filter));
    };
    EXPECT_NEAR(peak(here), peak(plainLevelKernels), 1e-6);
    EXPECT_EQ(here.largest(&samples[100]), plainLevelKernels.largest(&samples[100]));
    const float* const places[] = {&samples[0], &samples[300]};
    const auto sums = [&](const LevelKernels& kernels) {
        LevelKernels::Memory memory{};
        LevelKernels::Lanes lanes{};
        kernels.weigh(places, 200, 2, kWeightingFilter(44'100), memory, lanes);
        return lanes;
    };
    for (std::size_t lane = 0; lane < LevelKernels::lanes; ++lane)
        EXPECT_NEAR(sums(here).of[lane], sums(plainLevelKernels).of[lane], 1e-9);
}

} // namespace
} // namespace halvane::test
