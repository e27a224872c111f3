// SPDX-License-Identifier: MIT
#pragma once

namespace halvane {

/// Every command that a menu, a key or the desktop can ask for, and the line between two groups of
/// them. Commands::perform says what each does, command_table.cpp how it looks.
enum class CommandId {
    separator,
    addToLibrary,
    importMusicFolder,
    newLiveList,
    exportListening,
    importListening,
    settings,
    quit,
    undo,
    redo,
    cut,
    copy,
    paste,
    selectAll,
    find,
    toggleNowPlayingPanel,
    toggleArtistOrder,
    playPause,
    nextTrack,
    previousTrack,
    toggleShuffle,
    advanceRepeatMode,
    stopAfterCurrent,
    advanceSleepTimer,
    increaseVolume,
    decreaseVolume,
    toggleMiniPlayer,
    toggleFullScreen,
    help,
};

} // namespace halvane
