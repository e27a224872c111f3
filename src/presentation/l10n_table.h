// SPDX-License-Identifier: MIT
// Every fixed text of the windows, once: X(key, English, Simplified Chinese). The order is the
// keys' order. The enumeration, the two tables and the properties of Strings are made from this
// list, so that a key without both texts, or one that occurs twice, does not compile.
#pragma once

// clang-format off
#define HALVANE_L10N_TABLE(X) \
    X(appSubtitle, u"Local Hi-Fi Library", u"本地高保真资料库") \
    X(browse, u"Browse", u"浏览") \
    X(library, u"Library", u"资料库") \
    X(albums, u"Albums", u"专辑") \
    X(artists, u"Artists", u"艺人") \
    X(tracks, u"Tracks", u"歌曲") \
    X(searchPlaceholder, u"Search title, artist, album, format", u"搜索标题、艺人、专辑、格式") \
    X(importMusicFolder, u"Import Music Folder", u"导入音乐文件夹") \
    X(importMusicFolderCommand, u"Import Music Folder...", u"导入音乐文件夹...") \
    X(nowPlaying, u"Now Playing", u"正在播放") \
    X(notPlaying, u"Not Playing", u"未在播放") \
    X(nothingToPlay, u"No playable tracks in the library yet", u"资料库中还没有可播放的曲目") \
    X(emptyLibraryTitle, u"Add music to your library", u"将音乐加入资料库") \
    X(emptyLibraryMessage, u"Drag audio files or folders into the window, or import a music folder to get started.", u"把音频文件或文件夹拖进窗口，或导入音乐文件夹开始使用。") \
    X(output, u"Output", u"输出") \
    X(signal, u"Signal", u"信号") \
    X(pause, u"Pause", u"暂停") \
    X(play, u"Play", u"播放") \
    X(title, u"Title", u"标题") \
    X(album, u"Album", u"专辑") \
    X(quality, u"Quality", u"品质") \
    X(time, u"Time", u"时长") \
    X(rating, u"Rating", u"评分") \
    X(playlist, u"Up Next", u"待播队列") \
    X(builtInOutput, u"Built-in Output", u"内置输出") \
    X(language, u"Language", u"语言") \
    X(dragAudio, u"Drop audio files", u"拖入音频文件") \
    X(dragAudioSubtitle, u"Added files appear in the playlist", u"文件会自动加入播放列表") \
    X(dropToAdd, u"Drop to add to playlist", u"松开加入播放列表") \
    X(noSupportedAudio, u"No supported audio files found", u"未找到支持的音频文件") \
    X(localFile, u"Local File", u"本地文件") \
    X(draggedFiles, u"Dragged Files", u"拖入的文件") \
    X(playThisTrack, u"Play this track", u"播放这首歌") \
    X(playingFrom, u"Playing from", u"播放来源") \
    X(year, u"Year", u"年份") \
    X(totalTime, u"Total Time", u"总时长") \
    X(viewArtist, u"Go to artist", u"查看艺术家") \
    X(viewAlbum, u"Go to album", u"查看专辑") \
    X(toggleRemainingTime, u"Switch between total and remaining time", u"切换总时长 / 剩余时间") \
    X(unavailableFile, u"File unavailable (moved or deleted)", u"文件不可用（已移动或删除）") \
    X(removeFromLibrary, u"Remove from Library", u"从资料库移除") \
    X(libraryMaintenance, u"Tidy Up Library", u"整理资料库") \
    X(cloudPendingSection, u"In iCloud, not downloaded", u"在 iCloud 中，未下载") \
    X(cloudPendingHint, u"These tracks are safe in iCloud. Download to play them.", u"这些歌曲安全地保存在 iCloud，下载后即可播放。") \
    X(missingSection, u"Missing files", u"文件丢失") \
    X(missingHint, u"These files were moved or deleted and can no longer play.", u"这些文件已被移动或删除，无法再播放。") \
    X(duplicatesSection, u"Duplicate tracks", u"重复曲目") \
    X(duplicatesHint, u"Same title, artist, and length. One copy of each is kept.", u"标题、艺人、时长相同。每组会保留一份。") \
    X(downloadAll, u"Download All", u"全部下载") \
    X(removeAllMissing, u"Remove All", u"全部移除") \
    X(removeDuplicates, u"Remove Duplicates", u"清理重复") \
    X(libraryClean, u"Your library is tidy — nothing to clean up.", u"资料库很干净，没有需要整理的项目。") \
    X(cloudFileHint, u"In iCloud — click to download", u"在 iCloud 中——点击下载") \
    X(done, u"Done", u"完成") \
    X(cancel, u"Cancel", u"取消") \
    X(languageSettingHint, u"Applies to window content. The menu bar always stays in English, matching the system menus.", u"仅作用于窗口内容。菜单栏与系统菜单保持一致，始终为英文。") \
    X(backToMainWindow, u"Back to Main Window", u"返回主窗口") \
    X(playAll, u"Play All", u"播放全部") \
    X(noResults, u"No matches for your search", u"没有匹配的搜索结果") \
    X(loved, u"Loved", u"喜欢") \
    X(playlistsSection, u"Playlists", u"播放列表") \
    X(newPlaylist, u"New Playlist...", u"新建播放列表…") \
    X(addToPlaylist, u"Add to Playlist", u"加入播放列表") \
    X(removeFromPlaylist, u"Remove from Playlist", u"从播放列表移除") \
    X(renameCommand, u"Rename...", u"重命名…") \
    X(deleteCommand, u"Delete", u"删除") \
    X(playlistNamePlaceholder, u"Playlist name", u"播放列表名称") \
    X(ratingNone, u"None", u"无") \
    X(systemDefaultDevice, u"System Default", u"系统默认") \
    X(deviceSwitchFailed, u"Couldn't switch output device - continuing on the previous one", u"无法切换输出设备——继续使用原设备播放") \
    X(soundCheck, u"Sound Check", u"音量均衡") \
    X(soundCheckHint, u"Balances loudness across tracks. Files are analyzed in the background; adjustments apply as results arrive.", u"自动平衡不同曲目的响度。文件在后台分析，结果就绪后自动生效。") \
    X(addToLibraryCommand, u"Add to Library...", u"添加到资料库…") \
    X(increaseVolume, u"Increase Volume", u"增大音量") \
    X(decreaseVolume, u"Decrease Volume", u"减小音量") \
    X(volumeLabel, u"Volume", u"音量") \
    X(equalizer, u"Equalizer", u"均衡器") \
    X(eqBass, u"Bass", u"低音") \
    X(eqMid, u"Mid", u"中音") \
    X(eqTreble, u"Treble", u"高音") \
    X(presetFlat, u"Flat", u"平直") \
    X(presetBassBoost, u"Bass Boost", u"低音增强") \
    X(presetTrebleBoost, u"Treble Boost", u"高音增强") \
    X(presetVocal, u"Vocal", u"人声") \
    X(presetLoudness, u"Loudness", u"响度") \
    X(presetRock, u"Rock", u"摇滚") \
    X(presetJazz, u"Jazz", u"爵士") \
    X(presetClassical, u"Classical", u"古典") \
    X(presetElectronic, u"Electronic", u"电子") \
    X(presetAcoustic, u"Acoustic", u"原声") \
    X(preampLabel, u"Preamp", u"前置增益") \
    X(savePreset, u"Save Preset...", u"保存预设…") \
    X(deletePresetMenu, u"Delete User Preset", u"删除用户预设") \
    X(presetNamePlaceholder, u"Preset name", u"预设名称") \
    X(findCommand, u"Find", u"搜索") \
    X(helpTitle, u"Halvane Help", u"Halvane 帮助") \
    X(helpImportTitle, u"Add music", u"添加音乐") \
    X(helpImportBody, u"Drag audio files or folders into the window, press Cmd+I, or open files with Halvane from Finder. Your files stay where they are — nothing is copied or moved.", u"把音频文件或文件夹拖进窗口，按 ⌘I，或在 Finder 中用 Halvane 打开文件。文件保留在原位——不会复制或移动。") \
    X(helpPlaybackTitle, u"Playback", u"播放") \
    X(helpPlaybackBody, u"Click any track to play it; click the playing track to pause. Keyboard media keys, AirPods controls, and Control Center all work.", u"点击任意歌曲即可播放；点击正在播放的歌曲则暂停。键盘媒体键、AirPods 控制和控制中心均可用。") \
    X(helpModesTitle, u"Player views", u"播放器视图") \
    X(helpModesBody, u"Four sizes: the menu bar waveform icon for quick controls, the mini player, the main window, and the full-screen vinyl view.", u"四种尺寸：菜单栏波形图标的快捷控制、迷你播放器、主窗口、全屏黑胶视图。") \
    X(helpCloudTitle, u"iCloud files", u"iCloud 文件") \
    X(helpCloudBody, u"Tracks with a blue cloud icon live in iCloud but are not downloaded. Click one to download it; it becomes playable automatically.", u"带蓝色云图标的歌曲保存在 iCloud 但未下载。点击即开始下载，完成后自动恢复可播放。") \
    X(helpMaintenanceTitle, u"Tidy up your library", u"整理资料库") \
    X(helpMaintenanceBody, u"The wand button in the toolbar resolves greyed-out tracks: download iCloud files, remove missing ones, and clean up duplicates.", u"工具栏的魔法棒按钮处理灰色曲目：下载 iCloud 文件、移除丢失文件、清理重复项。") \
    X(helpShortcutsTitle, u"Keyboard shortcuts", u"快捷键") \
    X(shuffleLabel, u"Shuffle", u"随机播放") \
    X(repeatLabel, u"Repeat", u"循环模式") \
    X(settingsLabel, u"Settings", u"设置") \
    X(themeSection, u"Theme", u"主题") \
    X(accentColor, u"Accent Color", u"强调色") \
    X(cornerStyle, u"Corner Style", u"圆角风格") \
    X(cornerSharp, u"Sharp", u"锐利") \
    X(cornerStandard, u"Standard", u"标准") \
    X(cornerRound, u"Round", u"圆润") \
    X(backgroundStyle, u"Background", u"背景") \
    X(bgDark, u"Dark", u"深色") \
    X(bgOLED, u"Pure Black", u"纯黑") \
    X(bgAmbient, u"Ambient", u"氛围") \
    X(spectrumColor, u"Spectrum Color", u"频谱颜色") \
    X(tintAmbient, u"Follow Artwork", u"跟随封面") \
    X(tintMint, u"Mint", u"薄荷绿") \
    X(tintGold, u"Gold", u"金色") \
    X(tintSunset, u"Sunset", u"暖橙") \
    X(tintCustom, u"Custom", u"自定义") \
    X(playbackMenu, u"Playback", u"播放控制") \
    X(playPause, u"Play/Pause", u"播放/暂停") \
    X(playAlbum, u"Play Album", u"播放专辑") \
    X(showAllTracks, u"Show All Tracks", u"显示全部歌曲") \
    X(miniPlayer, u"Mini Player", u"迷你播放器") \
    X(fullScreenPlayer, u"Full-Screen Player", u"全屏播放") \
    X(toggleNowPlayingPanel, u"Toggle Now Playing Panel", u"显示/隐藏正在播放栏") \
    X(clearSearch, u"Clear search", u"清除搜索") \
    X(unknownAlbum, u"Unknown Album", u"未知专辑") \
    X(unknownArtist, u"Unknown Artist", u"未知艺人") \
    X(shuffleOn, u"Shuffle on", u"随机播放已开启") \
    X(shuffleOff, u"Shuffle off", u"随机播放已关闭") \
    X(previousTrack, u"Previous track", u"上一首") \
    X(nextTrack, u"Next track", u"下一首") \
    X(repeatOff, u"Repeat off", u"循环关闭") \
    X(repeatAll, u"Repeat playlist", u"列表循环") \
    X(repeatOne, u"Repeat one", u"单曲循环") \
    X(startWith, u"Start with", u"启动时的队列") \
    X(startWithLibrary, u"The whole library", u"整个资料库") \
    X(startWithLeftOff, u"Where I left off", u"上次离开之处") \
    X(startWithHint, u"Where you left off: the queue, the track and the place in it come back, paused.", u"上次离开之处：恢复待播队列、曲目和播放位置，并保持暂停。") \
    X(soundCheckLeftOut, u"Files on network shares are analyzed when they play. Files that reading would download from a cloud are left out.", u"网络共享上的文件在播放时分析。读取时需要从云端下载的文件不参与分析。") \
    X(clipping, u"Clipping", u"正在削波") \
    X(notClipping, u"Not clipping", u"未削波") \
    X(clippingHint, u"Lights while the sound passes full scale and is cut off there. A lower preamp avoids that.", u"声音超过满刻度而被削平时亮起。降低前置增益即可避免。") \
    X(showInFileManager, u"Show in File Manager", u"在文件管理器中显示") \
    X(appearsOn, u"Appears on", u"参与作品") \
    X(importSearching, u"Searching for music…", u"正在搜索音乐…") \
    X(importedFilesGone, u"Nothing was added: the files are no longer there", u"没有加入任何文件：这些文件已不存在") \
    X(stopImport, u"Stop", u"停止") \
    X(artist, u"Artist", u"艺人") \
    X(sortByColumn, u"Sort by this column", u"按此列排序") \
    X(reverseOrder, u"Reverse the order", u"反转顺序") \
    X(libraryOrder, u"Back to the library's order", u"恢复资料库顺序") \
    X(sortedAscending, u"Sorted, ascending", u"已升序排列") \
    X(sortedDescending, u"Sorted, descending", u"已降序排列") \
    X(playNextCommand, u"Play Next", u"下一首播放") \
    X(addToQueue, u"Add to Queue", u"加入待播队列") \
    X(removeFromQueue, u"Remove from Queue", u"从待播队列移除") \
    X(moveInQueue, u"Move in Queue", u"移动待播曲目") \
    X(clearQueue, u"Clear Queue", u"清空待播队列") \
    X(queueCleared, u"Up Next cleared", u"已清空待播队列") \
    X(saveAsPlaylist, u"Save as Playlist...", u"存为播放列表…") \
    X(deletePlaylist, u"Delete Playlist", u"删除播放列表") \
    X(undoCommand, u"Undo", u"撤销") \
    X(redoCommand, u"Redo", u"重做") \
    X(moreActions, u"More", u"更多") \
    X(mute, u"Mute", u"静音") \
    X(unmute, u"Unmute", u"取消静音") \
    X(turnShuffleOn, u"Turn shuffle on", u"打开随机播放") \
    X(turnShuffleOff, u"Turn shuffle off", u"关闭随机播放") \
    X(exportCommand, u"Export...", u"导出…") \
    X(exportPlaylist, u"Export as M3U8 or XSPF", u"导出为 M3U8 或 XSPF") \
    X(exportPrompt, u"Export", u"导出") \
    X(noResultsHint, u"Try fewer letters, or another word of the title, artist or album.", u"请减少输入的文字，或换用标题、艺人、专辑中的其他词。") \
    X(emptyPlaylist, u"Nothing in this playlist yet", u"此播放列表还是空的") \
    X(emptyPlaylistHint, u"Drag tracks or albums onto its name, or choose “Add to Playlist” from their menu.", u"把歌曲或专辑拖到它的名称上，或在其菜单中选择“加入播放列表”。") \
    X(browseTracks, u"Browse Tracks", u"浏览歌曲") \
    X(emptyLoved, u"No loved tracks yet", u"还没有喜欢的歌曲") \
    X(emptyLovedHint, u"Press the heart of a track and it is kept here.", u"点按歌曲的心形图标，它就会保存在这里。") \
    X(emptyQueue, u"Nothing up next", u"待播队列是空的") \
    X(emptyQueueHint, u"Drag tracks or albums here, or choose “Add to Queue” from their menu.", u"把歌曲或专辑拖到这里，或在其菜单中选择“加入待播队列”。") \
    X(removedIsRemembered, u"What you said about them is remembered: loved, rating, plays and places in playlists return with the music.", u"你的喜欢、评分、播放次数和在播放列表中的位置都会记住，音乐回来时一并恢复。") \
    X(number, u"Number", u"编号") \
    X(genre, u"Genre", u"流派") \
    X(plays, u"Plays", u"播放次数") \
    X(dateAdded, u"Date Added", u"添加日期") \
    X(path, u"Path", u"路径") \
    X(columns, u"Columns", u"列") \
    X(chooseColumns, u"Choose columns", u"选择要显示的列") \
    X(standardColumns, u"Reset", u"还原") \
    X(ownOrder, u"Back to its own order", u"恢复原有顺序") \
    X(levelByLabel, u"Level by", u"均衡方式") \
    X(levelByTrack, u"Loudness, by track", u"响度，逐曲") \
    X(levelByAlbum, u"Loudness, by album or track", u"响度，按专辑或逐曲") \
    X(levelByLoudnessHint, u"Brings music to -18 LUFS by EBU R 128, as ReplayGain 2.0 does. Gains in the files' tags are used at once; other files are analyzed in the background.", u"像 ReplayGain 2.0 一样按 EBU R 128 将音乐调到 -18 LUFS。文件标签中的增益立即生效，其他文件在后台分析。") \
    X(levelByAlbumHint, u"While tracks of one album follow each other, the album keeps its own dynamics. Other tracks are leveled one by one.", u"连续播放同一专辑的曲目时保留专辑本身的强弱，其他曲目逐曲均衡。") \
    X(levelPreamp, u"Loudness Preamp", u"响度前置增益") \
    X(preventClipping, u"Prevent clipping", u"防止削波") \
    X(preventClippingHint, u"No gain lifts a track's true peak above full scale.", u"增益不会使曲目的真实峰值超过满刻度。") \
    X(followedFolders, u"Followed Folders", u"关注的文件夹") \
    X(newFilesAppear, u"New files appear by themselves", u"新文件自动加入") \
    X(noFollowedFolders, u"Folders that you add are followed: what comes to them later joins the library.", u"添加的文件夹会被关注：以后放进去的文件会自动加入资料库。") \
    X(addFolder, u"Add Folder...", u"添加文件夹…") \
    X(rescanFolders, u"Rescan", u"重新扫描") \
    X(stopFollowing, u"Stop Following", u"停止关注") \
    X(removeFolderWithTracks, u"Remove with Its Tracks", u"连同歌曲一起移除") \
    X(helpSearchTitle, u"Search", u"搜索") \
    X(helpSearchBody, u"Type words, or ask by field: artist:miles, album:, title:, genre:, format:flac, year:1990..1999, rating:>=4, plays:>10, added:30d, played:2025. A phrase goes in quotes, and -live leaves out what holds that word.", u"输入词语，或按字段搜索：艺人:周、专辑:、标题:、流派:、格式:flac、年份:1990..1999、评分:>=4、播放:>10、添加:30天、听过:2025。短语放在引号中，-现场 会排除含有该词的内容。") \
    X(recentlyAdded, u"Recently Added", u"最近添加") \
    X(recentlyPlayed, u"Recently Played", u"最近播放") \
    X(mostPlayed, u"Most Played", u"播放最多") \
    X(topRated, u"Top Rated", u"评分最高") \
    X(emptyRecentlyAdded, u"Nothing added yet", u"还没有添加歌曲") \
    X(emptyRecentlyAddedHint, u"What you add from now on is listed here, the newest first.", u"以后添加的歌曲会列在这里，最新的在最前。") \
    X(emptyPlayed, u"Nothing played yet", u"还没有播放记录") \
    X(emptyPlayedHint, u"What you listen to is listed here by itself.", u"你听过的歌曲会自动列在这里。") \
    X(emptyTopRated, u"No top rated tracks yet", u"还没有高分歌曲") \
    X(emptyTopRatedHint, u"Tracks with four or five stars are listed here.", u"四星和五星的歌曲会列在这里。") \
    X(exportListening, u"Export Listening Data...", u"导出聆听数据…") \
    X(importListening, u"Import Listening Data...", u"导入聆听数据…") \
    X(importPrompt, u"Import", u"导入") \
    X(newLiveList, u"New Live List...", u"新建智能列表…") \
    X(saveSearchAsLiveList, u"Save Search as Live List...", u"将搜索存为智能列表…") \
    X(editLiveList, u"Edit...", u"编辑…") \
    X(deleteLiveList, u"Delete Live List", u"删除智能列表") \
    X(liveListName, u"Name of the list", u"列表名称") \
    X(liveListSearch, u"Search", u"搜索条件") \
    X(liveListSearchExample, u"rating:>=4 genre:jazz added:90d", u"评分:>=4 流派:爵士 添加:90天") \
    X(liveListOrder, u"Sorted by", u"排序方式") \
    X(lastPlayed, u"Last Played", u"上次播放") \
    X(liveListMost, u"At most", u"最多") \
    X(noLimit, u"All tracks", u"全部歌曲") \
    X(emptyLiveList, u"Nothing fits this list now", u"目前没有符合条件的歌曲") \
    X(emptyLiveListHint, u"Tracks appear here by themselves once its search finds them.", u"符合条件的歌曲会自动出现在这里。")
// clang-format on
