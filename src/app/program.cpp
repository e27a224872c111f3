// SPDX-License-Identifier: MIT
#include "app/program.h"

#include "app/app_delegate.h"
#include "app/commands/commands.h"
#include "app/commands/menu_export.h"
#include "app/folders.h"
#include "app/screenshots.h"
#include "app/second_start.h"
#include "app/windows/startup_notice.h"
#include "app/windows/window_registry.h"
#include "audio/files/audio_file.h"
#include "library/browsing/view_state.h"
#include "library/import/importer.h"
#include "platform/log.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QThreadPool>

#include <atomic>
#include <cstdlib>

namespace halvane {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// A desktop's panel that restarts is back within this time.
constexpr auto trayPatience = 5000ms;

std::atomic<bool> loopRuns = false;

int runEventLoop() {
    loopRuns = true;
    const int exitCode = QGuiApplication::exec();
    loopRuns = false;
    return exitCode;
}

void openFolder(const QString& folder) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

// When the display goes away, the window system's library calls exit() on whichever thread notices
// first. exit() would destroy what the other threads still use. Everything that lasts is on the
// disk by then.
void leaveAtOnceOnExit() {
    std::atexit([] {
        if (loopRuns)
            std::_Exit(EXIT_FAILURE);
    });
}

} // namespace

Program::Program(const Arguments& arguments, const QUrl& viewsRoot,
                 const PrepareViews& prepareViews)
    : m_arguments(arguments)
    , m_environment(m_bus.connectionName(), m_engine, viewsRoot)
    , m_library(m_environment.forLibrary(m_firstPicture.get_future().share()))
    , m_views(prepareViews(m_engine, m_library))
    , m_app(m_library, m_environment.clock, m_engine, viewsRoot, stateFolder())
    , m_tray(m_app, m_bus.connectionName())
    , m_globalMenu(m_bus.connectionName(), [this] { return exportedMenus(m_app.commands()); })
    , m_motion(m_bus.connectionName())
    , m_fileManager(m_bus.connectionName(), openFolder)
    , m_instance(m_bus.connectionName())
    , m_remote(m_app, [this] { return m_tray.isShown(); }) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
    m_library.start();
    connectInstance();
    connectMediaControls();
    connectGlobalMenu();
    connectEnd();
    connect(&m_motion, &MotionPreference::changed, this,
            [this] { m_app.setMotionReduced(m_motion.isReduced()); });
    connect(&m_app, &HalvaneApp::fileManagerAsked, &m_fileManager, &FileManager::show);
    connect(&m_app.windows(), &WindowRegistry::windowMade, this, &Program::followFirstPicture,
            Qt::SingleShotConnection);
}

Program::~Program() {
    m_firstPicture = {}; // the library, which goes next, no longer waits for it
}

int Program::run() {
    if (m_arguments.task == Arguments::Task::screenshots) {
        Screenshots screenshots(m_app, m_environment.clock, m_arguments.screenshotsFolder);
        connect(&screenshots, &Screenshots::finished, this, [](bool complete) {
            QGuiApplication::exit(complete ? EXIT_SUCCESS : EXIT_FAILURE);
        });
        m_app.openWindow(u"main"_s);
        open(m_arguments.request.files);
        screenshots.start(!m_arguments.request.files.isEmpty());
        return runEventLoop();
    }
    if (!claim())
        return EXIT_SUCCESS;
    // The workers read them while the window is made: the sound need not wait for the picture.
    open(m_arguments.request.files);
    m_app.openWindow(u"main"_s);
    if (!m_app.isWindowOpen(u"main"_s))
        return EXIT_FAILURE;
    for (const auto& action : m_arguments.request.actions)
        runAction(action);
    return runEventLoop();
}

// False when another instance does what this one was asked to.
bool Program::claim() {
    if (m_instance.claim())
        return true;
    // Another start was first by a moment. Nothing here needs an orderly end yet.
    m_signals.reset();
    if (leftToAnother(m_arguments.request))
        return false;
    watchSignals();
    m_instance.claim(); // the other has ended since, or the bus gives the name to nobody
    return true;
}

