// SPDX-License-Identifier: MIT
#include "library/browsing/live_list_tracks.h"

#include "library/browsing/live_list_rows.h"
#include "library/user/live_lists.h"
#include "library/user/track_user_data.h"

#include <QDateTime>

namespace halvane {

std::vector<quint32> LiveListTracks::rowsOf(const LiveList& list) const {
    return rowsOfLiveList(list, *m_catalog.published(), saidOfRows(), QDateTime::currentDateTime());
}

TrackRows LiveListTracks::tracksOf(const QUuid& id) const {
    const LiveList* list = m_lists.find(id);
    return list ? m_catalog.published()->tracksAt(rowsOf(*list)) : TrackRows();
}

QString LiveListTracks::nameOf(const QUuid& id) const {
    return m_lists.list(id).name;
}

NumbersOf LiveListTracks::saidOfRows() const {
    return [this](TermField field) {
        return m_lookup.numbersOf(field == TermField::rating  ? m_userData.trackRatings()
                                  : field == TermField::plays ? m_userData.playCounts()
                                                              : m_userData.lastPlayed());
    };
}

} // namespace halvane
