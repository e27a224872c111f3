// SPDX-License-Identifier: MIT
#include "platform/sound/fallback_output.h"
#include "platform/sound/heard_frames.h"
#include "support/manual_clock.h"
#include "support/offline_output.h"

#include <gtest/gtest.h>

namespace halvane::test {

using namespace std::chrono_literals;

TEST(SilentOutput, playsAtTheClocksPaceAndStandsStillWhilePaused) {
    ManualClock clock;
    SilentOutput output(clock);
    NumberedSource source(2);
    ASSERT_TRUE(output.open({44100, 2}, source));
    clock.advance(1s);
    EXPECT_EQ(source.renders, 0) << "starts paused";
    ASSERT_TRUE(output.start());
    clock.advance(1s);
    EXPECT_EQ(output.framesHeard(), 44100);
    EXPECT_GE(output.framesRendered(), output.framesHeard());
    EXPECT_LE(output.framesRendered(), 44100 + 2 * 4410) << "not far ahead: a change is heard soon";
    output.pause();
    EXPECT_EQ(clock.pendingTimers(), 0U);
    clock.advance(1s);
    EXPECT_EQ(output.framesHeard(), 44100);
    output.flush();
    EXPECT_EQ(output.framesHeard(), output.framesRendered());
    const auto flushed = output.framesHeard();
    ASSERT_TRUE(output.start());
    clock.advance(500ms);
    EXPECT_EQ(output.framesHeard(), flushed + 22050);
    output.close();
    EXPECT_EQ(clock.pendingTimers(), 0U);
}

class FallbackTest : public testing::Test {
  protected:
    FallbackTest() {
        QObject::connect(&output, &SoundOutput::configurationChanged, [this] { ++changes; });
    }
    void serverIs(bool there) {
        if (there)
            server.comeBack();
        serverThere = there;
        if (!there)
            server.vanish();
        output.serverCameOrWent();
    }
    void openAndStart() {
        ASSERT_TRUE(output.open({44100, 2}, source));
        ASSERT_TRUE(output.start());
    }

    ManualClock clock;
    OfflineOutput server;
    bool serverThere = true;
    NumberedSource source{2};
    FallbackOutput output{server, [this] { return serverThere; }, clock};
    int changes = 0;
};

TEST_F(FallbackTest, playsSilentlyWithoutAServerAndTakesItWhenItAppears) {
    serverThere = false;
    openAndStart();
    clock.advance(2s);
    EXPECT_EQ(output.framesHeard(), 88200);
    EXPECT_EQ(server.opens, 0);
    serverIs(true);
    EXPECT_EQ(changes, 1);
    openAndStart();
    EXPECT_EQ(server.opens, 1);
    EXPECT_TRUE(server.isRunning());
}

TEST_F(FallbackTest, standsStillWhileTheServerMayComeBackThenGoesOnSilently) {
    openAndStart();
    server.play(1000);
    serverIs(false);
    EXPECT_EQ(output.framesHeard(), 1000);
    clock.advance(9s);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(output.framesHeard(), 1000) << "nobody has heard more";
    clock.advance(2s);
    EXPECT_EQ(changes, 1);
    openAndStart();
    clock.advance(1s);
    EXPECT_EQ(output.framesHeard(), 44100);
}

TEST_F(FallbackTest, goesOnWithAServerThatIsSoonBack) {
    openAndStart();
    server.play(1000);
    serverIs(false);
    clock.advance(2s);
    serverIs(true);
    EXPECT_EQ(changes, 1);
    openAndStart();
    EXPECT_EQ(server.opens, 2);
    clock.advance(20s);
    EXPECT_EQ(changes, 1);
}

TEST_F(FallbackTest, aStreamOpenedWhileWaitingWaitsToo) {
    openAndStart();
    serverIs(false);
    openAndStart(); // the user chose another track
    EXPECT_TRUE(output.isRunning());
    clock.advance(9s);
    EXPECT_EQ(output.framesHeard(), 0);
    clock.advance(2s);
    EXPECT_GT(output.framesHeard(), 0) << "the wait is over";
    EXPECT_EQ(changes, 0);
    output.pause();
    const auto paused = output.framesHeard();
    clock.advance(5s);
    EXPECT_EQ(output.framesHeard(), paused);
}

} // namespace halvane::test
