// SPDX-License-Identifier: MIT
#include "app/halvane_app.h"

#include "app/app_delegate.h"
#include "app/commands/commands.h"
#include "app/windows/frame_watch.h"
#include "app/windows/mini_window_placement.h"
#include "app/windows/window_registry.h"
#include "library/browsing/view_state.h"
#include "library/library_view_model.h"

#include <QGuiApplication>
#include <QQuickWindow>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

HalvaneApp* theInstance = nullptr;

} // namespace

HalvaneApp::HalvaneApp(LibraryViewModel& library, Clock& clock, QQmlEngine& engine,
                       const QUrl& viewsRoot, const QString& stateFolder, QObject* parent)
    : QObject(parent)
    , m_library(library)
    , m_delegate(std::make_unique<AppDelegate>())
    , m_frames(std::make_unique<FrameWatch>())
    , m_windows(
          std::make_unique<WindowRegistry>(engine, viewsRoot, stateFolder + u"/windows.ini"_s))
    , m_miniPlacement(std::make_unique<MiniWindowPlacement>(*m_windows, clock))
    , m_commands(std::make_unique<Commands>(library)) {
    Q_ASSERT(!theInstance);
    theInstance = this;
    connect(m_windows.get(), &WindowRegistry::windowMade, m_frames.get(), &FrameWatch::follow);
    connect(m_windows.get(), &WindowRegistry::windowOpened, this, [this](const QString& id) {
        if (id == "main"_L1 || id == "mini"_L1)
            m_delegate->library = &m_library;
    });
    connect(m_windows.get(), &WindowRegistry::lastWindowClosed, this,
            &HalvaneApp::lastWindowClosed);
    connect(m_frames.get(), &FrameWatch::changed, this, &HalvaneApp::hasSystemFrameChanged);
    connect(m_commands.get(), &Commands::windowAsked, this, &HalvaneApp::openWindow);
    connect(m_commands.get(), &Commands::searchAsked, this, &HalvaneApp::find);
    connect(m_commands.get(), &Commands::miniPlayerToggled, this, &HalvaneApp::toggleMiniPlayer);
    connect(m_commands.get(), &Commands::fullScreenToggled, this, &HalvaneApp::toggleFullScreen);
    connect(m_commands.get(), &Commands::quitAsked, this, &HalvaneApp::quit);
}

HalvaneApp::~HalvaneApp() {
    // The views look at this object until the last of them is gone.
    m_windows.reset();
    theInstance = nullptr;
}

HalvaneApp* HalvaneApp::instance() {
    return theInstance;
}

QQmlListProperty<CommandMenu> HalvaneApp::menuList() {
    return {this, &m_commands->menus()};
}

void HalvaneApp::setMenusAreGlobal(bool global) {
    if (m_menusAreGlobal == global)
        return;
    m_menusAreGlobal = global;
    Q_EMIT menusAreGlobalChanged();
}

void HalvaneApp::setMotionReduced(bool reduced) {
    if (m_isMotionReduced == reduced)
        return;
    m_isMotionReduced = reduced;
    Q_EMIT isMotionReducedChanged();
}

bool HalvaneApp::hasSystemFrame() const {
    return m_frames->hasSystemFrame();
}

void HalvaneApp::openWindow(const QString& id) {
    m_windows->open(id);
}

void HalvaneApp::closeWindow(const QString& id) {
    m_windows->close(id);
}

bool HalvaneApp::isWindowOpen(const QString& id) const {
    return m_windows->isOpen(id);
}

void HalvaneApp::toggleMiniPlayer() {
    if (m_library.views()->isMiniPlayerOpen()) {
        openWindow(u"main"_s);
        closeWindow(u"mini"_s);
    } else {
        m_miniPlacement->centerOnMainWindow();
        openWindow(u"mini"_s);
        closeWindow(u"main"_s);
    }
}

void HalvaneApp::toggleFullScreen() {
    if (!m_library.views()->showFullPlayer()) {
        // Set before the mini window closes: it would reopen the main window by itself otherwise.
        m_library.views()->setShowFullPlayer(true);
        openWindow(u"main"_s);
        closeWindow(u"mini"_s);
    } else {
        m_library.views()->setShowFullPlayer(false);
    }
}

void HalvaneApp::find() {
    openWindow(u"main"_s);
    m_library.views()->requestSearchFocus();
}

void HalvaneApp::showInFileManager(const QString& path) {
    if (!path.isEmpty())
        Q_EMIT fileManagerAsked(path);
}

void HalvaneApp::raise() {
    openWindow(m_library.views()->isMiniPlayerOpen() ? u"mini"_s : u"main"_s);
}

void HalvaneApp::useActivationToken(const QString& token) {
    // Where the window system's plugin looks for it.
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

QString HalvaneApp::keysOf(int command) const {
    return m_commands->find(static_cast<CommandId>(command)).shortcutText();
}

// Not QGuiApplication::quit(), which closes the windows one by one first, as if the user did.
void HalvaneApp::quit() {
    QGuiApplication::exit(0);
}

} // namespace halvane
