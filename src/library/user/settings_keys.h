// SPDX-License-Identifier: MIT
// The keys under which the preferences are stored. The stored names never change.
#pragma once

#include <QString>

namespace halvane::SettingsKey {

using namespace Qt::StringLiterals;

inline const QString language = u"Halvane.Language"_s;
inline const QString repeatMode = u"Halvane.RepeatMode"_s;
inline const QString volume = u"Halvane.Volume"_s;
inline const QString shuffleEnabled = u"Halvane.ShuffleEnabled"_s;
inline const QString showNowPlayingPanel = u"Halvane.ShowNowPlayingPanel"_s;
inline const QString spectrumTintMode = u"Halvane.SpectrumTintMode"_s;
inline const QString customSpectrumColor = u"Halvane.CustomSpectrumColor"_s;
inline const QString eqGains = u"Halvane.EQGains10"_s;
inline const QString eqPreamp = u"Halvane.EQPreamp"_s;
inline const QString eqUserPresets = u"Halvane.EQUserPresets"_s;
inline const QString eqPresetID = u"Halvane.EQPresetID"_s;
inline const QString eqEnabled = u"Halvane.EQEnabled"_s;
inline const QString lovedPaths = u"Halvane.LovedPaths"_s;
inline const QString trackRatings = u"Halvane.TrackRatings"_s;
inline const QString playCounts = u"Halvane.PlayCounts"_s;
/// In whole seconds since 2001-01-01 UTC.
inline const QString lastPlayed = u"Halvane.LastPlayed"_s;
inline const QString playlists = u"Halvane.Playlists"_s;
inline const QString liveLists = u"Halvane.LiveLists"_s;
inline const QString themeAccentMode = u"Halvane.ThemeAccentMode"_s;
inline const QString customThemeAccent = u"Halvane.CustomThemeAccent"_s;
inline const QString themeCornerStyle = u"Halvane.ThemeCornerStyle"_s;
inline const QString themeBackgroundStyle = u"Halvane.ThemeBackgroundStyle"_s;
inline const QString showRemainingTime = u"Halvane.ShowRemainingTime"_s;
inline const QString artistOrder = u"Halvane.ArtistOrder"_s;
inline const QString tileSize = u"Halvane.TileSize"_s;
inline const QString outputDeviceName = u"Halvane.OutputDeviceName"_s;
inline const QString soundCheckEnabled = u"Halvane.SoundCheckEnabled"_s;
inline const QString trackLoudness = u"Halvane.TrackLoudnessV2"_s;
inline const QString trackProgrammeLoudness = u"Halvane.TrackProgrammeLoudness"_s;
inline const QString levelBy = u"Halvane.LevelBy"_s;
inline const QString levelPreamp = u"Halvane.LevelPreamp"_s;
inline const QString preventsClipping = u"Halvane.PreventsClipping"_s;
/// What was said of sounds, by their identities.
inline const QString soundNotes = u"Halvane.SoundNotes"_s;
inline const QString soundLastPlayed = u"Halvane.SoundLastPlayed"_s;
/// Places in playlists of sounds that have left the library.
inline const QString soundPlaces = u"Halvane.SoundPlaces"_s;
inline const QString importedAudioPaths = u"Halvane.ImportedAudioPaths"_s;
inline const QString startsWhereLeftOff = u"Halvane.StartsWhereLeftOff"_s;
/// Path, row and seconds of the current entry.
inline const QString queuePlace = u"Halvane.QueuePlace"_s;
inline const QString trackOrder = u"Halvane.TrackOrder"_s;
inline const QString trackOrderDescending = u"Halvane.TrackOrderDescending"_s;
inline const QString trackColumns = u"Halvane.TrackColumns"_s;
inline const QString followedFolders = u"Halvane.FollowedFolders"_s;
inline const QString followsFolders = u"Halvane.FollowsFolders"_s;
/// Files in followed folders that the user has taken out of the library.
inline const QString leftOutPaths = u"Halvane.LeftOutPaths"_s;
inline const QString securityBookmarks = u"Halvane.SecurityBookmarks"_s;

} // namespace halvane::SettingsKey
