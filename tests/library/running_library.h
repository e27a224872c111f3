// SPDX-License-Identifier: MIT
#pragma once

#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "support/audio_material.h"
#include "support/fake_environment.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <functional>

namespace halvane::test {

/// The whole controller, and a folder for the music. It can be started again on what it has stored.
struct RunningLibrary {
    FakeEnvironment environment;
    QTemporaryDir music;
    std::unique_ptr<LibraryViewModel> library;

    /// A short tone in the folder, another for each name; its path. Folders between are made.
    QString wave(const QString& name) {
        QString path = music.filePath(name);
        QDir().mkpath(path.section(QLatin1Char('/'), 0, -2));
        Pcm tone = sine(440, 0.5, 8000, 8000, 1);
        tone.samples[0] = static_cast<std::int32_t>(qHash(name) % 30'000);
        writeWave(tone, path);
        return path;
    }
    static void until(const std::function<bool()>& reached) {
        while (!reached())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    /// A controller that nobody has told to start yet, in place of the one before.
    void build() { library = std::make_unique<LibraryViewModel>(environment); }
    /// Goes on until the library is restored.
    void restore() {
        library->start();
        until([this] { return !library->restoration()->isRunning(); });
    }
    void start() {
        build();
        restore();
    }
    void import(const QStringList& paths) {
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls.append(QUrl::fromLocalFile(path));
        library->importing()->importDroppedURLs(urls);
        until([this] { return !library->importing()->isImporting(); });
    }
    /// Does something after which the index is written, and waits for that.
    void untilSaved(const std::function<void()>& action) {
        bool isSaved = false;
        QObject::connect(
            library->persistence(), &CachePersistence::saved, library.get(),
            [&isSaved] { isSaved = true; }, Qt::SingleShotConnection);
        action();
        until([&isSaved] { return isSaved; });
    }
    void saveIndex() {
        untilSaved([this] { library->persistence()->persistMetadataCache(); });
    }
    /// The titles in the queue, and of its current entry.
    [[nodiscard]] QStringList queued() const {
        QStringList names;
        for (std::size_t row = 0; row < library->queue()->size(); ++row)
            names.append(library->queue()->record(row).title);
        return names;
    }
    [[nodiscard]] QString current() const {
        return library->queue()->currentItem().value_or(QueueItem()).title;
    }
};

} // namespace halvane::test
