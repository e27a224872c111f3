// SPDX-License-Identifier: MIT
#pragma once

#include "app/commands/command_id.h"
#include "app/halvane_app.h"
#include "app/quick_file_chooser.h"

#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// The application, by the name the views use for it.
struct AppSingleton {
    Q_GADGET
    QML_FOREIGN(halvane::HalvaneApp)
    QML_NAMED_ELEMENT(App)
    QML_SINGLETON

  public:
    static HalvaneApp* create(QQmlEngine*, QJSEngine*) {
        HalvaneApp* app = HalvaneApp::instance();
        QQmlEngine::setObjectOwnership(app, QQmlEngine::CppOwnership);
        return app;
    }
};

/// The commands whose keys the buttons name, for HalvaneApp::keysOf.
namespace CommandKind {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    ImportMusicFolder = static_cast<int>(CommandId::importMusicFolder),
    ToggleNowPlayingPanel = static_cast<int>(CommandId::toggleNowPlayingPanel),
    PlayPause = static_cast<int>(CommandId::playPause),
    NextTrack = static_cast<int>(CommandId::nextTrack),
    PreviousTrack = static_cast<int>(CommandId::previousTrack),
    ToggleShuffle = static_cast<int>(CommandId::toggleShuffle),
    AdvanceRepeatMode = static_cast<int>(CommandId::advanceRepeatMode),
    ToggleMiniPlayer = static_cast<int>(CommandId::toggleMiniPlayer),
    ToggleFullScreen = static_cast<int>(CommandId::toggleFullScreen),
};
Q_ENUM_NS(Value)
} // namespace CommandKind

struct QuickFileChooserType {
    Q_GADGET
    QML_FOREIGN(halvane::QuickFileChooser)
    QML_NAMED_ELEMENT(QuickFileChooser)
    QML_UNCREATABLE("made by the application")
};

struct CommandMenuType {
    Q_GADGET
    QML_FOREIGN(halvane::CommandMenu)
    QML_NAMED_ELEMENT(CommandMenu)
    QML_UNCREATABLE("made by the application")
};

struct CommandType {
    Q_GADGET
    QML_FOREIGN(halvane::Command)
    QML_NAMED_ELEMENT(Command)
    QML_UNCREATABLE("made by the application")
};

} // namespace halvane::views
