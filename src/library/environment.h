// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <future>
#include <memory>

namespace halvane {

namespace AudioOutput {
class Devices;
}
class Clock;
class CloudFiles;
class FileChooser;
class MediaControls;
class Notifications;
class Preferences;
class PreferredLanguages;
class SleepInhibitor;
class SoundOutput;

/// Everything outside the program that the library works with. The owner keeps all of it alive for
/// as long as the LibraryViewModel lives.
struct Environment {
    Clock& clock;
    Preferences& preferences;
    SoundOutput& output;
    AudioOutput::Devices& devices;
    MediaControls& mediaControls;
    Notifications& notifications;
    FileChooser& fileChooser;
    std::shared_ptr<CloudFiles> cloudFiles; ///< shared: a look at a hung disk may outlive all else
    PreferredLanguages& languages;
    SleepInhibitor& sleepInhibitor;
    QString dataFolder;  ///< where the metadata cache lives
    QString cacheFolder; ///< for what can be made again at any time
    /// Becomes ready when the first picture shows. The library is restored after that. There is
    /// nothing to wait for if this has no shared state.
    std::shared_future<void> firstPicture{};
};

} // namespace halvane
