// SPDX-License-Identifier: MIT
#include "app/commands/commands.h"

#include "library/browsing/view_state.h"
#include "library/import/importer.h"
#include "library/library_view_model.h"
#include "library/playback/transport.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QShortcut>

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double volumeStep = 1.0 / 16;

bool isTextField(const QObject* object) {
    return object && (object->inherits("QQuickTextInput") || object->inherits("QQuickTextEdit"));
}

// A control that was reached by keyboard and would be pressed by Space.
bool wantsSpace(const QObject* object) {
    return object && object->inherits("QQuickAbstractButton") &&
           object->property("visualFocus").toBool();
}

std::function<void()> onTextField(const char* method) {
    return [method] {
        if (auto* field = QGuiApplication::focusObject(); isTextField(field))
            QMetaObject::invokeMethod(field, method);
    };
}

} // namespace

Commands::Commands(LibraryViewModel& library, CommandTargets targets, QObject* parent)
    : QObject(parent)
    , m_library(library) {
    for (const auto& menuSpec : menuTable()) {
        auto* menu = new CommandMenu(menuSpec.title, this);
        m_menus.append(menu);
        for (const auto& spec : menuSpec.items) {
            const auto keys = QKeySequence::listFromString(spec.keys);
            auto* command = new Command(spec.id, keys.value(0), action(spec.id, targets));
            menu->append(command);
            if (command->isSeparator())
                continue;
            m_byId.insert(spec.id, command);
            auto* shortcut = new QShortcut(command);
            shortcut->setKeys(keys);
            shortcut->setContext(Qt::ApplicationShortcut);
            connect(shortcut, &QShortcut::activated, command, &Command::trigger);
            connect(command, &Command::enabledChanged, shortcut,
                    [command, shortcut] { shortcut->setEnabled(command->isEnabled()); });
        }
    }
    followLibrary();
    show(state());
    qApp->installEventFilter(this);
}

std::function<void()> Commands::action(const QString& id, CommandTargets& targets) {
    auto& library = m_library;
    const QHash<QString, std::function<void()>> actions{
        {u"addToLibrary"_s, [&library] { library.importing()->chooseAndImportMusic(true, false); }},
        {u"importMusicFolder"_s,
         [&library] { library.importing()->chooseAndImportMusic(false, true); }},
        {u"settings"_s, [open = targets.openWindow] { open(u"settings"_s); }},
        {u"quit"_s, targets.quit},
        {u"undo"_s, onTextField("undo")},
        {u"redo"_s, onTextField("redo")},
        {u"cut"_s, onTextField("cut")},
        {u"copy"_s, onTextField("copy")},
        {u"paste"_s, onTextField("paste")},
        {u"selectAll"_s, onTextField("selectAll")},
        {u"find"_s, targets.find},
        {u"toggleNowPlayingPanel"_s,
         [&library] {
             library.views()->setShowNowPlayingPanel(!library.views()->showNowPlayingPanel());
         }},
        {u"playPause"_s, [&library] { library.transport()->togglePlayback(); }},
        {u"nextTrack"_s, [&library] { library.transport()->playNext(true); }},
        {u"previousTrack"_s, [&library] { library.transport()->playPrevious(); }},
        {u"toggleShuffle"_s, [&library] { library.transport()->toggleShuffle(); }},
        {u"advanceRepeatMode"_s, [&library] { library.transport()->advanceRepeatMode(); }},
        {u"increaseVolume"_s, [&library] { library.transport()->stepVolume(volumeStep); }},
        {u"decreaseVolume"_s, [&library] { library.transport()->stepVolume(-volumeStep); }},
        {u"toggleMiniPlayer"_s, targets.toggleMiniPlayer},
        {u"toggleFullScreen"_s, targets.toggleFullScreen},
        {u"help"_s, [open = targets.openWindow] { open(u"help"_s); }},
    };
    return actions.value(id);
}

void Commands::followLibrary() {
    connect(m_library.views(), &ViewState::isSearchFieldFocusedChanged, this, &Commands::refresh);
    connect(m_library.transport(), &Transport::isShuffleEnabledChanged, this, &Commands::refresh);
    connect(m_library.transport(), &Transport::repeatModeChanged, this, &Commands::refresh);
    connect(m_library.views(), &ViewState::isMiniPlayerOpenChanged, this, &Commands::refresh);
    connect(qGuiApp, &QGuiApplication::focusObjectChanged, this, &Commands::refresh);
}

CommandState Commands::state() const {
    return {.isSearchFieldFocused = m_library.views()->isSearchFieldFocused(),
            .isTextFocused = isTextField(QGuiApplication::focusObject()),
            .isShuffleEnabled = m_library.transport()->isShuffleEnabled(),
            .repeatMode = m_library.transport()->repeatMode(),
            .isMiniPlayerOpen = m_library.views()->isMiniPlayerOpen()};
}

void Commands::refresh() {
    const auto now = state();
    if (now == m_shown)
        return;
    show(now);
    Q_EMIT changed();
}

void Commands::show(const CommandState& now) {
    m_shown = now;
    for (const auto& menu : menuTable()) {
        for (const auto& spec : menu.items) {
            if (auto* command = m_byId.value(spec.id)) {
                command->setTitle(spec.title(now));
                command->setEnabled(!spec.isEnabled || spec.isEnabled(now));
            }
        }
    }
}

bool Commands::takesKeysFromText(int keyCombination) const {
    const QKeySequence pressed(keyCombination);
    for (const auto& menu : menuTable()) {
        for (const auto& spec : menu.items) {
            if (!spec.yieldsToText && !spec.id.isEmpty() &&
                QKeySequence::listFromString(spec.keys).contains(pressed))
                return true;
        }
    }
    return false;
}

// Before a key becomes a shortcut, the item with the keyboard is asked whether it wants the key. A
// text field would keep Ctrl+Right for itself, which skips to the next track; a button that was
// reached by keyboard would not keep Space, which presses it.
bool Commands::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Space && key->modifiers() == Qt::NoModifier && wantsSpace(watched)) {
        event->accept();
        return true;
    }
    if (!isTextField(watched) || !takesKeysFromText(key->keyCombination().toCombined()))
        return false;
    event->ignore(); // it comes accepted
    return true;
}

} // namespace halvane
