// SPDX-License-Identifier: MIT
#include "audio/files/audio_reading.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <array>
#include <limits>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

TEST(AudioFileFormat, RatesAndChannelsOfEachKind) {
    struct Case {
        int sampleRate;
        int channels;
        QString suffix;
        QString command;
    };
    const QString toFlac = u"flac -s --channel-map=none -o \"$OUT\" \"$IN\""_s;
    const QString copy = u"cp \"$IN\" \"$OUT\""_s;
    const QString toAlac = ffmpeg + u"-c:a alac \"$OUT\""_s;
    const Case cases[] = {
        {8'000, 1, u"wav"_s, copy},
        {384'000, 2, u"wav"_s, copy},
        {48'000, 8, u"wav"_s, copy},
        {192'000, 2, u"flac"_s, toFlac},
        {96'000, 6, u"flac"_s, toFlac},
        {44'100, 8, u"flac"_s, toFlac},
        {384'000, 1, u"flac"_s, toFlac},
        {44'100, 3, u"flac"_s, toFlac},
        {96'000, 2, u"m4a"_s, toAlac},
        {48'000, 6, u"m4a"_s, toAlac},
        {48'000, 5, u"aiff"_s, ffmpeg + u"\"$OUT\""_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.suffix.toStdString() + " " + std::to_string(c.sampleRate) + " " +
                     std::to_string(c.channels));
        const Pcm pcm = music(6'000, c.sampleRate, c.channels);
        const auto file = opened(encoded(pcm, c.suffix, c.command));
        EXPECT_EQ(file->format().sampleRate, c.sampleRate);
        EXPECT_EQ(file->format().channels, c.channels);
        EXPECT_DOUBLE_EQ(file->durationSeconds(), 6'000.0 / c.sampleRate);
        const auto samples = readAll(*file);
        // ALAC keeps surround channels in another order than WAVE; the decoder gives them in
        // WAVE's.
        EXPECT_TRUE(samples == pcm.floats());
    }
}

template<typename T>
void overwriteSamples(const QString& path, const std::vector<T>& samples) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const qsizetype data = file.peek(1'000).indexOf("data");
    ASSERT_GT(data, 0);
    file.seek(data + 8);
    file.write(reinterpret_cast<const char*>(samples.data()),
               qint64(samples.size()) * qint64(sizeof(T)));
}

TEST(AudioFileFormat, SamplesThatNoRecordingHoldsAreBounded) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> wild{1.5,      -200,      3e20, -3e20, std::nan(""),
                                   infinity, -infinity, 1e-3, 0};
    const std::vector<float> heard{1.5F, -200, 256, -256, 0, 256, -256, 1e-3F, 0};
    const Pcm pcm = music(4'000, 44'100, 1);
    const QString single = encoded(pcm, u"wav"_s, ffmpeg + u"-c:a pcm_f32le \"$OUT\""_s);
    overwriteSamples(single, std::vector<float>(wild.begin(), wild.end()));
    const QString twofold = encoded(pcm, u"wav"_s, ffmpeg + u"-c:a pcm_f64le \"$OUT\""_s);
    overwriteSamples(twofold, wild);
    for (const QString& path : {single, twofold}) {
        const auto file = opened(path);
        EXPECT_EQ(readFrames(*file, heard.size()), heard) << path.toStdString();
    }
}

TEST(AudioFileFormat, FilesWithAndWithoutASpeakerFigureAreOfOneFormat) {
    const Pcm pcm = music(5'000);
    const auto wave = opened(encoded(pcm, u"wav"_s, u"cp \"$IN\" \"$OUT\""_s));
    for (const QString& path : {encoded(pcm, u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s),
                                encoded(pcm, u"m4a"_s, ffmpeg + u"-c:a alac \"$OUT\""_s),
                                encoded(pcm, u"m4a"_s, ffmpeg + u"-c:a aac \"$OUT\""_s),
                                encoded(pcm, u"mp3"_s, u"lame --quiet \"$IN\" \"$OUT\""_s)})
        EXPECT_EQ(opened(path)->format(), wave->format()) << path.toStdString();
}

TEST(AudioFileFormat, EveryWidthConvertsExactly) {
    const QString copy = u"cp \"$IN\" \"$OUT\""_s;
    for (const int bits : {8, 32}) {
        const Pcm pcm = music(3'000, 44'100, 2, bits);
        EXPECT_TRUE(readAll(encoded(pcm, u"wav"_s, copy)) == pcm.floats());
    }
    Pcm extremes{44'100, 1, 24, {}};
    for (int i = 0; i < 1000; ++i)
        for (const std::int32_t value : {-0x800000, 0x7FFFFF, 0, 1, -1})
            extremes.samples.push_back(value);
    EXPECT_TRUE(readAll(encoded(extremes, u"wav"_s, copy)) == extremes.floats());
}

TEST(AudioFileFormat, GoesByContentAndTakesAnyName) {
    const QTemporaryDir folder;
    const Pcm pcm = music(5'000);
    const QString flac = encoded(pcm, u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s);
    const QString decomposed = u"Cafe\u0301 \u97f3\u697d"_s;
    for (const QString& name : {u"flac by content.mp3"_s, u"100% \"quoted\"; http:x #1?.flac"_s,
                                decomposed + u".flac"_s, u"-.flac"_s}) {
        const QString path = folder.filePath(name);
        ASSERT_TRUE(QFile::copy(flac, path));
        EXPECT_TRUE(readAll(path) == pcm.floats()) << name.toStdString();
    }
}

/// The check sum of an Ogg page (RFC 3533, section 6).
quint32 oggSum(QByteArrayView page) {
    quint32 sum = 0;
    for (const char byte : page) {
        sum ^= quint32(static_cast<unsigned char>(byte)) << 24;
        for (int bit = 0; bit < 8; ++bit)
            sum = sum << 1 ^ (sum >> 31 != 0 ? 0x04c11db7U : 0);
    }
    return sum;
}

TEST(AudioFileFormat, OpusIsAsLoudAsItsHeaderAsks) {
    const QTemporaryDir folder;
    const QString path =
        encoded(music(100'000, 48'000), u"opus"_s, ffmpeg + u"-c:a libopus \"$OUT\""_s);
    QFile plain(path);
    ASSERT_TRUE(plain.open(QIODevice::ReadOnly));
    QByteArray bytes = plain.readAll();
    const qsizetype head = bytes.indexOf("OpusHead");
    ASSERT_EQ(head, 28) << "on a page of its own";
    qToLittleEndian<qint16>(-6 * 256, bytes.data() + head + 16); // 256ths of a decibel
    constexpr qsizetype sumAt = 22;
    bytes.replace(sumAt, 4, QByteArray(4, '\0'));
    qToLittleEndian(oggSum(QByteArrayView(bytes).first(bytes.indexOf("OggS", 1))),
                    bytes.data() + sumAt);
    QFile softer(folder.filePath(u"softer.opus"_s));
    ASSERT_TRUE(softer.open(QIODevice::WriteOnly));
    softer.write(bytes);
    softer.close();

    const auto level = [](const std::vector<float>& samples) {
        double sum = 0;
        for (const float sample : samples)
            sum += double{sample} * sample;
        return 10 * std::log10(sum / double(samples.size()));
    };
    EXPECT_NEAR(level(readAll(softer.fileName())) - level(readAll(path)), -6, 0.01);
}

TEST(AudioFileDamage, AFileCutShortWhileItPlaysEndsThere) {
    const QTemporaryDir folder;
    const Pcm pcm = music(400'000);
    for (const auto& [suffix, command] :
         {std::pair{u"wav"_s, u"cp \"$IN\" \"$OUT\""_s},
          std::pair{u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s},
          std::pair{u"mp3"_s, u"lame --quiet -b 320 \"$IN\" \"$OUT\""_s},
          std::pair{u"m4a"_s, ffmpeg + u"-c:a alac -movflags +faststart \"$OUT\""_s}}) {
        SCOPED_TRACE(suffix.toStdString());
        const QString path = folder.filePath(u"cut."_s + suffix);
        ASSERT_TRUE(QFile::copy(encoded(pcm, suffix, command), path));
        const auto file = opened(path);
        EXPECT_EQ(file->lengthFrames(), 400'000);
        const std::size_t before = readFrames(*file, 50'000).size() / 2;
        EXPECT_EQ(before, 50'000U);
        ASSERT_TRUE(QFile::resize(path, QFile(path).size() / 2));
        const std::size_t after = readAll(*file).size() / 2;
        EXPECT_GT(after, 50'000U);
        EXPECT_LT(after, 200'000U);
        EXPECT_TRUE(file->failure());
        float frame[2];
        EXPECT_EQ(file->read(frame, 1), 0U);
        file->seek(1'000); // what is left can still be played
        EXPECT_EQ(file->read(frame, 1), 1U);
        EXPECT_FALSE(file->failure());
    }
}

TEST(AudioFileDamage, WhatFollowsADamagedStretchKeepsItsPlace) {
    const QTemporaryDir folder;
    const Pcm pcm = music(400'000);
    const auto original = pcm.floats();
    const QString path = folder.filePath(u"damaged.flac"_s);
    ASSERT_TRUE(QFile::copy(encoded(pcm, u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s), path));
    QFile damaged(path);
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.seek(damaged.size() / 2);
    damaged.write(QByteArray(30'000, '\x55'));
    damaged.close();

    const auto samples = readAll(path);
    ASSERT_EQ(samples.size(), original.size());
    std::size_t differing = 0;
    for (std::size_t i = 0; i < samples.size(); ++i)
        differing += samples[i] != original[i];
    EXPECT_GT(differing, 5'000U);
    EXPECT_LT(differing, 60'000U);
    EXPECT_EQ(samples.back(), original.back());
}

} // namespace
} // namespace halvane::test
