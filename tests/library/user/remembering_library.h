// SPDX-License-Identifier: MIT
#pragma once

#include "library/running_library.h"
#include "library/user/settings_keys.h"
#include "support/audio_material.h"

#include <QFile>

#include <gtest/gtest.h>

namespace halvane::test {

/// A controller, and small WAVE files that a test renames, tags and copies. Each sound has a
/// number.
struct RememberingLibrary : RunningLibrary {
    /// Writes a sound, and a title behind it, as a tag editor would.
    void write(const QString& path, int sound, const QString& title) const {
        using namespace Qt::StringLiterals;
        constexpr std::size_t frames = 2000;
        Pcm pcm = sine(200 + 7 * sound, 0.1, frames, 8000, 1);
        pcm.samples[0] = sound; // no two are alike by accident
        writeWave(pcm, path);
        QByteArray name = title.toUtf8() + '\0';
        if (name.size() % 2 != 0)
            name += '\0';
        addChunk(path, "LIST", "INFOINAM" + number(name.size()) + name);
    }
    /// Adds a rating, as the byte of a popularimeter, and a play count to the tags.
    void rate(const QString& path, char rating, char plays) const {
        using namespace std::string_literals;
        const QByteArray frame = QByteArray::fromStdString("POPM\0\0\0\6\0\0\0"s) + rating +
                                 QByteArray::fromStdString("\0\0\0"s) + plays;
        const QByteArray tag =
            QByteArray::fromStdString("ID3\4\0\0\0\0\0"s) + static_cast<char>(frame.size()) + frame;
        addChunk(path, "id3 ", tag);
    }
    [[nodiscard]] QString path(const QString& name) const { return music.filePath(name); }

    /// Goes on until all sounds are identified, tracks agree, and missing ones are known.
    void settle() {
        const auto after = [this](auto* sender, auto signal, const std::function<void()>& act) {
            bool isDone = false;
            const auto connection =
                QObject::connect(sender, signal, library.get(), [&isDone] { isDone = true; });
            act();
            until([&isDone] { return isDone; });
            QObject::disconnect(connection);
        };
        // One that was under way may not have seen all.
        while (!isAllIdentified())
            after(library->renewal(), &RecordRenewal::finished,
                  [this] { library->renewal()->renewOldRecords(); });
        after(library->availability(), &Availability::refreshed,
              [this] { library->availability()->refreshAvailability(); });
        after(library->soundMemory(), &SoundMemory::surveyed,
              [this] { library->soundMemory()->survey(); });
    }
    [[nodiscard]] bool isAllIdentified() const {
        const TrackRows& rows = library->store()->rows();
        return std::all_of(rows.cbegin(), rows.cend(), [](const TrackPtr& track) {
            return track->identity.isKnown() || !QFile::exists(track->path());
        });
    }
    void quit() {
        saveIndex();
        library.reset();
    }
    [[nodiscard]] Said said(const QString& path) const { return library->userData()->said(path); }
    [[nodiscard]] std::vector<QString> listed(const QUuid& list) const {
        return library->playlists()->find(list)->trackPaths;
    }

  private:
    static QByteArray number(qsizetype value) {
        QByteArray bytes(4, '\0');
        for (int i = 0; i < 4; ++i)
            bytes[i] = static_cast<char>(value >> (8 * i));
        return bytes;
    }
    static void addChunk(const QString& path, const QByteArray& name, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(file.size());
        file.write(name + number(bytes.size()) + bytes);
        const qint64 size = file.size();
        file.seek(4);
        file.write(number(size - 8));
    }
};

} // namespace halvane::test
