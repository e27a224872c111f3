// SPDX-License-Identifier: MIT
#include "audio/analysis/spectrum_model.h"
#include "audio/graph/engine_test.h"
#include "support/realtime_trap.h"

#include <fstream>
#include <mutex>
#include <unistd.h>

namespace halvane::test {
namespace {

class RealTime : public EngineTest {
  protected:
    RealTime() {
        output.enterRender = RealtimeTrap::arm;
        output.leaveRender = RealtimeTrap::disarm;
    }
};

/// What the trap must not miss. It ends the program, so each is a test of its own.
using RealtimeTrapDeathTest = testing::Test;

#define EXPECT_TRAPPED(what, statement)                                                            \
    EXPECT_DEATH(                                                                                  \
        {                                                                                          \
            RealtimeTrap::arm();                                                                   \
            statement;                                                                             \
            RealtimeTrap::disarm();                                                                \
        },                                                                                         \
        "real-time trap: " what)

TEST(RealtimeTrapDeathTest, CatchesMemoryAndLocks) {
    if (!RealtimeTrap::watchesMemoryAndLocks())
        GTEST_SKIP() << "the sanitizer holds the allocator";
    std::vector<float> samples;
    std::string text(100, 'x');
    std::mutex mutex;
    EXPECT_TRAPPED("malloc", samples.resize(100));
    EXPECT_TRAPPED("free", std::string().swap(text));
    EXPECT_TRAPPED("pthread_mutex_lock", mutex.lock());
}

TEST(RealtimeTrapDeathTest, CatchesSystemCalls) {
    if (!RealtimeTrap::watchesSystemCalls())
        GTEST_SKIP() << "this kernel cannot hand system calls to the program";
    EXPECT_TRAPPED("system call", (void)!write(STDOUT_FILENO, "x", 1));
    EXPECT_TRAPPED("system call", getppid());
    EXPECT_TRAPPED("system call", usleep(1));
}

TEST(RealtimeTrap, LeavesOtherThreadsAndTimesAlone) {
    RealtimeTrap::arm();
    RealtimeTrap::disarm();
    std::vector<float> samples(100);
    EXPECT_GT(getppid(), 0);
}

TEST_F(RealTime, TheAudioCallbackNeverAllocatesLocksOrCallsTheSystem) {
    engine.spectrum().beginWatching();
    for (const int channels : {1, 2, 8}) {
        play(wave(music(60'000, 44'100, channels)));
        ASSERT_TRUE(preschedule(wave(music(5'000, 44'100, channels))));
        output.pull(3000);
        engine.setEQ(true, {12, -12, 3, 0, 0, 1, 2, 3, 4, 5}, -3);
        engine.setVolume(0.5);
        engine.setTrackGain(-3);
        output.pull(3000);
        output.pullHurried(100'000); // through holes, and past the end
        ASSERT_TRUE(engine.scheduleSegment(1, true));
        output.pullHurried(1); // perhaps before anything has been decoded
        output.pull(2000);
        engine.setEQ(false, {}, 0);
        output.pull(60'000);
    }
}

} // namespace
} // namespace halvane::test
