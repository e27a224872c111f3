// SPDX-License-Identifier: MIT Tells work on a file from waiting for a disk.
#include "metadata/parallel/reading_effort.h"
#include "metadata/readers/bounded_file.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>
#include <thread>

namespace halvane::test {
namespace {

using namespace std::chrono_literals;

void work(std::chrono::milliseconds time) {
    const auto end = processorTime() + time;
    while (processorTime() < end)
        ;
}

TEST(ReadingEffort, ASlowDiskUsesUpNoneOfAFilesTime) {
    QTemporaryFile content;
    ASSERT_TRUE(content.open());
    content.write(QByteArray(100'000, 'x'));
    content.close();
    BoundedFile file(content.fileName(), {.time = 100ms});
    std::thread([] { work(120ms); }).join();
    EXPECT_EQ(file.read(0, 10).size(), 10);
    EXPECT_FALSE(file.isLate());
    work(120ms);
    EXPECT_EQ(file.read(50'000, 10).size(), 0);
    EXPECT_TRUE(file.isLate());
}

TEST(ReadingEffort, TellsAThreadAtWorkFromOneThatWaits) {
    ReadingEffort effort;
    std::binary_semaphore begun(0), answer(0);
    std::atomic<bool> isSeen = false;
    std::thread waiting([&] {
        const ReadingEffort::Scope scope(effort, 1);
        begun.release();
        answer.acquire();
    });
    std::thread working([&] {
        const ReadingEffort::Scope scope(effort, 2);
        while (!isSeen)
            ;
    });
    begun.acquire();
    while (effort.spentOn(2) < 100ms)
        std::this_thread::yield();
    EXPECT_LT(effort.spentOn(1), 50ms);
    isSeen = true;
    answer.release();
    waiting.join();
    working.join();
    EXPECT_EQ(effort.spentOn(2), 0ns);
}

} // namespace
} // namespace halvane::test
