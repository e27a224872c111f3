// SPDX-License-Identifier: MIT
#include "library/browsing/table_order.h"

#include "library/browsing/table_place.h"
#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"
#include "platform/thread_check.h"

namespace halvane {

TableOrder::TableOrder(Preferences& preferences, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences) {
}

void TableOrder::restore() {
    m_isRestored = true;
    load();
    Q_EMIT chosen();
}

void TableOrder::setPlace(const QString& place) {
    if (place == m_place)
        return;
    m_place = place;
    load();
}

void TableOrder::load() {
    set(m_place.isEmpty() ? TrackSorting() : sortingOf(m_place));
}

TrackSorting TableOrder::sortingOf(const QString& place) {
    auto known = m_known.constFind(place);
    if (known == m_known.cend() && m_isRestored)
        known = m_known.insert(place, stored(place));
    return known == m_known.cend() ? TrackSorting() : *known;
}

TrackSorting TableOrder::stored(const QString& place) const {
    const auto by = storedEnum<TrackOrder>(
        m_preferences.string(TablePlace::key(SettingsKey::trackOrder, place)));
    if (!by || *by == TrackOrder::library)
        return {};
    const auto isDescending =
        m_preferences.boolean(TablePlace::key(SettingsKey::trackOrderDescending, place));
    return {*by, isDescending.value_or(false)};
}

void TableOrder::choose(TrackOrder column) {
    if (m_place.isEmpty())
        return;
    if (column != m_sorting.by)
        set({column, false});
    else if (column != TrackOrder::library && !m_sorting.isDescending)
        set({column, true});
    else
        set({});
    m_known.insert(m_place, m_sorting);
    store(m_place, m_sorting);
    Q_EMIT chosen();
}

void TableOrder::store(const QString& place, const TrackSorting& sorting) {
    m_preferences.setString(TablePlace::key(SettingsKey::trackOrder, place), rawValue(sorting.by));
    m_preferences.setBoolean(TablePlace::key(SettingsKey::trackOrderDescending, place),
                             sorting.isDescending);
}

void TableOrder::forget(const QString& place) {
    sortingOf(place); // known from now on, should the place come back
    m_preferences.remove(TablePlace::key(SettingsKey::trackOrder, place));
    m_preferences.remove(TablePlace::key(SettingsKey::trackOrderDescending, place));
}

void TableOrder::remember(const QString& place) {
    if (const TrackSorting sorting = sortingOf(place); sorting != TrackSorting())
        store(place, sorting);
}

void TableOrder::set(const TrackSorting& sorting) {
    assertOwnThread(*this);
    if (sorting == m_sorting)
        return;
    m_sorting = sorting;
    Q_EMIT changed();
}

} // namespace halvane
