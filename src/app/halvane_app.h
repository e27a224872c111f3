// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/command.h"

#include <QObject>
#include <QQmlListProperty>
#include <QUrl>

#include <memory>

class QQmlEngine;

namespace halvane {

class AppDelegate;
class Clock;
class Commands;
class FrameWatch;
class LibraryViewModel;
class MiniWindowPlacement;
class WindowRegistry;

/// The application: owns the windows and the commands, and is what the views ask to open, close
/// and switch between windows. One a process; the views see it as a singleton. Main thread.
///
/// Windows are named "main", "mini", "help", "settings" and "panel" (the small player beside the
/// tray icon); each exists at most once. The views' module holds one file a window
/// (windows/MainWindow.qml, MiniWindow.qml, HelpWindow.qml, SettingsWindow.qml, PanelWindow.qml)
/// whose root is a Window with `visible` left alone. A window is made when it is first opened and
/// from then on shown and hidden, so `onVisibleChanged` tells a view when it appears and
/// disappears. Title, flags, default and least size, the remembered place, and edges that resize
/// are set here; the size of a window that follows its content is the view's. A view moves its
/// window by calling `Window.window.startSystemMove()` once a drag has passed the drag threshold.
class HalvaneApp : public QObject {
    Q_OBJECT
    Q_MOC_INCLUDE("library/library_view_model.h")
    Q_PROPERTY(halvane::LibraryViewModel* library READ library CONSTANT)
    Q_PROPERTY(QQmlListProperty<halvane::CommandMenu> menus READ menuList CONSTANT)
    /// The desktop shows the menus itself, so a window shows no menu bar.
    Q_PROPERTY(bool menusAreGlobal READ menusAreGlobal NOTIFY menusAreGlobalChanged)
    /// The desktop asks for little motion.
    Q_PROPERTY(bool isMotionReduced READ isMotionReduced NOTIFY isMotionReducedChanged)
    /// The desktop frames our windows although we ask it not to, so a window draws no buttons.
    Q_PROPERTY(bool hasSystemFrame READ hasSystemFrame NOTIFY hasSystemFrameChanged)

  public:
    /// `viewsRoot` is where the windows' descriptions are, `stateFolder` where the windows' places
    /// are remembered. Library, clock and engine must outlive this object.
    HalvaneApp(LibraryViewModel& library, Clock& clock, QQmlEngine& engine, const QUrl& viewsRoot,
               const QString& stateFolder, QObject* parent = nullptr);
    ~HalvaneApp() override;

    /// The one instance; null before it is made and after it is gone.
    static HalvaneApp* instance();

    [[nodiscard]] LibraryViewModel* library() const { return &m_library; }
    Commands& commands() { return *m_commands; }
    WindowRegistry& windows() { return *m_windows; }
    AppDelegate& delegate() { return *m_delegate; }
    QQmlListProperty<CommandMenu> menuList();
    [[nodiscard]] bool menusAreGlobal() const { return m_menusAreGlobal; }
    void setMenusAreGlobal(bool global);
    [[nodiscard]] bool isMotionReduced() const { return m_isMotionReduced; }
    void setMotionReduced(bool reduced);
    [[nodiscard]] bool hasSystemFrame() const;

    /// Shows the window, made now if need be, and brings it forward.
    Q_INVOKABLE void openWindow(const QString& id);
    Q_INVOKABLE void closeWindow(const QString& id);
    Q_INVOKABLE [[nodiscard]] bool isWindowOpen(const QString& id) const;
    /// From the main window to the mini player in its place, or back.
    Q_INVOKABLE void toggleMiniPlayer();
    Q_INVOKABLE void toggleFullScreen();
    /// Brings the main window forward with the search field focused.
    Q_INVOKABLE void find();
    /// Asks the desktop's file manager to show a file. Does nothing without a path.
    Q_INVOKABLE void showInFileManager(const QString& path);
    /// Brings the program forward: the mini player if that is open, or else the main window.
    void raise();
    /// The next window shows this token to the desktop, which then lets it come forward.
    void useActivationToken(const QString& token);
    /// The keys of a command, by this keyboard's names; empty where it has none. The command is a
    /// CommandId, as the views number them.
    Q_INVOKABLE [[nodiscard]] QString keysOf(int command) const;
    Q_INVOKABLE void quit();

  Q_SIGNALS:
    /// No window is left open.
    void lastWindowClosed();
    void fileManagerAsked(const QString& path);
    void menusAreGlobalChanged();
    void isMotionReducedChanged();
    void hasSystemFrameChanged();

  private:
    LibraryViewModel& m_library;
    std::unique_ptr<AppDelegate> m_delegate;
    std::unique_ptr<FrameWatch> m_frames;
    std::unique_ptr<WindowRegistry> m_windows;
    std::unique_ptr<MiniWindowPlacement> m_miniPlacement;
    std::unique_ptr<Commands> m_commands;
    bool m_menusAreGlobal = false;
    bool m_isMotionReduced = false;
};

} // namespace halvane
