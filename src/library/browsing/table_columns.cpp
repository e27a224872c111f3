// SPDX-License-Identifier: MIT
#include "library/browsing/table_columns.h"

#include "library/browsing/table_place.h"
#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"
#include "model/raw_value.h"
#include "platform/thread_check.h"

namespace halvane {

namespace {

// From left to right. The title, which is always there, comes after the number.
constexpr TrackOrder all[] = {TrackOrder::number, TrackOrder::artist, TrackOrder::album,
                              TrackOrder::genre,  TrackOrder::year,   TrackOrder::plays,
                              TrackOrder::added,  TrackOrder::path,   TrackOrder::quality,
                              TrackOrder::rating, TrackOrder::time};

QList<int> numbers(std::initializer_list<TrackOrder> columns) {
    QList<int> list;
    for (const TrackOrder column : columns)
        list.append(static_cast<int>(column));
    return list;
}

// The tracks of an album have numbers. Where they have none, the album's name takes their place. A
// list that goes by a number shows it.
QList<int> standard(const QString& place) {
    if (place == TablePlace::album)
        return numbers(
            {TrackOrder::number, TrackOrder::album, TrackOrder::quality, TrackOrder::time});
    TrackOrder beside = TrackOrder::quality;
    if (place == rawValue(SidebarItem::recentlyAdded))
        beside = TrackOrder::added;
    else if (place == rawValue(SidebarItem::mostPlayed))
        beside = TrackOrder::plays;
    else if (place == rawValue(SidebarItem::topRated))
        beside = TrackOrder::rating;
    return numbers({TrackOrder::album, beside, TrackOrder::time});
}

QString keyOf(const QString& place) {
    return TablePlace::key(SettingsKey::trackColumns, place);
}

} // namespace

TableColumns::TableColumns(Preferences& preferences, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_place(TablePlace::tracks)
    , m_shown(standard(m_place)) {
}

void TableColumns::restore() {
    m_isRestored = true;
    load();
}

void TableColumns::setPlace(const QString& place) {
    if (place == m_place || place.isEmpty())
        return;
    m_place = place;
    load();
    tell(); // what is standard may be something else
}

void TableColumns::load() {
    set(columnsOf(m_place));
}

QList<int> TableColumns::columnsOf(const QString& place) {
    auto known = m_known.constFind(place);
    if (known == m_known.cend() && m_isRestored)
        known = m_known.insert(place, stored(place));
    return known == m_known.cend() ? standard(place) : *known;
}

QList<int> TableColumns::stored(const QString& place) const {
    const auto names = m_preferences.strings(keyOf(place));
    if (!names)
        return standard(place);
    QList<int> columns;
    for (const TrackOrder column : all)
        if (names->contains(rawValue(column)))
            columns.append(static_cast<int>(column));
    return columns;
}

QList<int> TableColumns::offered() const {
    QList<int> columns;
    for (const TrackOrder column : all)
        columns.append(static_cast<int>(column));
    return columns;
}

bool TableColumns::isStandard() const {
    return m_shown == standard(m_place);
}

void TableColumns::toggle(TrackOrder column) {
    QList<int> columns;
    for (const TrackOrder one : all)
        if (shows(one) != (one == column))
            columns.append(static_cast<int>(one));
    m_known.insert(m_place, columns);
    set(columns);
    store(m_place, columns);
}

void TableColumns::store(const QString& place, const QList<int>& columns) {
    QStringList names;
    for (const int column : columns)
        names.append(rawValue(static_cast<TrackOrder>(column)));
    m_preferences.setStrings(keyOf(place), names);
}

void TableColumns::reset() {
    m_known.insert(m_place, standard(m_place));
    set(standard(m_place));
    m_preferences.remove(keyOf(m_place));
}

void TableColumns::forget(const QString& place) {
    columnsOf(place); // known from now on, should the place come back
    m_preferences.remove(keyOf(place));
}

void TableColumns::remember(const QString& place) {
    if (const QList<int> columns = columnsOf(place); columns != standard(place))
        store(place, columns);
}

void TableColumns::set(const QList<int>& columns) {
    assertOwnThread(*this);
    if (columns == m_shown)
        return;
    m_shown = columns;
    tell();
}

void TableColumns::tell() {
    ++m_revision;
    Q_EMIT changed();
}

} // namespace halvane
