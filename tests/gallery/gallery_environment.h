// SPDX-License-Identifier: MIT
// An environment without a sound server, a bus or a home folder, for the windows on a made-up
// library.
#pragma once

#include "library/environment.h"
#include "platform/mpris/media_controls.h"
#include "platform/session/file_chooser.h"
#include "platform/session/notifications.h"
#include "platform/session/preferred_languages.h"
#include "platform/session/sleep_inhibitor.h"
#include "platform/sound/audio_devices.h"
#include "platform/sound/sound_output.h"
#include "platform/system_clock.h"
#include "support/fake_cloud_files.h"
#include "support/memory_preferences.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>

namespace halvane::test {

/// Hears in real time and makes no sound.
class TimedOutput final : public SoundOutput {
  public:
    TimedOutput();
    /// From now on time stands still: what plays stays where it is.
    void freeze();
    Result<> open(const StreamFormat& format, RenderSource& source) override;
    void close() override;
    [[nodiscard]] bool isOpen() const override { return m_source != nullptr; }
    Result<> start() override;
    void pause() override;
    [[nodiscard]] bool isRunning() const override { return m_isRunning; }
    void flush() override {}
    [[nodiscard]] std::int64_t framesRendered() const override { return m_frames; }
    [[nodiscard]] std::int64_t framesHeard() const override { return m_frames; }
    [[nodiscard]] int deviceSampleRate() const override { return 96000; }
    Result<> setDevice(std::optional<std::uint32_t>) override { return {}; }

  private:
    void pull();

    QTimer m_timer;
    bool m_isRunning = false;
    bool m_isFrozen = false;
    QElapsedTimer m_since;
    StreamFormat m_format;
    RenderSource* m_source = nullptr;
    std::atomic<std::int64_t> m_frames{0}; ///< which the spectrum asks for on its own thread
    std::vector<float> m_block;
};

class ListedDevices final : public AudioOutput::Devices {
  public:
    [[nodiscard]] std::vector<AudioOutput::OutputDevice> outputDevices() const override;
    [[nodiscard]] std::optional<std::uint32_t> defaultOutputDevice() const override { return 1; }
    [[nodiscard]] std::optional<QString> deviceName(std::uint32_t id) const override;
};

class QuietControls final : public MediaControls {
  public:
    void setHandlers(MediaCommandHandlers) override {}
    void publish(const std::optional<NowPlayingInfo>&, MediaPlaybackState) override {}
    void publishCapabilities(const MediaCapabilities&) override {}
    void publishModes(MediaLoop, bool, double) override {}
    void seeked(double) override {}
    void setWindowHandlers(WindowCommandHandlers) override {}
};

class QuietNotifications final : public Notifications {
  public:
    void requestAuthorization() override {}
    void post(const Notification&) override {}
};

/// Remembers what was asked, and chooses what it was told to.
class SilentChooser final : public FileChooser {
  public:
    void choose(const FileChooserRequest& request,
                std::function<void(const QStringList&)> chosen) override {
        requests.push_back(request);
        if (!answer.isEmpty())
            chosen(answer);
    }
    void chooseTarget(const FileTargetRequest&, std::function<void(const QString&)>) override {}
    std::vector<FileChooserRequest> requests;
    QStringList answer;
};

class OneLanguage final : public PreferredLanguages {
  public:
    [[nodiscard]] QStringList tags() const override { return {QStringLiteral("en-GB")}; }
};

class NoInhibitor final : public SleepInhibitor {
  public:
    void setInhibited(bool) override {}
};

struct GalleryEnvironment {
    QTemporaryDir folder;
    SystemClock clock;
    MemoryPreferences preferences;
    TimedOutput output;
    ListedDevices devices;
    QuietControls controls;
    QuietNotifications notifications;
    SilentChooser chooser;
    std::shared_ptr<FakeCloudFiles> cloud = std::make_shared<FakeCloudFiles>();
    OneLanguage languages;
    NoInhibitor inhibitor;

    operator Environment() {
        return {clock,
                preferences,
                output,
                devices,
                controls,
                notifications,
                chooser,
                cloud,
                languages,
                inhibitor,
                folder.filePath(QStringLiteral("data")),
                folder.filePath(QStringLiteral("cache"))};
    }
};

} // namespace halvane::test
