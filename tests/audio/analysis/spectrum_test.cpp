// SPDX-License-Identifier: MIT
#include "audio/analysis/peak_buffer.h"
#include "audio/analysis/spectrum_analyzer.h"
#include "audio/analysis/spectrum_tap.h"
#include "audio/analysis/tap_buffer.h"
#include "support/child_process.h"
#include "support/offline_output.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <thread>
#include <vector>

namespace halvane::test {
namespace {

constexpr double rate = 44'100;
constexpr double due = 0.04; // seconds, more than the least interval

struct Tone {
    double frequency;
    double amplitude;
};

std::vector<float> tones(std::initializer_list<Tone> parts, std::size_t frames = 2048,
                         double sampleRate = rate) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        for (const Tone& tone : parts)
            samples[i] += float(tone.amplitude * std::sin(2 * std::numbers::pi * tone.frequency *
                                                          double(i) / sampleRate));
    return samples;
}

/// A frequency in the middle of a bin.
double bin(int index, double sampleRate = rate) {
    return index * sampleRate / 2048;
}

/// Feeds the same block again and again, until the reference has settled on it.
SpectrumOutput settled(SpectrumAnalyzer& analyzer, const std::vector<float>& samples,
                       double sampleRate = rate) {
    SpectrumOutput output;
    for (int i = 0; i < 1500; ++i)
        output = *analyzer.processIfDue(samples, sampleRate, i * due);
    return output;
}

std::size_t tallest(const SpectrumOutput& output) {
    return std::size_t(std::max_element(output.bands.begin(), output.bands.end()) -
                       output.bands.begin());
}

TEST(SpectrumAnalyzer, GetsOverSamplesThatAreNoSound) {
    const auto good = tones({{1000, 0.5}});
    for (const float broken : {3e20F, -std::numeric_limits<float>::infinity(),
                               std::numeric_limits<float>::quiet_NaN()}) {
        SpectrumAnalyzer analyzer;
        auto block = good;
        block[1000] = broken;
        (void)analyzer.processIfDue(block, rate, 0);
        SpectrumOutput output;
        for (int i = 1; i <= 300; ++i) // 12 s
            output = *analyzer.processIfDue(good, rate, i * due);
        EXPECT_NEAR(output.bands[tallest(output)], 0.92, 0.02) << broken;
        EXPECT_TRUE(std::all_of(output.peaks.begin(), output.peaks.end(),
                                [](float peak) { return std::isfinite(peak); }));
    }
}

TEST(SpectrumAnalyzer, GivesAtMostThirtyResultsASecond) {
    SpectrumAnalyzer analyzer;
    const auto block = tones({{1000, 0.5}});
    EXPECT_TRUE(analyzer.processIfDue(block, rate, 5.0));
    EXPECT_FALSE(analyzer.processIfDue(block, rate, 5.01));
    EXPECT_FALSE(analyzer.processIfDue({}, rate, 5.04)); // and this does not count as one
    EXPECT_TRUE(analyzer.processIfDue(block, rate, 5.041));
}

TEST(SpectrumAnalyzer, PutsATonesBandWhereItsFrequencyBelongs) {
    struct Case {
        double sampleRate;
        double frequency;
        std::size_t band; ///< 48 · log(f / 30) / log(top / 30), rounded down
    };
    const Case cases[] = {
        {44'100, 1000, 26},   {44'100, 5000, 39},    {44'100, 15'900, 47}, {48'000, 1000, 26},
        {96'000, 10'000, 44}, {192'000, 12'000, 45}, {22'050, 1000, 28},   {22'050, 10'900, 47},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.sampleRate) + " " + std::to_string(c.frequency));
        SpectrumAnalyzer analyzer;
        const auto samples = tones({{c.frequency, 0.5}}, 2048, c.sampleRate);
        const auto output = analyzer.processIfDue(samples, c.sampleRate, 0);
        EXPECT_EQ(tallest(*output), c.band);
    }
}

TEST(SpectrumAnalyzer, MeasuresHeightsBelowTheReference) {
    // Deep bands hold one bin each, so a tone in a bin of its own fills its band.
    SpectrumAnalyzer analyzer;
    const double below22dB = std::pow(10, -22 / 20.0);
    const auto output = settled(analyzer, tones({{bin(3), 0.5}, {bin(5), 0.5 * below22dB}}));
    EXPECT_NEAR(output.bands[tallest(output)], 0.92, 1e-3);
    const auto nearest =
        std::min_element(output.bands.begin(), output.bands.end(), [](float a, float b) {
            return std::abs(a - 0.46F) < std::abs(b - 0.46F);
        });
    EXPECT_NEAR(*nearest, 0.46, 5e-3);
    // Quiet music fills the display as well.
    SpectrumAnalyzer quiet;
    const auto soft = settled(quiet, tones({{bin(3), 0.0005}}));
    EXPECT_NEAR(soft.bands[tallest(soft)], 0.92, 1e-3);
}

TEST(SpectrumAnalyzer, LetsBandsAndPeaksFallInSilence) {
    SpectrumAnalyzer analyzer;
    const auto before = settled(analyzer, tones({{1000, 0.5}}));
    const std::vector<float> silence(2048);
    float band = before.bands[26];
    float peak = before.peaks[26];
    for (int i = 0; i < 5; ++i) {
        const auto output = *analyzer.processIfDue(silence, rate, 1000 + i * due);
        EXPECT_NEAR(output.bands[26], band * 0.82, 1e-5);
        EXPECT_NEAR(output.peaks[26], peak * 0.94, 1e-5);
        EXPECT_EQ(output.level, 0);
        band = output.bands[26];
        peak = output.peaks[26];
    }
}

TEST(SpectrumAnalyzer, PrecedesAShortBlockBySilence) {
    const auto part = tones({{700, 0.3}}, 512);
    std::vector<float> whole(1536);
    whole.insert(whole.end(), part.begin(), part.end());
    const auto output = *SpectrumAnalyzer().processIfDue(part, rate, 0);
    EXPECT_EQ(output.bands, SpectrumAnalyzer().processIfDue(whole, rate, 0)->bands);
    EXPECT_NEAR(output.level, 3.2 * 0.3 * std::sqrt(0.5) / 2, 0.01);
    EXPECT_EQ(SpectrumAnalyzer().processIfDue(tones({{700, 0.9}}), rate, 0)->level, 1);
}

// --- what is heard ---------------------------------------------------------------------------

std::vector<float> ramp(std::int64_t from, std::size_t frames) {
    std::vector<float> stereo;
    for (std::size_t i = 0; i < frames; ++i) {
        stereo.push_back(float(from + std::int64_t(i)));
        stereo.push_back(-1); // the other channel
    }
    return stereo;
}

void pushRamp(TapBuffer& buffer, std::int64_t from, std::size_t frames) {
    buffer.push(ramp(from, frames).data(), frames, 2, from);
}

TEST(TapBuffer, GivesTheNewestThatIsHeard) {
    TapBuffer buffer(1024);
    std::vector<float> room(100);
    pushRamp(buffer, 0, 1000);
    EXPECT_TRUE(buffer.newest(0, room).empty());
    EXPECT_EQ(buffer.newest(40, room).size(), 40U);
    const auto window = buffer.newest(500, room);
    ASSERT_EQ(window.size(), 100U);
    EXPECT_EQ(window.front(), 400);
    EXPECT_TRUE(buffer.newest(500, room).empty()) << "it stands still";
    EXPECT_EQ(buffer.newest(5000, room).back(), 999) << "no more than there is";
    pushRamp(buffer, 1000, 500);
    EXPECT_TRUE(buffer.newest(501, room).empty()) << "written over";
    buffer.discardBefore(1500); // a seek: what is queued will never be heard
    EXPECT_TRUE(buffer.newest(1500, room).empty());
    pushRamp(buffer, 2000, 20); // a hole in front
    EXPECT_EQ(buffer.newest(2020, room).size(), 20U);
}

TEST(TapBuffer, NeverMixesOldAndNewBetweenTwoThreads) {
    constexpr std::int64_t total = 3'000'000; // exact as floats
    TapBuffer buffer(1024);
    std::atomic<std::int64_t> heard{0};
    std::thread writer([&] {
        std::vector<float> block;
        for (std::int64_t at = 0; at < total;) {
            const auto frames = std::size_t(1 + at % 300);
            block = ramp(at, frames);
            buffer.push(block.data(), frames, 2, at);
            at += std::int64_t(frames);
            heard.store(std::max<std::int64_t>(at - 600, 0), std::memory_order_relaxed);
        }
        heard.store(total, std::memory_order_relaxed);
    });
    std::vector<float> room(256);
    int windows = 0;
    bool whole = true;
    for (std::int64_t now = 0; now < total;) {
        now = heard.load(std::memory_order_relaxed);
        const auto window = buffer.newest(now, room);
        for (std::size_t i = 0; i < window.size(); ++i)
            whole = whole && window[i] == window.front() + float(i);
        windows += window.empty() ? 0 : 1;
    }
    writer.join();
    EXPECT_TRUE(whole);
    EXPECT_GT(windows, 0);
}

TEST(PeakBuffer, TellsHowLoudWhatIsHeardIs) {
    PeakBuffer buffer(4096);
    const auto push = [&](std::int64_t from, std::size_t frames, float left, float right) {
        std::vector<float> block;
        for (std::size_t i = 0; i < frames; ++i)
            block.insert(block.end(), {left, right});
        buffer.push(block.data(), frames, 2, from);
    };
    EXPECT_EQ(buffer.loudest(-4096, 4096), 0);
    push(0, 1000, 0.25F, -0.5F);
    push(1000, 24, 0, -1.5F); // ends with a stretch
    push(1024, 1024, 0.5F, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(buffer.loudest(-500, 700), 0.5F);
    EXPECT_EQ(buffer.loudest(0, 1024), 1.5F);
    EXPECT_EQ(buffer.loudest(1024, 2048), 0.5F);
    EXPECT_EQ(buffer.loudest(1024, 1024), 0);
    push(768, 1280, 0.125F, 0.125F); // rendered again, softer
    EXPECT_EQ(buffer.loudest(768, 2048), 0.125F);
    push(2048, 8192, 0.75F, 0); // twice around
    EXPECT_EQ(buffer.loudest(8192, 10'240), 0.75F);
}

/// Renders a tone past the tap, as the graph does.
class TappedTone final : public RenderSource {
  public:
    explicit TappedTone(SpectrumTap& tap)
        : m_tap(tap) {}
    void render(float* interleaved, std::size_t frames) noexcept override {
        for (std::size_t i = 0; i < frames; ++i)
            interleaved[2 * i] = interleaved[2 * i + 1] =
                0.3F * std::sin(0.1F * float(m_position + std::int64_t(i)));
        m_tap.push(interleaved, frames, m_position);
        m_position += std::int64_t(frames);
    }

  private:
    SpectrumTap& m_tap;
    std::int64_t m_position = 0;
};

TEST(SpectrumTap, ShowsWhatIsHeardToWhoeverWatches) {
    SpectrumModel model;
    OfflineOutput output;
    SpectrumTap tap(model, output);
    TappedTone tone(tap);
    const StreamFormat format{44'100, 2, 3};
    tap.beginStream(format);
    ASSERT_TRUE(output.open(format, tone));
    ASSERT_TRUE(output.start());
    int results = 0;
    QObject::connect(&model, &SpectrumModel::changed, &model, [&] { ++results; });

    model.beginWatching();
    tap.setActive(true);
    output.play(3 * 2048);
    ASSERT_TRUE(waitFor([&] { return results > 0; }));
    EXPECT_NEAR(model.level(), 3.2 * 0.3 * std::sqrt(0.5), 0.02);
    EXPECT_GT(*std::max_element(model.bands().begin(), model.bands().end()), 0.5F);

    // Nothing is shown to nobody. Whoever watches again sees what is heard then, however soon after
    // the last result that is.
    for (int i = 0; i < 20; ++i) {
        tap.setActive(false);
        model.endWatching();
        QCoreApplication::sendPostedEvents();
        const int before = results;
        output.play(2048);
        QCoreApplication::sendPostedEvents();
        ASSERT_EQ(results, before);
        model.beginWatching();
        tap.setActive(true);
        output.play(2048);
        ASSERT_TRUE(waitFor([&] { return results > before; })) << i;
    }
}

} // namespace
} // namespace halvane::test
