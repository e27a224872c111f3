// SPDX-License-Identifier: MIT
#include "app/tray.h"

#include "app/app_delegate.h"
#include "app/commands/commands.h"
#include "app/halvane_app.h"
#include "app/waveform_icon.h"
#include "app/windows/window_placement.h"
#include "app/windows/window_registry.h"
#include "library/library_view_model.h"
#include "library/playback/player_display.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>
#include <QStandardPaths>

#include <cstdlib>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const auto themedIcon = u"org.halvane.Halvane-symbolic"_s;

bool isInstalled(const QString& icon) {
    return !QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                   u"icons/hicolor/symbolic/apps/%1.svg"_s.arg(icon))
                .isEmpty();
}

QColor symbolColor(ColorScheme::Preference preference) {
    // Panels are dark more often than not, also on light desktops.
    return preference == ColorScheme::Preference::light ? QColor(0x2e, 0x34, 0x36)
                                                        : QColor(0xf2, 0xf2, 0xf2);
}

// The dock menu, to which a dock would add the end by itself.
std::vector<MenuEntry> trayMenu(HalvaneApp& app) {
    auto entries = app.delegate().dockMenu();
    entries.emplace_back();
    MenuEntry quit;
    quit.title = app.commands().find(CommandId::quit).title();
    quit.action = [&app] { app.quit(); };
    entries.push_back(std::move(quit));
    return entries;
}

} // namespace

Tray::Tray(HalvaneApp& app, const QString& connection, QObject* parent)
    : QObject(parent)
    , m_app(app)
    , m_scheme(connection)
    , m_icon(connection, u"Halvane"_s, [&app] { return trayMenu(app); }) {
    auto* library = app.library();
    connect(&m_icon, &TrayIcon::shownChanged, this, &Tray::shownChanged);
    connect(&m_icon, &TrayIcon::clicked, this, &Tray::togglePanel);
    connect(&m_icon, &TrayIcon::scrolled, this, &Tray::changeVolume);
    connect(&m_icon, &TrayIcon::activationTokenProvided, &app, &HalvaneApp::useActivationToken);
    connect(&m_scheme, &ColorScheme::changed, this, &Tray::showIcon);
    connect(library->player(), &PlayerDisplay::currentTrackChanged, this, &Tray::showTrack);
    showIcon();
    showTrack();
}

// The desktop gives an icon of its theme the colour of its panel; one that is drawn here has to
// guess it.
void Tray::showIcon() {
    m_icon.setIcon(isInstalled(themedIcon) ? themedIcon : QString(),
                   waveformPixmaps(symbolColor(m_scheme.preference())));
}

void Tray::showTrack() {
    const auto* library = m_app.library();
    m_icon.setToolTip(library->player()->hasCurrentTrack()
                          ? library->player()->currentTrack().title + u" - "_s +
                                library->player()->currentTrack().artist
                          : QString());
}

void Tray::changeVolume(int steps) {
    const auto command = steps > 0 ? CommandId::increaseVolume : CommandId::decreaseVolume;
    for (int step = 0; step < std::abs(steps); ++step)
        m_app.commands().perform(command);
}

void Tray::togglePanel(QPoint icon) {
    if (m_app.isWindowOpen(u"panel"_s)) {
        m_app.closeWindow(u"panel"_s);
        return;
    }
    auto* panel = m_app.windows().prepared(u"panel"_s);
    if (!panel)
        return;
    const auto* screen = QGuiApplication::screenAt(icon);
    if (WindowRegistry::canPlaceWindows() && screen && !icon.isNull())
        panel->setPosition(besideIcon(icon, panel->size(), screen->availableGeometry()));
    m_app.openWindow(u"panel"_s);
}

} // namespace halvane
