// SPDX-License-Identifier: MIT
#pragma once

#include "library/environment.h"
#include "library/user/settings_keys.h"
#include "platform/mpris/media_controls.h"
#include "platform/session/file_chooser.h"
#include "platform/session/notifications.h"
#include "platform/session/preferred_languages.h"
#include "platform/session/sleep_inhibitor.h"
#include "platform/sound/audio_devices.h"
#include "support/fake_cloud_files.h"
#include "support/manual_clock.h"
#include "support/memory_preferences.h"
#include "support/offline_output.h"

#include <QTemporaryDir>

namespace halvane::test {

/// Devices that a test plugs in and out.
class FakeDevices final : public AudioOutput::Devices {
  public:
    std::vector<AudioOutput::OutputDevice> devices{{1, QStringLiteral("Speakers")}};
    std::optional<std::uint32_t> defaultDevice = 1;

    [[nodiscard]] std::vector<AudioOutput::OutputDevice> outputDevices() const override {
        return devices;
    }
    [[nodiscard]] std::optional<std::uint32_t> defaultOutputDevice() const override {
        return defaultDevice;
    }
    [[nodiscard]] std::optional<QString> deviceName(std::uint32_t id) const override {
        for (const AudioOutput::OutputDevice& device : devices) {
            if (device.id == id)
                return device.name;
        }
        return std::nullopt;
    }
};

/// Remembers what was published, and holds the handlers for a test to call.
class FakeMediaControls final : public MediaControls {
  public:
    MediaCommandHandlers handlers;
    std::optional<NowPlayingInfo> info;
    MediaPlaybackState state = MediaPlaybackState::stopped;
    MediaCapabilities capabilities;
    std::vector<double> jumps;

    void setHandlers(MediaCommandHandlers given) override { handlers = std::move(given); }
    void publish(const std::optional<NowPlayingInfo>& now, MediaPlaybackState stands) override {
        info = now;
        state = stands;
    }
    void publishCapabilities(const MediaCapabilities& given) override { capabilities = given; }
    void publishModes(MediaLoop, bool, double) override {}
    void seeked(double seconds) override { jumps.push_back(seconds); }
    void setWindowHandlers(WindowCommandHandlers) override {}
};

class FakeNotifications final : public Notifications {
  public:
    int requests = 0;
    std::vector<Notification> posted;

    void requestAuthorization() override { ++requests; }
    void post(const Notification& notification) override { posted.push_back(notification); }
};

/// A panel in which the test chooses.
class FakeFileChooser final : public FileChooser {
  public:
    std::optional<FileChooserRequest> request;
    std::function<void(const QStringList&)> chosen;

    void choose(const FileChooserRequest& asked,
                std::function<void(const QStringList& paths)> answer) override {
        request = asked;
        chosen = std::move(answer);
    }
    std::optional<FileTargetRequest> target;
    std::function<void(const QString&)> targetChosen;

    void chooseTarget(const FileTargetRequest& asked,
                      std::function<void(const QString& path)> answer) override {
        target = asked;
        targetChosen = std::move(answer);
    }
};

class FakeLanguages final : public PreferredLanguages {
  public:
    QStringList list{QStringLiteral("en-US")};
    [[nodiscard]] QStringList tags() const override { return list; }
};

class FakeSleepInhibitor final : public SleepInhibitor {
  public:
    bool inhibited = false;
    void setInhibited(bool inhibit) override { inhibited = inhibit; }
};

/// Everything outside the program, in a test's hands. A second library made on it finds what the
/// first one stored. Folders are not followed: a test says itself when it looks at the disk.
struct FakeEnvironment {
    FakeEnvironment() { preferences.setBoolean(SettingsKey::followsFolders, false); }

    ManualClock clock;
    MemoryPreferences preferences;
    OfflineOutput output;
    FakeDevices devices;
    FakeMediaControls mediaControls;
    FakeNotifications notifications;
    FakeFileChooser fileChooser;
    std::shared_ptr<FakeCloudFiles> cloudFiles = std::make_shared<FakeCloudFiles>();
    FakeLanguages languages;
    FakeSleepInhibitor sleepInhibitor;
    QTemporaryDir folder;

    operator Environment() { return with(cloudFiles); }
    /// With another look at the cloud.
    Environment with(std::shared_ptr<CloudFiles> cloud) {
        return {clock,
                preferences,
                output,
                devices,
                mediaControls,
                notifications,
                fileChooser,
                std::move(cloud),
                languages,
                sleepInhibitor,
                folder.filePath(QStringLiteral("data")),
                folder.filePath(QStringLiteral("cache"))};
    }
};

} // namespace halvane::test
