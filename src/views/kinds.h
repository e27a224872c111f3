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
    Albums = int(LibraryMode::albums),
    Songs = int(LibraryMode::songs),
    Artists = int(LibraryMode::artists),
};
Q_ENUM_NS(Value)
} // namespace BrowseMode

namespace SidebarPlace {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Library = int(SidebarItem::library),
    Albums = int(SidebarItem::albums),
    Artists = int(SidebarItem::artists),
    Tracks = int(SidebarItem::tracks),
    Loved = int(SidebarItem::loved),
};
Q_ENUM_NS(Value)
} // namespace SidebarPlace

namespace Repeat {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Off = int(PlaybackRepeatMode::off),
    All = int(PlaybackRepeatMode::all),
    One = int(PlaybackRepeatMode::one),
};
Q_ENUM_NS(Value)
} // namespace Repeat

namespace Tint {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Ambient = int(SpectrumTintMode::ambient),
    Mint = int(SpectrumTintMode::mint),
    Gold = int(SpectrumTintMode::gold),
    Sunset = int(SpectrumTintMode::sunset),
    Custom = int(SpectrumTintMode::custom),
};
Q_ENUM_NS(Value)
} // namespace Tint

namespace Corners {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Sharp = int(CornerStyle::sharp),
    Standard = int(CornerStyle::standard),
    Round = int(CornerStyle::round),
};
Q_ENUM_NS(Value)
} // namespace Corners

namespace Backdrop {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Dark = int(BackgroundStyle::dark),
    Oled = int(BackgroundStyle::oled),
    Ambient = int(BackgroundStyle::ambient),
};
Q_ENUM_NS(Value)
} // namespace Backdrop

namespace Availability {
Q_NAMESPACE
QML_ELEMENT
enum Value {
    Available = int(TrackAvailability::available),
    InCloud = int(TrackAvailability::inCloud),
    Missing = int(TrackAvailability::missing),
};
Q_ENUM_NS(Value)
} // namespace Availability

} // namespace halvane::views
