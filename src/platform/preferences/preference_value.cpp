// SPDX-License-Identifier: MIT
#include "platform/preferences/preference_value.h"

#include <QSet>

namespace halvane {

namespace {

// The collection that an insertion goes into. A value of another kind makes way for an empty one.
template<typename Collection>
Collection& collection(std::optional<PreferenceValue>& value) {
    if (!value || !std::holds_alternative<Collection>(*value))
        value = Collection();
    return std::get<Collection>(*value);
}

struct Apply {
    std::optional<PreferenceValue>& value;

    void operator()(const PreferenceChange::Set& set) { value = set.value; }
    void operator()(const PreferenceChange::Remove&) { value.reset(); }
    void operator()(const PreferenceChange::InsertStrings& insert) {
        auto& list = collection<QStringList>(value);
        QSet<QString> present(list.cbegin(), list.cend());
        for (const auto& text : insert.values) {
            if (present.contains(text))
                continue;
            present.insert(text);
            list.append(text);
        }
    }
    void operator()(const PreferenceChange::InsertInteger& insert) {
        collection<IntegerMap>(value).insert(insert.entry, insert.value);
    }
    void operator()(const PreferenceChange::InsertNumbers& insert) {
        collection<NumbersMap>(value).insert(insert.entry, insert.value);
    }
    void operator()(const PreferenceChange::RemoveEntries& remove) {
        if (!value)
            return;
        if (auto* list = std::get_if<QStringList>(&*value)) {
            const QSet<QString> leaving(remove.entries.cbegin(), remove.entries.cend());
            list->removeIf([&](const QString& text) { return leaving.contains(text); });
        }
        for (const auto& entry : remove.entries) {
            if (auto* map = std::get_if<IntegerMap>(&*value))
                map->remove(entry);
            else if (auto* numbers = std::get_if<NumbersMap>(&*value))
                numbers->remove(entry);
        }
    }
};

} // namespace

void applyChange(const PreferenceChange& change, std::optional<PreferenceValue>& value) {
    std::visit(Apply{value}, change.what);
}

bool replacesAll(const PreferenceChange& change) {
    return std::holds_alternative<PreferenceChange::Set>(change.what) ||
           std::holds_alternative<PreferenceChange::Remove>(change.what);
}

QStringList entriesPutIn(const PreferenceChange& change) {
    if (const auto* strings = std::get_if<PreferenceChange::InsertStrings>(&change.what))
        return strings->values;
    if (const auto* integer = std::get_if<PreferenceChange::InsertInteger>(&change.what))
        return {integer->entry};
    if (const auto* numbers = std::get_if<PreferenceChange::InsertNumbers>(&change.what))
        return {numbers->entry};
    return {};
}

} // namespace halvane
