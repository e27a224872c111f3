// SPDX-License-Identifier: MIT
#include "app/commands/commands.h"

#include "library/browsing/browsing.h"
#include "library/browsing/view_state.h"
#include "library/import/importer.h"
#include "library/library_view_model.h"
#include "library/playback/sleep_timer.h"
#include "library/playback/transport.h"
#include "library/undo_history.h"
#include "library/user/said_transfer.h"
#include "presentation/l10n.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QShortcut>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double volumeStep = 1.0 / 16;

bool isTextField(const QObject* object) {
    const auto* item = qobject_cast<const QQuickItem*>(object);
    return item && item->flags().testFlag(QQuickItem::ItemAcceptsInputMethod);
}

// A button that was reached by keyboard would be pressed by Space.
bool wantsSpace(const QObject* object) {
    return object->property("visualFocus").toBool() &&
           object->metaObject()->indexOfSignal("clicked()") >= 0;
}

// In English, as all menus.
QString nameOf(std::optional<L10nKey> key) {
    return key ? L10n::text(*key, ResolvedLanguage::english) : QString();
}

void askTextField(const char* method) {
    if (auto* field = QGuiApplication::focusObject(); isTextField(field))
        QMetaObject::invokeMethod(field, method);
}

} // namespace

Commands::Commands(LibraryViewModel& library, QObject* parent)
    : QObject(parent)
    , m_library(library) {
    for (const auto& menuSpec : menuTable()) {
        auto* menu = new CommandMenu(menuSpec.title, this);
        m_menus.append(menu);
        for (const auto& spec : menuSpec.items)
            add(*menu, spec);
    }
    followLibrary();
    show(state());
    qApp->installEventFilter(this);
}

void Commands::add(CommandMenu& menu, const CommandSpec& spec) {
    const auto keys = QKeySequence::listFromString(spec.keys);
    auto* command = new Command(spec.id, keys.value(0));
    menu.append(command);
    if (command->isSeparator())
        return;
    m_byId.emplace(spec.id, command);
    connect(command, &Command::triggered, this, [this, id = spec.id] { perform(id); });
    auto* shortcut = new QShortcut(command);
    shortcut->setKeys(keys);
    shortcut->setContext(Qt::ApplicationShortcut);
    connect(shortcut, &QShortcut::activated, command, &Command::trigger);
    connect(command, &Command::enabledChanged, shortcut,
            [command, shortcut] { shortcut->setEnabled(command->isEnabled()); });
}

void Commands::perform(CommandId id) {
    auto* transport = m_library.transport();
    switch (id) {
    case CommandId::separator:
        return;
    case CommandId::addToLibrary:
        return m_library.importing()->chooseAndImportMusic(true, false);
    case CommandId::importMusicFolder:
        return m_library.importing()->chooseAndImportMusic(false, true);
    case CommandId::newLiveList:
        return m_library.views()->newLiveList(m_library.browsing()->searchText());
    case CommandId::exportListening:
        return m_library.saidTransfer()->exportSaid();
    case CommandId::importListening:
        return m_library.saidTransfer()->importSaid();
    case CommandId::settings:
        return Q_EMIT windowAsked(u"settings"_s);
    case CommandId::quit:
        return Q_EMIT quitAsked();
    case CommandId::undo:
        return m_shown.isTextFocused ? askTextField("undo") : m_library.history()->undo();
    case CommandId::redo:
        return m_shown.isTextFocused ? askTextField("redo") : m_library.history()->redo();
    case CommandId::cut:
        return askTextField("cut");
    case CommandId::copy:
        return askTextField("copy");
    case CommandId::paste:
        return askTextField("paste");
    case CommandId::selectAll:
        return askTextField("selectAll");
    case CommandId::find:
        return Q_EMIT searchAsked();
    case CommandId::toggleNowPlayingPanel:
        return m_library.views()->setShowNowPlayingPanel(!m_library.views()->showNowPlayingPanel());
    case CommandId::toggleArtistOrder:
        return m_library.views()->setArtistOrder(
            m_library.views()->artistOrder() == ArtistOrder::plain ? ArtistOrder::readers
                                                                   : ArtistOrder::plain);
    case CommandId::playPause:
        return transport->togglePlayback();
    case CommandId::nextTrack:
        return transport->playNext(true);
    case CommandId::previousTrack:
        return transport->playPrevious();
    case CommandId::toggleShuffle:
        return transport->toggleShuffle();
    case CommandId::advanceRepeatMode:
        return transport->advanceRepeatMode();
    case CommandId::stopAfterCurrent:
        return transport->setStopsAfterCurrent(!transport->stopsAfterCurrent());
    case CommandId::advanceSleepTimer:
        return m_library.sleepTimer()->advance();
    case CommandId::increaseVolume:
        return transport->stepVolume(volumeStep);
    case CommandId::decreaseVolume:
        return transport->stepVolume(-volumeStep);
    case CommandId::toggleMiniPlayer:
        return Q_EMIT miniPlayerToggled();
    case CommandId::toggleFullScreen:
        return Q_EMIT fullScreenToggled();
    case CommandId::help:
        return Q_EMIT windowAsked(u"help"_s);
    }
}

void Commands::followLibrary() {
    connect(m_library.views(), &ViewState::isSearchFieldFocusedChanged, this, &Commands::refresh);
    connect(m_library.transport(), &Transport::isShuffleEnabledChanged, this, &Commands::refresh);
    connect(m_library.transport(), &Transport::repeatModeChanged, this, &Commands::refresh);
    connect(m_library.transport(), &Transport::stopsAfterCurrentChanged, this, &Commands::refresh);
    connect(m_library.sleepTimer(), &SleepTimer::minutesChanged, this, &Commands::refresh);
    connect(m_library.views(), &ViewState::isMiniPlayerOpenChanged, this, &Commands::refresh);
    connect(m_library.views(), &ViewState::artistOrderChanged, this, &Commands::refresh);
    connect(m_library.history(), &UndoHistory::changed, this, &Commands::refresh);
    connect(qGuiApp, &QGuiApplication::focusObjectChanged, this, &Commands::refresh);
}

CommandState Commands::state() const {
    return {.isSearchFieldFocused = m_library.views()->isSearchFieldFocused(),
            .isTextFocused = isTextField(QGuiApplication::focusObject()),
            .isShuffleEnabled = m_library.transport()->isShuffleEnabled(),
            .repeatMode = m_library.transport()->repeatMode(),
            .stopsAfterCurrent = m_library.transport()->stopsAfterCurrent(),
            .sleepMinutes = m_library.sleepTimer()->minutes(),
            .isMiniPlayerOpen = m_library.views()->isMiniPlayerOpen(),
            .artistOrder = m_library.views()->artistOrder(),
            .undoName = nameOf(m_library.history()->undoName()),
            .redoName = nameOf(m_library.history()->redoName())};
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
            if (spec.id == CommandId::separator)
                continue;
            find(spec.id).setTitle(spec.title(now));
            find(spec.id).setEnabled(!spec.isEnabled || spec.isEnabled(now));
        }
    }
}

bool Commands::takesKeysFromText(int keyCombination) const {
    const QKeySequence pressed(keyCombination);
    for (const auto& menu : menuTable()) {
        for (const auto& spec : menu.items) {
            if (!spec.yieldsToText && spec.id != CommandId::separator &&
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
