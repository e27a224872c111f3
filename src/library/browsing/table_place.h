// SPDX-License-Identifier: MIT
// The places that the track table shows. What the user chooses for the table is kept for each of
// them: all albums are one place, and so are all artists; each playlist and each live list of the
// user is one, and so is each list of the sidebar, by the item's name. Pure; any thread.
#pragma once

#include <QString>
#include <QUuid>

namespace halvane::TablePlace {

using namespace Qt::StringLiterals;

inline const QString tracks = u"tracks"_s;
inline const QString loved = u"loved"_s;
inline const QString album = u"album"_s;
inline const QString artist = u"artist"_s;

inline QString playlist(const QUuid& id) {
    return u"playlist-"_s + id.toString(QUuid::WithoutBraces);
}

inline QString liveList(const QUuid& id) {
    return u"live-"_s + id.toString(QUuid::WithoutBraces);
}

/// The key under which a setting of the table is stored for a place. The table of all tracks has
/// the setting's own key.
inline QString key(const QString& setting, const QString& place) {
    return place == tracks ? setting : setting + u'.' + place;
}

} // namespace halvane::TablePlace
