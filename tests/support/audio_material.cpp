// SPDX-License-Identifier: MIT
#include "support/audio_material.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QtEndian>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <stdexcept>

namespace halvane::test {

using namespace Qt::StringLiterals;

Pcm Pcm::cut(std::size_t begin, std::size_t end) const {
    Pcm piece{sampleRate, channels, bits, {}};
    const auto at = [&](std::size_t frame) {
        return samples.begin() + static_cast<std::ptrdiff_t>(frame) * channels;
    };
    piece.samples.assign(at(begin), at(end));
    return piece;
}

std::vector<float> Pcm::floats() const {
    std::vector<float> result(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i)
        result[i] = std::ldexp(static_cast<float>(samples[i]), 1 - bits);
    return result;
}

namespace {

template<typename Wave>
Pcm synthesize(std::size_t frames, int sampleRate, int channels, int bits, Wave wave) {
    Pcm pcm{sampleRate, channels, bits, {}};
    pcm.samples.reserve(frames * static_cast<std::size_t>(channels));
    const double fullScale = std::ldexp(1.0, bits - 1);
    for (std::size_t i = 0; i < frames; ++i)
        for (int c = 0; c < channels; ++c) {
            const double value =
                std::round(wave(static_cast<double>(i) / sampleRate, c) * fullScale);
            pcm.samples.push_back(
                static_cast<std::int32_t>(std::clamp(value, -fullScale, fullScale - 1)));
        }
    return pcm;
}

} // namespace

Pcm music(std::size_t frames, int sampleRate, int channels, int bits) {
    std::uint32_t noise = 12345;
    return synthesize(frames, sampleRate, channels, bits, [&](double t, int c) {
        noise = noise * 1664525U + 1013904223U;
        const double w = 2 * std::numbers::pi * t;
        return 0.30 * std::sin(w * (110 + 7 * c) + 3 * std::sin(w * 0.7)) +
               0.20 * std::sin(w * (523 + 31 * c) + 5 * std::sin(w * 0.31)) +
               0.15 * std::sin(w * 1760) * std::sin(w * (1.3 + 0.1 * c)) +
               0.01 * (static_cast<double>(noise >> 8U) / 8388608.0 - 1);
    });
}

Pcm sine(double frequency, double amplitude, std::size_t frames, int sampleRate, int channels,
         int bits) {
    return synthesize(frames, sampleRate, channels, bits, [&](double t, int) {
        return amplitude * std::sin(2 * std::numbers::pi * frequency * t);
    });
}

void writeWave(const Pcm& pcm, const QString& path) {
    const int bytes = pcm.bits / 8;
    QByteArray data;
    data.reserve(static_cast<qsizetype>(pcm.samples.size()) * bytes + 44);
    const auto put = [&](std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i)
            data.append(static_cast<char>(value >> (8 * i)));
    };
    const auto size =
        static_cast<std::uint32_t>(pcm.samples.size()) * static_cast<std::uint32_t>(bytes);
    const auto frameBytes = static_cast<std::uint32_t>(bytes * pcm.channels);
    data.append("RIFF");
    put(36 + size, 4);
    data.append("WAVEfmt ");
    put(16, 4);
    put(1, 2);
    put(static_cast<std::uint32_t>(pcm.channels), 2);
    put(static_cast<std::uint32_t>(pcm.sampleRate), 4);
    put(static_cast<std::uint32_t>(pcm.sampleRate) * frameBytes, 4);
    put(frameBytes, 2);
    put(static_cast<std::uint32_t>(pcm.bits), 2);
    data.append("data");
    put(size, 4);
    for (const std::int32_t sample : pcm.samples)
        put(static_cast<std::uint32_t>(sample) + (bytes == 1 ? 128U : 0U), bytes);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

QString materialFolder() {
    const QString folder = QStringLiteral(HALVANE_TEST_MATERIAL);
    QDir().mkpath(folder);
    return folder;
}

QString encoded(const Pcm& pcm, const QString& suffix, const QString& command) {
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(QByteArrayView(reinterpret_cast<const char*>(pcm.samples.data()),
                                static_cast<qsizetype>(pcm.samples.size() * sizeof(std::int32_t))));
    hash.addData(
        u"%1 %2 %3 %4"_s.arg(pcm.sampleRate).arg(pcm.channels).arg(pcm.bits).arg(command).toUtf8());
    const QString base =
        materialFolder() + u'/' + QString::fromLatin1(hash.result().toHex().left(16));
    const QString path = base + u'.' + suffix;

    // Tests run side by side, in processes of their own.
    QLockFile lock(base + u".lock"_s);
    lock.lock();
    if (QFile::exists(path))
        return path;
    const QString wave = base + u".in.wav"_s;
    const QString unfinished = base + u".part."_s + suffix;
    writeWave(pcm, wave);
    // Not by QProcess: once a process has forked, the thread sanitizer no longer sees what its
    // threads do in order.
    const QString log = base + u".log"_s;
    qputenv("IN", wave.toUtf8());
    qputenv("OUT", unfinished.toUtf8());
    qputenv("LOG", log.toUtf8());
    const QString script = u"( set -e\n%1\n) </dev/null >\"$LOG\" 2>&1"_s.arg(command);
    const bool done = std::system(script.toUtf8().constData()) == 0;
    QFile output(log);
    const QByteArray said = output.open(QIODevice::ReadOnly) ? output.readAll() : QByteArray();
    output.remove();
    QFile::remove(wave);
    if (!done || !QFile::rename(unfinished, path))
        throw std::runtime_error(command.toStdString() + ": " + said.toStdString());
    return path;
}

} // namespace halvane::test
