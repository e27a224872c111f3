// SPDX-License-Identifier: MIT
// The library's concerns, so that QML knows what each of them offers.
#pragma once

#include "library/library_concerns.h"

#include <QtQml/qqmlregistration.h>

namespace halvane::views {

struct TransportType {
    Q_GADGET
    QML_FOREIGN(halvane::Transport)
    QML_ANONYMOUS
};

struct ProgressClockType {
    Q_GADGET
    QML_FOREIGN(halvane::ProgressClock)
    QML_ANONYMOUS
};

struct PlayQueueType {
    Q_GADGET
    QML_FOREIGN(halvane::PlayQueue)
    QML_ANONYMOUS
};

struct QueueEditingType {
    Q_GADGET
    QML_FOREIGN(halvane::QueueEditing)
    QML_ANONYMOUS
};

struct UndoHistoryType {
    Q_GADGET
    QML_FOREIGN(halvane::UndoHistory)
    QML_ANONYMOUS
};

struct QueueMemoryType {
    Q_GADGET
    QML_FOREIGN(halvane::QueueMemory)
    QML_ANONYMOUS
};

struct CollectionPlayerType {
    Q_GADGET
    QML_FOREIGN(halvane::CollectionPlayer)
    QML_ANONYMOUS
};

struct PlayerDisplayType {
    Q_GADGET
    QML_FOREIGN(halvane::PlayerDisplay)
    QML_ANONYMOUS
};

struct EqualizerSettingsType {
    Q_GADGET
    QML_FOREIGN(halvane::EqualizerSettings)
    QML_ANONYMOUS
};

struct SoundCheckType {
    Q_GADGET
    QML_FOREIGN(halvane::SoundCheck)
    QML_ANONYMOUS
};

struct OutputDevicesType {
    Q_GADGET
    QML_FOREIGN(halvane::OutputDevices)
    QML_ANONYMOUS
};

struct OutputDeviceListModelType {
    Q_GADGET
    QML_FOREIGN(halvane::OutputDeviceListModel)
    QML_ANONYMOUS
};

struct SignalPathType {
    Q_GADGET
    QML_FOREIGN(halvane::SignalPath)
    QML_ANONYMOUS
};

struct ImporterType {
    Q_GADGET
    QML_FOREIGN(halvane::Importer)
    QML_ANONYMOUS
};

struct TidyingType {
    Q_GADGET
    QML_FOREIGN(halvane::Tidying)
    QML_ANONYMOUS
};

struct TidyingListsType {
    Q_GADGET
    QML_FOREIGN(halvane::TidyingLists)
    QML_ANONYMOUS
};

struct CloudDownloadsType {
    Q_GADGET
    QML_FOREIGN(halvane::CloudDownloads)
    QML_ANONYMOUS
};

struct DuplicatesType {
    Q_GADGET
    QML_FOREIGN(halvane::Duplicates)
    QML_ANONYMOUS
};

struct BrowsingType {
    Q_GADGET
    QML_FOREIGN(halvane::Browsing)
    QML_ANONYMOUS
};

struct TableColumnsType {
    Q_GADGET
    QML_FOREIGN(halvane::TableColumns)
    QML_ANONYMOUS
};

struct FollowedFoldersType {
    Q_GADGET
    QML_FOREIGN(halvane::FollowedFolders)
    QML_ANONYMOUS
};

struct TableOrderType {
    Q_GADGET
    QML_FOREIGN(halvane::TableOrder)
    QML_ANONYMOUS
};

struct SidebarModelType {
    Q_GADGET
    QML_FOREIGN(halvane::SidebarModel)
    QML_ANONYMOUS
};

struct ViewStateType {
    Q_GADGET
    QML_FOREIGN(halvane::ViewState)
    QML_ANONYMOUS
};

struct StatusLineType {
    Q_GADGET
    QML_FOREIGN(halvane::StatusLine)
    QML_ANONYMOUS
};

struct PlaylistsType {
    Q_GADGET
    QML_FOREIGN(halvane::Playlists)
    QML_ANONYMOUS
};

struct LiveListsType {
    Q_GADGET
    QML_FOREIGN(halvane::LiveLists)
    QML_ANONYMOUS
};

struct PlaylistExportType {
    Q_GADGET
    QML_FOREIGN(halvane::PlaylistExport)
    QML_ANONYMOUS
};

struct TrackUserDataType {
    Q_GADGET
    QML_FOREIGN(halvane::TrackUserData)
    QML_ANONYMOUS
};

struct ThemeSettingsType {
    Q_GADGET
    QML_FOREIGN(halvane::ThemeSettings)
    QML_ANONYMOUS
};

struct AmbientColorType {
    Q_GADGET
    QML_FOREIGN(halvane::AmbientColor)
    QML_ANONYMOUS
};

struct CoverFilesType {
    Q_GADGET
    QML_FOREIGN(halvane::CoverFiles)
    QML_ANONYMOUS
};

struct LanguageSettingType {
    Q_GADGET
    QML_FOREIGN(halvane::LanguageSetting)
    QML_ANONYMOUS
};

} // namespace halvane::views
