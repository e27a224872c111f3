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

// The names of what every desktop program has, which are not among the product's own texts.
QString quitTitle(const CommandState&) {
    return u"Quit"_s;
}
QString undoTitle(const CommandState&) {
    return u"Undo"_s;
}
QString redoTitle(const CommandState&) {
    return u"Redo"_s;
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

// Names the mode in force.
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
         {{u"addToLibrary"_s, u"Ctrl+O"_s, fixed<L10nKey::addToLibraryCommand>},
          {u"importMusicFolder"_s, u"Ctrl+I"_s, fixed<L10nKey::importMusicFolderCommand>},
          separator,
          {u"settings"_s, u"Ctrl+,"_s, fixed<L10nKey::settingsLabel>},
          separator,
          {u"quit"_s, u"Ctrl+Q"_s, quitTitle}}},
        {u"Edit"_s,
         {{u"undo"_s, u"Ctrl+Z"_s, undoTitle, inTextField, true},
          {u"redo"_s, u"Ctrl+Shift+Z"_s, redoTitle, inTextField, true},
          separator,
          {u"cut"_s, u"Ctrl+X"_s, cutTitle, inTextField, true},
          {u"copy"_s, u"Ctrl+C"_s, copyTitle, inTextField, true},
          {u"paste"_s, u"Ctrl+V"_s, pasteTitle, inTextField, true},
          {u"selectAll"_s, u"Ctrl+A"_s, selectAllTitle, inTextField, true},
          separator,
          {u"find"_s, u"Ctrl+F"_s, fixed<L10nKey::findCommand>}}},
        {u"View"_s,
         {{u"toggleNowPlayingPanel"_s, u"Ctrl+Alt+N"_s, fixed<L10nKey::toggleNowPlayingPanel>}}},
        {english(L10nKey::playbackMenu),
         {{u"playPause"_s, u"Space"_s, fixed<L10nKey::playPause>, notInSearchField, true},
          {u"nextTrack"_s, u"Ctrl+Right"_s, fixed<L10nKey::nextTrack>},
          {u"previousTrack"_s, u"Ctrl+Left"_s, fixed<L10nKey::previousTrack>},
          separator,
          {u"toggleShuffle"_s, u"Ctrl+Shift+S"_s, shuffleTitle},
          {u"advanceRepeatMode"_s, u"Ctrl+Shift+R"_s, repeatTitle},
          separator,
          {u"increaseVolume"_s, u"Ctrl+Up"_s, fixed<L10nKey::increaseVolume>},
          {u"decreaseVolume"_s, u"Ctrl+Down"_s, fixed<L10nKey::decreaseVolume>},
          separator,
          {u"toggleMiniPlayer"_s, u"Ctrl+Meta+M"_s, miniPlayerTitle},
          {u"toggleFullScreen"_s, u"Ctrl+Meta+F"_s, fixed<L10nKey::fullScreenPlayer>}}},
        {u"Help"_s, {{u"help"_s, u"Ctrl+?"_s, fixed<L10nKey::helpTitle>}}},
    };
    return table;
}

} // namespace halvane
