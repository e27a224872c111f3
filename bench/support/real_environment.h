// SPDX-License-Identifier: MIT
#pragma once

#include "platform/cloud/desktop_cloud_files.h"
#include "platform/preferences/sqlite_preferences.h"
#include "support/fake_environment.h"

namespace halvane::bench {

/// The environment of a library whose preferences, records and pictures are kept in a folder, as
/// the program keeps them, and that really looks at the cloud. What it does not need is a fake.
struct RealEnvironment {
    test::FakeEnvironment fakes;
    QString home;
    std::unique_ptr<SqlitePreferences> stored = openPreferences();
    std::shared_ptr<DesktopCloudFiles> cloudFiles = std::make_shared<DesktopCloudFiles>(home);

    RealEnvironment()
        : home(fakes.folder.path()) {}
    explicit RealEnvironment(const QString& folder)
        : home(folder) {}

    QString preferencesFile() const { return home + QStringLiteral("/preferences.sqlite"); }
    QString dataFolder() const { return home + QStringLiteral("/data"); }
    SqlitePreferences& preferences() { return *stored; }
    /// As a new start of the program finds them.
    void reopenPreferences() {
        stored.reset();
        stored = openPreferences();
    }

    operator Environment() {
        const Environment made = fakes;
        return {made.clock,         *stored,
                made.output,        made.devices,
                made.mediaControls, made.notifications,
                made.fileChooser,   cloudFiles,
                made.languages,     made.sleepInhibitor,
                dataFolder(),       home + QStringLiteral("/cache")};
    }

  private:
    std::unique_ptr<SqlitePreferences> openPreferences() {
        return std::make_unique<SqlitePreferences>(preferencesFile(), fakes.clock);
    }
};

} // namespace halvane::bench
