// SPDX-License-Identifier: MIT
#include "app/commands/command_table.h"

#include "presentation/l10n.h"

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

QString english(L10nKey key) {
    return L10n::text(key, ResolvedLanguage::english);
}

template<L10nKey key>
QString fixed(const CommandState&) {
    return english(key);
}

// Every desktop program has these commands: the product's own texts do not name them.
QString quitTitle(const CommandState&) {
    return u"Quit"_s;
}
// Names what it takes back, which in a text field is what was typed.
QString titleWith(const QString& command, const QString& name, const CommandState& state) {
    return state.isTextFocused || name.isEmpty() ? command : command + u' ' + name;
}
QString undoTitle(const CommandState& state) {
    return titleWith(english(L10nKey::undoCommand), state.undoName, state);
}
QString redoTitle(const CommandState& state) {
    return titleWith(english(L10nKey::redoCommand), state.redoName, state);
}
bool canUndo(const CommandState& state) {
    return state.isTextFocused || !state.undoName.isEmpty();
}
bool canRedo(const CommandState& state) {
    return state.isTextFocused || !state.redoName.isEmpty();
}
QString cutTitle(const CommandState&) {
    return u"Cut"_s;
}
QString copyTitle(const CommandState&) {
    return u"Copy"_s;
}
QString pasteTitle(const CommandState&) {
    return u"Paste"_s;
}
QString selectAllTitle(const CommandState&) {
    return u"Select All"_s;
}

// Names what choosing it does.
QString shuffleTitle(const CommandState& state) {
    return english(state.isShuffleEnabled ? L10nKey::shuffleOff : L10nKey::shuffleOn);
}

// Names the current mode.
QString repeatTitle(const CommandState& state) {
    switch (state.repeatMode) {
    case PlaybackRepeatMode::off:
        return english(L10nKey::repeatOff);
    case PlaybackRepeatMode::all:
        return english(L10nKey::repeatAll);
    case PlaybackRepeatMode::one:
        return english(L10nKey::repeatOne);
    }
    return {};
}

QString stopTitle(const CommandState& state) {
    return state.stopsAfterCurrent ? u"Play On after Current Track"_s
                                   : u"Stop after Current Track"_s;
}

// Names what is set, as the repeat mode's does.
QString sleepTitle(const CommandState& state) {
    return state.sleepMinutes > 0 ? u"Sleep Timer: %1 min"_s.arg(state.sleepMinutes)
                                  : u"Sleep Timer: Off"_s;
}

QString artistOrderTitle(const CommandState& state) {
    return state.artistOrder == ArtistOrder::plain ? u"Sort Artists Alphabetically"_s
                                                   : u"Sort Artists by Character Code"_s;
}

QString miniPlayerTitle(const CommandState& state) {
    return english(state.isMiniPlayerOpen ? L10nKey::backToMainWindow : L10nKey::miniPlayer);
}

bool notInSearchField(const CommandState& state) {
    return !state.isSearchFieldFocused;
}
bool inTextField(const CommandState& state) {
    return state.isTextFocused;
}

const CommandSpec separator{};

} // namespace

const std::vector<MenuSpec>& menuTable() {
    static const std::vector<MenuSpec> table{
        {u"File"_s,
         {{CommandId::addToLibrary, u"Ctrl+O"_s, fixed<L10nKey::addToLibraryCommand>},
          {CommandId::importMusicFolder, u"Ctrl+I"_s, fixed<L10nKey::importMusicFolderCommand>},
          separator,
          {CommandId::newLiveList, {}, fixed<L10nKey::newLiveList>},
          separator,
          {CommandId::exportListening, {}, fixed<L10nKey::exportListening>},
          {CommandId::importListening, {}, fixed<L10nKey::importListening>},
          separator,
          {CommandId::settings, u"Ctrl+,"_s, fixed<L10nKey::settingsLabel>},
          separator,
          {CommandId::quit, u"Ctrl+Q"_s, quitTitle}}},
        {u"Edit"_s,
         {{CommandId::undo, u"Ctrl+Z"_s, undoTitle, canUndo, true},
          {CommandId::redo, u"Ctrl+Shift+Z"_s, redoTitle, canRedo, true},
          separator,
          {CommandId::cut, u"Ctrl+X"_s, cutTitle, inTextField, true},
          {CommandId::copy, u"Ctrl+C"_s, copyTitle, inTextField, true},
          {CommandId::paste, u"Ctrl+V"_s, pasteTitle, inTextField, true},
          {CommandId::selectAll, u"Ctrl+A"_s, selectAllTitle, inTextField, true},
          separator,
          {CommandId::find, u"Ctrl+F"_s, fixed<L10nKey::findCommand>}}},
        {u"View"_s,
         {{CommandId::toggleNowPlayingPanel, u"Ctrl+Alt+N"_s,
           fixed<L10nKey::toggleNowPlayingPanel>},
          separator,
          {CommandId::toggleArtistOrder, {}, artistOrderTitle}}},
        {english(L10nKey::playbackMenu),
         {{CommandId::playPause, u"Space"_s, fixed<L10nKey::playPause>, notInSearchField, true},
          {CommandId::nextTrack, u"Ctrl+Right"_s, fixed<L10nKey::nextTrack>},
          {CommandId::previousTrack, u"Ctrl+Left"_s, fixed<L10nKey::previousTrack>},
          separator,
          {CommandId::toggleShuffle, u"Ctrl+Shift+S"_s, shuffleTitle},
          {CommandId::advanceRepeatMode, u"Ctrl+Shift+R"_s, repeatTitle},
          separator,
          {CommandId::stopAfterCurrent, {}, stopTitle},
          {CommandId::advanceSleepTimer, {}, sleepTitle},
          separator,
          {CommandId::increaseVolume, u"Ctrl+Up"_s, fixed<L10nKey::increaseVolume>},
          {CommandId::decreaseVolume, u"Ctrl+Down"_s, fixed<L10nKey::decreaseVolume>},
          separator,
          {CommandId::toggleMiniPlayer, u"Ctrl+Meta+M"_s, miniPlayerTitle},
          {CommandId::toggleFullScreen, u"Ctrl+Meta+F"_s, fixed<L10nKey::fullScreenPlayer>}}},
        {u"Help"_s, {{CommandId::help, u"Ctrl+?"_s, fixed<L10nKey::helpTitle>}}},
    };
    return table;
}

} // namespace halvane