void Program::connectInstance() {
    connect(&m_instance, &SingleInstance::activated, this, &Program::comeForward);
    connect(&m_instance, &SingleInstance::opened, this,
            [this](const auto& files, const auto& token) {
                open(files);
                comeForward(token);
            });
    connect(&m_instance, &SingleInstance::actionActivated, this,
            [this](const auto& action, const auto& token) {
                m_app.useActivationToken(token);
                runAction(action);
                endStartupNotice(token);
            });
    m_instance.setActionCheck([](const QString& action) {
        const auto read = readAction(action);
        return read ? QString() : read.failure().text;
    });
}

void Program::connectMediaControls() {
    m_environment.mediaControls.setWindowHandlers({
        .raise = [this] { m_app.raise(); },
        .quit = [this] { m_app.quit(); },
    });
}

void Program::connectGlobalMenu() {
    if (!WindowRegistry::canPlaceWindows())
        return; // the registrar knows windows by their X11 numbers
    connect(&m_globalMenu, &GlobalMenu::availableChanged, this,
            [this] { m_app.setMenusAreGlobal(m_globalMenu.isAvailable()); });
    connect(&m_app.windows(), &WindowRegistry::windowOpened, this, [this](const QString& id) {
        if (const auto* window = m_app.windows().visibleWindow(id); window && id == "main"_L1)
            m_globalMenu.registerWindow(static_cast<quint32>(window->winId()));
    });
    connect(&m_app.commands(), &Commands::changed, &m_globalMenu, &GlobalMenu::menuChanged);
}

// The first picture has the processors to itself; then the library is restored and the decoders are
// loaded. Exit handlers run in reverse order, and every library has registered its own by then, so
// this one runs first.
void Program::followFirstPicture(QQuickWindow* window) {
    connect(
        window, &QQuickWindow::frameSwapped, this,
        [this] {
            m_firstPicture.set_value();
            QThreadPool::globalInstance()->start(&AudioFile::prepare);
            leaveAtOnceOnExit();
        },
        Qt::SingleShotConnection);
}

void Program::connectEnd() {
    connect(&m_app, &HalvaneApp::lastWindowClosed, this, [this] {
        if (!m_tray.isShown() && !m_awaitsTray)
            m_app.quit();
    });
    connect(&m_tray, &Tray::shownChanged, this, &Program::keepReachable);
    watchSignals();
    connect(&m_bus, &SessionBus::lost, this, [this] {
        qCInfo(libraryLog, "the session's bus has gone, so the session is over");
        m_app.quit();
    });
}

void Program::watchSignals() {
    m_signals = std::make_unique<SignalWatch>();
    connect(m_signals.get(), &SignalWatch::endRequested, &m_app, &HalvaneApp::quit);
}

// Without the tray's icon, a program without a window could no longer be reached. The panel closes
// as soon as another window is clicked on.
void Program::keepReachable() {
    m_trayGone.reset();
    m_awaitsTray = !m_tray.isShown();
    if (!m_awaitsTray)
        return;
    m_trayGone = m_environment.clock.after(trayPatience, [this] {
        m_awaitsTray = false;
        if (!m_app.windows().isAnyOpen() || m_app.isWindowOpen(u"panel"_s))
            m_app.raise();
    });
}

// One import for all: the first of them plays, and the others stand behind it.
void Program::open(const QList<QUrl>& files) {
    if (files.isEmpty())
        return;
    m_remote.filesComing();
    m_library.importing()->importDroppedURLs(files);
}

void Program::comeForward(const QString& token) {
    m_app.useActivationToken(token);
    m_app.raise();
    endStartupNotice(token);
}

// Both ways here have read the action before.
void Program::runAction(const QString& action) {
    if (const auto read = readAction(action))
        m_remote.run(*read);
}

} // namespace halvane
