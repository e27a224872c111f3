// SPDX-License-Identifier: MIT
#include "audio/files/file_opener.h"
#include "support/audio_material.h"
#include "support/held_file.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

TEST(FileOpener, AFileThatHangsHoldsUpNeitherTheNextNorTheEnd) {
    const QTemporaryDir folder;
    const QString stuck = folder.filePath(u"stuck.wav"_s);
    const QString ready = folder.filePath(u"ready.wav"_s);
    for (const QString& path : {stuck, ready})
        writeWave(sine(440, 0.5, 8000, 8000, 1), path);
    const HeldFile held(stuck);
    if (!held.isHeld())
        GTEST_SKIP() << "the temporary folder's file system gives no leases";
    const auto begin = std::chrono::steady_clock::now();
    QStringList opened;
    {
        FileOpener opener(nullptr);
        const auto open = [&](const QString& path) {
            opener.open(path, [&opened, path](const FileOpener::Outcome& outcome) {
                EXPECT_TRUE(outcome.file) << outcome.failure.toStdString();
                opened += path;
            });
        };
        open(stuck);
        while (!held.wasTried())
            std::this_thread::yield();
        open(ready);
        while (opener.isOpening())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        open(stuck);
    }
    EXPECT_EQ(opened, QStringList{ready});
    // The kernel lets a held file go after 45 seconds: who waited for it took longer than this.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(40));
}

} // namespace
} // namespace halvane::test
