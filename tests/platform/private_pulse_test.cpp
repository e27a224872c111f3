// SPDX-License-Identifier: MIT
#include "support/private_pulse.h"

#include <gtest/gtest.h>

namespace halvane::test {

using namespace Qt::StringLiterals;

namespace {

void exercise(PrivateSoundServer& server) {
    EXPECT_TRUE(server.sinkIndex(u"null44100"_s));
    const auto module = server.loadNullSink(u"extra"_s, 88200, u"Extra sink"_s, 1);
    EXPECT_TRUE(server.record(u"extra"_s, 88200, 1)->waitForFrames(1000));
    server.unload(module);
    EXPECT_TRUE(waitFor([&] { return !server.sinkIndex(u"extra"_s); }));
    server.kill();
    server.start();
    EXPECT_TRUE(server.record(u"null96000"_s, 96000)->waitForFrames(1000));
}

} // namespace

TEST(PrivateSoundServer, pulseAudioPlaysRecordsAndComesBack) {
    PrivatePulse server;
    exercise(server);
}

TEST(PrivateSoundServer, pipeWirePlaysRecordsAndComesBack) {
    const auto server = PrivatePipeWire::create();
    if (!server)
        GTEST_SKIP() << "PipeWire can't be started here";
    exercise(*server);
}

} // namespace halvane::test
