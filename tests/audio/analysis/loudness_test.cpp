// SPDX-License-Identifier: MIT
#include "audio/analysis/loudness_analyzer.h"
#include "audio/analysis/loudness_meter.h"
#include "audio/files/audio_reading.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;
using LoudnessAnalyzer::measure;

constexpr double tolerance = 0.01; // dB

const QString copy = u"cp \"$IN\" \"$OUT\""_s;
const QString toFlac = u"flac -s --channel-map=none -o \"$OUT\" \"$IN\""_s;

double dB(double amplitude) {
    return 20 * std::log10(amplitude);
}

Pcm square(std::size_t frames) {
    Pcm pcm{44'100, 2, 16, {}};
    for (std::size_t i = 0; i < frames; ++i)
        pcm.samples.insert(pcm.samples.end(), 2, i / 50 % 2 == 0 ? 32767 : -32768);
    return pcm;
}

Pcm onlyIn(std::size_t channel, Pcm pcm) {
    for (std::size_t i = 0; i < pcm.samples.size(); ++i)
        if (i % std::size_t(pcm.channels) != channel)
            pcm.samples[i] = 0;
    return pcm;
}

TEST(Loudness, AgreesWithTheClosedForm) {
    // Whole periods: 441 Hz is 100 frames at 44.1 kHz.
    const Pcm half = sine(441, 0.5, 100'000);
    const double ofSine = std::sqrt(0.5);
    struct Case {
        const char* name;
        Pcm pcm;
        QString suffix;
        QString command;
        double rms;
        double peak;
    };
    const Case cases[] = {
        {"full sine", sine(441, 1, 100'000), u"wav"_s, copy, dB(ofSine), 0},
        {"half sine", half, u"flac"_s, toFlac, dB(0.5 * ofSine), dB(0.5)},
        {"soft sine, 24 bit", sine(441, 0.001, 100'000, 44'100, 2, 24), u"flac"_s, toFlac,
         dB(0.001 * ofSine), dB(0.001)},
        {"hires", sine(960, 0.25, 100'000, 96'000, 2, 24), u"wav"_s, copy, dB(0.25 * ofSine),
         dB(0.25)},
        {"square", square(100'000), u"wav"_s, copy, 0, 0},
        {"silence", sine(441, 0, 50'000), u"flac"_s, toFlac, -180, -180},
        {"right channel only", onlyIn(1, half), u"flac"_s, toFlac, dB(0.5 * ofSine) + dB(ofSine),
         dB(0.5)},
        {"six channels, one sounds", onlyIn(4, sine(441, 0.5, 100'000, 44'100, 6)), u"flac"_s,
         toFlac, dB(0.5 * ofSine / std::sqrt(6)), dB(0.5)},
        {"mono, fewer frames than a block", sine(441, 0.5, 300, 44'100, 1), u"wav"_s, copy,
         dB(0.5 * ofSine), dB(0.5)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto measured = measure(encoded(c.pcm, c.suffix, c.command));
        ASSERT_TRUE(measured);
        EXPECT_NEAR(measured->rmsDb, c.rms, tolerance);
        EXPECT_NEAR(measured->peakDb, c.peak, tolerance);
    }
}

TEST(Loudness, OfAFileThatBreaksOffMeasuresWhatIsThere) {
    Pcm pcm = sine(441, 0.5, 200'000);
    const Pcm loud = sine(441, 1, 200'000);
    pcm.samples.insert(pcm.samples.end(), loud.samples.begin(), loud.samples.end());
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"cut.flac"_s);
    ASSERT_TRUE(QFile::copy(encoded(pcm, u"flac"_s, toFlac), path));
    ASSERT_TRUE(QFile::resize(path, QFile(path).size() / 4));
    const auto measured = measure(path);
    ASSERT_TRUE(measured);
    EXPECT_NEAR(measured->rmsDb, dB(0.5 * std::sqrt(0.5)), tolerance);
    EXPECT_NEAR(measured->peakDb, dB(0.5), tolerance);
}

TEST(Loudness, IsAbsentWhereNothingCanBeMeasured) {
    EXPECT_FALSE(measure(u"/nonexistent.flac"_s));
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(measure(encoded(music(5'000), u"wav"_s, copy), stop.get_token()));

    LoudnessMeter meter;
    EXPECT_FALSE(meter.result());
    const float samples[] = {0.5F, std::numeric_limits<float>::quiet_NaN(), 0.25F};
    meter.add(samples);
    EXPECT_FALSE(meter.result());
}

/// What a program prints about a file, behind `label`.
double printed(const QString& program, const QStringList& arguments, const QString& label) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.closeWriteChannel();
    process.waitForFinished(60'000);
    const auto match = QRegularExpression(label + u"[: ]\\s*(-?[0-9.]+)"_s)
                           .match(QString::fromUtf8(process.readAll()));
    EXPECT_TRUE(match.hasMatch()) << program.toStdString() << ' ' << label.toStdString();
    return match.captured(1).toDouble();
}

TEST(Loudness, AgreesWithOtherProgramsOnEncodedFiles) {
    const Pcm pcm = music(300'000);
    struct Case {
        QString suffix;
        QString command;
        bool soxReadsIt;
    };
    const Case cases[] = {
        {u"flac"_s, toFlac, true},
        {u"mp3"_s, u"lame --quiet -V2 \"$IN\" \"$OUT\""_s, false}, // sox keeps the padding
        {u"m4a"_s, ffmpeg + u"-c:a alac \"$OUT\""_s, false},
        {u"aiff"_s, ffmpeg + u"\"$OUT\""_s, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.suffix.toStdString());
        const QString path = encoded(pcm, c.suffix, c.command);
        const auto measured = measure(path);
        ASSERT_TRUE(measured);
        const QStringList volumedetect{u"-nostdin"_s,     u"-i"_s, path,      u"-af"_s,
                                       u"volumedetect"_s, u"-f"_s, u"null"_s, u"-"_s};
        EXPECT_NEAR(measured->rmsDb, printed(u"ffmpeg"_s, volumedetect, u"mean_volume"_s), 0.051);
        EXPECT_NEAR(measured->peakDb, printed(u"ffmpeg"_s, volumedetect, u"max_volume"_s), 0.051);
        if (!c.soxReadsIt)
            continue;
        const QStringList stats{path, u"-n"_s, u"stats"_s};
        EXPECT_NEAR(measured->rmsDb, printed(u"sox"_s, stats, u"RMS lev dB"_s), 0.0051);
        EXPECT_NEAR(measured->peakDb, printed(u"sox"_s, stats, u"Pk lev dB"_s), 0.0051);
    }
}

} // namespace
} // namespace halvane::test
