// SPDX-License-Identifier: MIT
#include "library/browsing/table_order.h"

#include "library/catalog/catalog_publisher.h"
#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"
#include "platform/thread_check.h"

namespace halvane {

TableOrder::TableOrder(Preferences& preferences, CatalogPublisher& catalog, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_catalog(catalog) {
}

void TableOrder::restore() {
    const auto by = storedEnum<TrackOrder>(m_preferences.string(SettingsKey::trackOrder));
    const auto descending = m_preferences.boolean(SettingsKey::trackOrderDescending);
    if (by)
        set({*by, *by != TrackOrder::library && descending.value_or(false)});
}

void TableOrder::choose(TrackOrder column) {
    if (column != m_sorting.by)
        set({column, false});
    else if (column != TrackOrder::library && !m_sorting.isDescending)
        set({column, true});
    else
        set({});
    m_preferences.setString(SettingsKey::trackOrder, rawValue(m_sorting.by));
    m_preferences.setBoolean(SettingsKey::trackOrderDescending, m_sorting.isDescending);
}

void TableOrder::set(const TrackSorting& sorting) {
    assertOwnThread(*this);
    if (sorting == m_sorting)
        return;
    m_sorting = sorting;
    m_catalog.setSorting(m_sorting);
    Q_EMIT changed();
}

} // namespace halvane
