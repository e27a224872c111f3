// SPDX-License-Identifier: MIT
#include "app/machine_environment.h"

#include "app/folders.h"
#include "app/windows/window_registry.h"

#include <QGuiApplication>
#include <QWindow>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// The name by which the portal knows a window. On Wayland that would take a protocol of its own.
QString windowInFront() {
    const auto* window = QGuiApplication::focusWindow();
    return window && WindowRegistry::canPlaceWindows()
               ? u"x11:"_s + QString::number(window->winId(), 16)
               : QString();
}

} // namespace

MachineEnvironment::MachineEnvironment(const QString& bus, QQmlEngine& engine,
                                       const QUrl& viewsRoot)
    : mediaControls(bus)
    , m_preferences(SqlitePreferences::defaultPath(), clock)
    , m_sound(clock)
    , m_notifications(bus)
    , m_toolkitChooser(engine, viewsRoot)
    , m_fileChooser(bus, windowInFront, m_toolkitChooser)
    , m_cloudFiles(std::make_shared<DesktopCloudFiles>(qEnvironmentVariable("XDG_RUNTIME_DIR")))
    , m_sleepInhibitor(bus) {
}

Environment MachineEnvironment::forLibrary(std::shared_future<void> firstPicture) {
    return {.clock = clock,
            .preferences = m_preferences,
            .output = m_sound.output(),
            .devices = m_sound.devices(),
            .mediaControls = mediaControls,
            .notifications = m_notifications,
            .fileChooser = m_fileChooser,
            .cloudFiles = m_cloudFiles,
            .languages = m_languages,
            .sleepInhibitor = m_sleepInhibitor,
            .dataFolder = dataFolder(),
            .cacheFolder = cacheFolder(),
            .firstPicture = std::move(firstPicture)};
}

} // namespace halvane
