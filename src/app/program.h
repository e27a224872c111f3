// SPDX-License-Identifier: MIT
#pragma once

#include "app/arguments.h"
#include "app/halvane_app.h"
#include "app/machine_environment.h"
#include "app/remote/remote.h"
#include "app/signal_watch.h"
#include "app/tray.h"
#include "library/library_view_model.h"
#include "platform/session/file_manager.h"
#include "platform/session/motion_preference.h"
#include "platform/session/session_bus.h"
#include "platform/session/single_instance.h"
#include "platform/tray/global_menu.h"

#include <QObject>
#include <QQmlEngine>

#include <functional>
#include <future>
#include <memory>

class QQuickWindow;

namespace halvane {

/// Makes the views' module usable in an engine and returns what must be kept for it. The views
/// stand above this folder, so they come from outside.
using PrepareViews = std::function<std::shared_ptr<void>(QQmlEngine&, LibraryViewModel&)>;

/// The whole program: makes everything in its order and connects it to the desktop. Main thread.
class Program : public QObject {
    Q_OBJECT

  public:
    Program(const Arguments& arguments, const QUrl& viewsRoot, const PrepareViews& prepareViews);
    ~Program() override;

    /// Shows the first window, or begins the pictures, and runs until the end; the exit code.
    int run();

  private:
    bool claim();
    void connectInstance();
    void connectMediaControls();
    void connectGlobalMenu();
    void connectEnd();
    void watchSignals();
    void followFirstPicture(QQuickWindow* window);
    void open(const QList<QUrl>& files);
    void runAction(const QString& action);
    void comeForward(const QString& token);
    void keepReachable();

    Arguments m_arguments;
    std::promise<void> m_firstPicture;
    SessionBus m_bus;
    QQmlEngine m_engine;
    MachineEnvironment m_environment;
    LibraryViewModel m_library;
    std::shared_ptr<void> m_views;
    HalvaneApp m_app;
    Tray m_tray;
    GlobalMenu m_globalMenu;
    MotionPreference m_motion;
    FileManager m_fileManager;
    SingleInstance m_instance;
    Remote m_remote;
    std::unique_ptr<SignalWatch> m_signals;
    std::unique_ptr<Timer> m_trayGone; ///< gives a tray that went away time to come back
    bool m_awaitsTray = false;         ///< that time is running
};

} // namespace halvane
