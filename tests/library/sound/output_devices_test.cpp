// SPDX-License-Identifier: MIT
#include "library/playback/signal_path.h"
#include "library/sound/output_devices.h"
#include "library/user/language_setting.h"
#include "library/user/settings_keys.h"
#include "support/fake_environment.h"

#include <gtest/gtest.h>

namespace halvane::test {

using namespace Qt::StringLiterals;
using AudioOutput::OutputDevice;

namespace {

class PluggedDevices final : public AudioOutput::Devices {
  public:
    [[nodiscard]] std::vector<OutputDevice> outputDevices() const override { return list; }
    [[nodiscard]] std::optional<std::uint32_t> defaultOutputDevice() const override {
        return preferred;
    }
    [[nodiscard]] std::optional<QString> deviceName(std::uint32_t id) const override {
        for (const OutputDevice& device : list)
            if (device.id == id)
                return device.name;
        return {};
    }
    // Like the system, changes everything before it sends a signal.
    void become(std::vector<OutputDevice> devices, std::optional<std::uint32_t> id) {
        list = std::move(devices);
        const bool moved = std::exchange(preferred, id) != id;
        Q_EMIT deviceListChanged();
        if (moved)
            Q_EMIT defaultOutputDeviceChanged();
    }

    std::vector<OutputDevice> list;
    std::optional<std::uint32_t> preferred;
};

const OutputDevice speakers{1, u"Speakers"_s};
const OutputDevice dac{2, u"DAC"_s};
const OutputDevice secondDac{3, u"DAC"_s};
const OutputDevice television{4, u"Television"_s};

class OutputDevicesTest : public testing::Test {
  protected:
    OutputDevicesTest() {
        devices.list = {speakers, dac};
        devices.preferred = speakers.id;
        QObject::connect(&output, &OutputDevices::switchFailed, [this] { ++failures; });
    }
    QString stored() { return preferences.string(key).value_or(QString()); }

