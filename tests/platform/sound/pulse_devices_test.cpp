// SPDX-License-Identifier: MIT
#include "platform/sound/pulse_format.h"
#include "platform/sound/system_sound.h"
#include "platform/system_clock.h"
#include "support/private_pulse.h"

#include <gtest/gtest.h>

namespace halvane::test {

using namespace Qt::StringLiterals;
using AudioOutput::Devices;

namespace {

QStringList names(const Devices& devices) {
    QStringList list;
    for (const auto& device : devices.outputDevices())
        list << device.name;
    return list;
}

QString defaultName(const Devices& devices) {
    const auto id = devices.defaultOutputDevice();
    return id ? devices.deviceName(*id).value_or(QString()) : QString();
}

/// Devices that come, go, share a name and change places, on either kind of server.
void comeAndGo(PrivateSoundServer& server) {
    SystemClock clock;
    SystemSound sound(clock, server.address());
    const Devices& devices = sound.devices();
    const QStringList standard{u"Null 44100"_s, u"Null 48000"_s, u"Null 96000"_s};
    ASSERT_TRUE(waitFor([&] { return names(devices) == standard; }));
    ASSERT_TRUE(waitFor([&] { return defaultName(devices) == u"Null 44100"; }));
    int listChanges = 0;
    int defaultChanges = 0;
    QObject::connect(&devices, &Devices::deviceListChanged, [&] { ++listChanges; });
    QObject::connect(&devices, &Devices::defaultOutputDeviceChanged, [&] { ++defaultChanges; });

    server.loadInputOnly(u"microphone"_s, u"Microphone"_s);
    const auto first = server.loadNullSink(u"one"_s, 48'000, u"USB DAC"_s);
    const auto second = server.loadNullSink(u"two"_s, 48'000, u"USB DAC"_s);
    const QStringList more = standard + QStringList{u"USB DAC"_s, u"USB DAC"_s};
    ASSERT_TRUE(waitFor([&] { return names(devices) == more; })) << "the microphone is no output";
    EXPECT_GE(listChanges, 1);
    EXPECT_EQ(defaultChanges, 0);
    const auto list = devices.outputDevices();
    EXPECT_NE(list[3].id, list[4].id);
    EXPECT_EQ(list[3].id, server.sinkIndex(u"one"_s));

    server.unload(first);
    ASSERT_TRUE(waitFor([&] { return devices.outputDevices().size() == 4; }));
    EXPECT_EQ(devices.outputDevices().back().id, list[4].id);
    EXPECT_FALSE(devices.deviceName(list[3].id));

    server.setDefaultSink(u"two"_s);
    ASSERT_TRUE(waitFor([&] { return defaultChanges == 1; }));
    EXPECT_EQ(devices.defaultOutputDevice(), list[4].id);
    server.unload(second); // the default one itself
    ASSERT_TRUE(waitFor([&] { return names(devices) == standard; }));
    ASSERT_TRUE(waitFor([&] { return standard.contains(defaultName(devices)); }));
}

} // namespace

TEST(PulseDevices, comeAndGo) {
    PrivatePulse server;
    comeAndGo(server);
}

TEST(PulseDevices, comeAndGoWithPipeWire) {
    PrivatePipeWire server;
    comeAndGo(server);
}

TEST(PulseFormat, namesTheSpeakers) {
    const struct {
        const char* what;
        StreamFormat format;
        const char* map;
    } cases[] = {
        {"mono is for all", {48000, 1, 0x4}, "mono"},
        {"stereo", {44100, 2, 0x3}, "front-left,front-right"},
        {"stereo by default", {44100, 2, 0}, "front-left,front-right"},
        {"5.1 with side speakers",
         {48000, 6, 0x60F},
         "front-left,front-right,front-center,lfe,side-left,side-right"},
        {"7.1",
         {96000, 8, 0x63F},
         "front-left,front-right,front-center,lfe,rear-left,rear-right,side-left,side-right"},
        {"as many names as channels, or the default", {44100, 2, 0x7}, "front-left,front-right"},
        {"no such speaker", {44100, 2, std::uint64_t(3) << 40}, "front-left,front-right"},
    };
    for (const auto& test : cases) {
        const auto map = channelMap(test.format);
        const auto spec = sampleSpec(test.format);
        char text[PA_CHANNEL_MAP_SNPRINT_MAX];
        EXPECT_STREQ(pa_channel_map_snprint(text, sizeof text, &map), test.map) << test.what;
        EXPECT_TRUE(pa_channel_map_compatible(&map, &spec)) << test.what;
    }
}

} // namespace halvane::test
