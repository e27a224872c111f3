// SPDX-License-Identifier: MIT
#pragma once

#include "app/quick_file_chooser.h"
#include "library/environment.h"
#include "platform/cloud/desktop_cloud_files.h"
#include "platform/mpris/mpris_controls.h"
#include "platform/preferences/sqlite_preferences.h"
#include "platform/session/dbus_notifications.h"
#include "platform/session/dbus_sleep_inhibitor.h"
#include "platform/session/portal_file_chooser.h"
#include "platform/session/system_languages.h"
#include "platform/sound/system_sound.h"
#include "platform/system_clock.h"

namespace halvane {

/// This machine's environment: sound server, files, and desktop services. Main thread.
class MachineEnvironment {
  public:
    /// `bus` names the connection to the session bus. The engine must outlive this object.
    MachineEnvironment(const QString& bus, QQmlEngine& engine, const QUrl& viewsRoot);

    /// What the library works with. The picture is the first that shows.
    Environment forLibrary(std::shared_future<void> firstPicture);

    SystemClock clock;
    MprisControls mediaControls;

  private:
    SqlitePreferences m_preferences;
    SystemSound m_sound;
    DBusNotifications m_notifications;
    QuickFileChooser m_toolkitChooser;
    PortalFileChooser m_fileChooser;
    std::shared_ptr<DesktopCloudFiles> m_cloudFiles;
    SystemLanguages m_languages;
    DBusSleepInhibitor m_sleepInhibitor;
};

} // namespace halvane