    const QString key = SettingsKey::outputDeviceName;
    PluggedDevices devices;
    MemoryPreferences preferences;
    std::vector<std::uint32_t> routes;
    bool refuse = false;
    int failures = 0;
    FakeLanguages languages;
    LanguageSetting language{preferences, languages};
    OutputDevices output{devices, preferences, language,
                         [this](std::optional<std::uint32_t> id) -> Result<> {
                             if (refuse)
                                 return Failure{u"refused"_s};
                             routes.push_back(id.value_or(0));
                             return {};
                         }};
};

using Routes = std::vector<std::uint32_t>;

} // namespace

TEST_F(OutputDevicesTest, FollowsTheDefaultByItselfUntilADeviceWasChosen) {
    output.restore();
    EXPECT_EQ(output.outputDeviceName(), u"Speakers");
    EXPECT_EQ(output.selectedDeviceIndex(), -1);
    devices.become({speakers, dac, television}, television.id);
    EXPECT_EQ(output.outputDeviceName(), u"Television");
    EXPECT_TRUE(routes.empty()) << "the engine follows the system by itself";

    output.selectOutputDevice(dac);
    EXPECT_EQ(stored(), u"DAC");
    EXPECT_TRUE(output.devicePinActive());
    EXPECT_EQ(output.selectedDeviceIndex(), 1);
    devices.become({speakers, dac, television}, speakers.id);
    EXPECT_EQ(output.outputDeviceName(), u"DAC") << "the choice stands";
    EXPECT_EQ(routes, Routes{dac.id});

    output.selectOutputDevice(std::nullopt);
    EXPECT_FALSE(preferences.contains(key));
    EXPECT_EQ(output.outputDeviceName(), u"Speakers");
    EXPECT_TRUE(output.enginePinnedToDevice());
    devices.become({speakers, dac, television}, television.id);
    EXPECT_EQ(routes, (Routes{dac.id, speakers.id, television.id}));
    EXPECT_EQ(output.outputDeviceName(), u"Television");
}

TEST_F(OutputDevicesTest, LeavesAChosenDeviceThatGoesAndTakesItAgain) {
    preferences.setString(key, u"DAC"_s);
    output.restore();
    EXPECT_EQ(routes, Routes{dac.id});
    EXPECT_EQ(output.outputDeviceName(), u"DAC");
    devices.become({speakers}, speakers.id);
    EXPECT_FALSE(output.devicePinActive());
    EXPECT_EQ(output.outputDeviceName(), u"Speakers");
    EXPECT_EQ(stored(), u"DAC");
    EXPECT_EQ(failures, 0) << "no message";
    devices.become({speakers, dac}, speakers.id);
    EXPECT_EQ(output.outputDeviceName(), u"DAC");
    devices.become({speakers, dac, television}, speakers.id);
    EXPECT_EQ(routes, (Routes{dac.id, speakers.id, dac.id}))
        << "nothing new for the one that plays";
}

TEST_F(OutputDevicesTest, AChosenDeviceThatWasTheDefaultIsLeftOnce) {
    devices.preferred = dac.id;
    output.restore();
    output.selectOutputDevice(dac);
    devices.become({speakers}, speakers.id);
    EXPECT_EQ(routes, (Routes{dac.id, speakers.id}));
    devices.become({}, {}); // the server went away
    EXPECT_EQ(output.outputDeviceName(), u"Built-in Output");
    language.setLanguageSetting(AppLanguage::simplifiedChinese);
    EXPECT_EQ(output.outputDeviceName(), u"内置输出");
    devices.become({speakers, television}, television.id);
    EXPECT_EQ(output.outputDeviceName(), u"Television") << "while the chosen one is missing";
}

TEST_F(OutputDevicesTest, ARefusedSwitchIsReportedAndTheChoiceKept) {
    output.restore();
    refuse = true;
    output.selectOutputDevice(dac);
    EXPECT_EQ(failures, 1);
    EXPECT_FALSE(output.devicePinActive());
    EXPECT_FALSE(output.enginePinnedToDevice());
    EXPECT_EQ(output.outputDeviceName(), u"Speakers");
    EXPECT_EQ(stored(), u"DAC");
    EXPECT_EQ(output.selectedDeviceIndex(), 1) << "it is still the choice";
}

TEST_F(OutputDevicesTest, OfTwoDevicesOfOneNameTheFirstIsTakenOrTheOneThatWasChosen) {
    devices.list = {speakers, dac, secondDac};
    preferences.setString(key, u"DAC"_s);
    output.restore();
    EXPECT_EQ(output.selectedDeviceIndex(), 1);
    output.selectOutputDevice(secondDac);
    EXPECT_EQ(output.selectedDeviceIndex(), 2);
    devices.become({speakers, dac}, speakers.id); // the first has the same name
    EXPECT_EQ(routes, (Routes{dac.id, secondDac.id, dac.id}));
    EXPECT_EQ(output.selectedDeviceIndex(), 1);
}

TEST_F(OutputDevicesTest, StartsWithNothingThere) {
    devices.list.clear();
    devices.preferred.reset();
    preferences.setBoolean(key, true); // not a name
    output.restore();
    EXPECT_EQ(output.outputDeviceName(), u"Built-in Output");
    EXPECT_TRUE(output.selectedOutputDeviceName().isEmpty());
    EXPECT_TRUE(output.availableOutputDevices().empty());
}

TEST(SignalPath, SaysWhatTheSoundGoesThrough) {
    const struct {
        QString quality;
        QString bitDepth;
        double file;
        double output;
        QString text;
    } cases[] = {
        {u"FLAC"_s, u"24-bit"_s, 96000, 48000, u"FLAC · 24-bit · 96 kHz → 48 kHz"_s},
        {u"FLAC Lossless"_s, u"16-bit"_s, 44100, 44100, u"FLAC · 16-bit · 44.1 kHz"_s},
        {u"MP3"_s, {}, 44100, 44100.5, u"MP3 · 44.1 kHz"_s},
        {u"AAC"_s, {}, 44100, 0, u"AAC"_s},
        {{}, {}, 0, 48000, {}},
        {{}, u"16-bit"_s, 11025, 48000, u"16-bit · 11.0 kHz → 48 kHz"_s},
    };
    for (const auto& test : cases) {
        QueueItem item;
        item.quality = test.quality;
        item.bitDepth = test.bitDepth;
        EXPECT_EQ(signalPathDescription(item, test.file, test.output), test.text);
    }
}

} // namespace halvane::test
