// SPDX-License-Identifier: MIT
// The model's enumerations under names that QML can reach: QML needs a capital letter first.
#pragma once

#include "model/enums.h"

#include <QObject>
#include <QUuid>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// Identities of queue entries and playlists: views only pass them on.
struct UuidKind {
    Q_GADGET
    QML_FOREIGN(QUuid)
    QML_VALUE_TYPE(uuid)
};

namespace BrowseMode {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Albums = static_cast<int>(LibraryMode::albums),
    Songs = static_cast<int>(LibraryMode::songs),
    Artists = static_cast<int>(LibraryMode::artists),
};
Q_ENUM_NS(Value)
} // namespace BrowseMode

namespace SidebarPlace {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Library = static_cast<int>(SidebarItem::library),
    Albums = static_cast<int>(SidebarItem::albums),
    Artists = static_cast<int>(SidebarItem::artists),
    Tracks = static_cast<int>(SidebarItem::tracks),
    Loved = static_cast<int>(SidebarItem::loved),
    RecentlyAdded = static_cast<int>(SidebarItem::recentlyAdded),
    RecentlyPlayed = static_cast<int>(SidebarItem::recentlyPlayed),
    MostPlayed = static_cast<int>(SidebarItem::mostPlayed),
    TopRated = static_cast<int>(SidebarItem::topRated),
    LiveList = static_cast<int>(SidebarItem::liveList),
};
Q_ENUM_NS(Value)
} // namespace SidebarPlace

namespace Repeat {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Off = static_cast<int>(PlaybackRepeatMode::off),
    All = static_cast<int>(PlaybackRepeatMode::all),
    One = static_cast<int>(PlaybackRepeatMode::one),
};
Q_ENUM_NS(Value)
} // namespace Repeat

namespace LevelChoice {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    SoundCheck = static_cast<int>(LevelBy::soundCheck),
    Track = static_cast<int>(LevelBy::track),
    Album = static_cast<int>(LevelBy::album),
};
Q_ENUM_NS(Value)
} // namespace LevelChoice

namespace Tint {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Ambient = static_cast<int>(SpectrumTintMode::ambient),
    Mint = static_cast<int>(SpectrumTintMode::mint),
    Gold = static_cast<int>(SpectrumTintMode::gold),
    Sunset = static_cast<int>(SpectrumTintMode::sunset),
    Custom = static_cast<int>(SpectrumTintMode::custom),
};
Q_ENUM_NS(Value)
} // namespace Tint

namespace Corners {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Sharp = static_cast<int>(CornerStyle::sharp),
    Standard = static_cast<int>(CornerStyle::standard),
    Round = static_cast<int>(CornerStyle::round),
};
Q_ENUM_NS(Value)
} // namespace Corners

namespace Backdrop {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Dark = static_cast<int>(BackgroundStyle::dark),
    Oled = static_cast<int>(BackgroundStyle::oled),
    Ambient = static_cast<int>(BackgroundStyle::ambient),
};
Q_ENUM_NS(Value)
} // namespace Backdrop

namespace SortBy {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Library = static_cast<int>(TrackOrder::library),
    Title = static_cast<int>(TrackOrder::title),
    Artist = static_cast<int>(TrackOrder::artist),
    Album = static_cast<int>(TrackOrder::album),
    Quality = static_cast<int>(TrackOrder::quality),
    Time = static_cast<int>(TrackOrder::time),
    Number = static_cast<int>(TrackOrder::number),
    Genre = static_cast<int>(TrackOrder::genre),
    Year = static_cast<int>(TrackOrder::year),
    Plays = static_cast<int>(TrackOrder::plays),
    Rating = static_cast<int>(TrackOrder::rating),
    Added = static_cast<int>(TrackOrder::added),
    Path = static_cast<int>(TrackOrder::path),
};
Q_ENUM_NS(Value)
} // namespace SortBy

namespace Availability {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Available = static_cast<int>(TrackAvailability::available),
    InCloud = static_cast<int>(TrackAvailability::inCloud),
    Missing = static_cast<int>(TrackAvailability::missing),
};
Q_ENUM_NS(Value)
} // namespace Availability

} // namespace halvane::views
