// SPDX-License-Identifier: MIT
#include "platform/preferences/value_preferences.h"

namespace halvane {

namespace {

// The collection that an insertion goes into: the one that is there, or a new one in the place of
// a value of another kind.
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
        if (auto* list = std::get_if<QStringList>(&*value))
            list->removeIf([&](const QString& text) { return remove.entries.contains(text); });
        for (const auto& entry : remove.entries) {
            if (auto* map = std::get_if<IntegerMap>(&*value))
                map->remove(entry);
            else if (auto* numbers = std::get_if<NumbersMap>(&*value))
                numbers->remove(entry);
        }
    }
};

template<typename T>
Stored<T> typed(std::optional<PreferenceValue> value) {
    if (!value)
        return Absent();
    if (T* found = std::get_if<T>(&*value))
        return std::move(*found);
    return OtherKind();
}

} // namespace

template<typename T>
Later<T> ValuePreferences::typedLater(const QString& key) const {
    if (auto later = valueLater(key)) {
        return [later = std::move(later)]() -> std::optional<Stored<T>> {
            auto value = later();
            return value ? std::optional(typed<T>(std::move(value))) : std::nullopt;
        };
    }
    return [found = typed<T>(value(key))] { return std::optional(found); };
}

void applyChange(const PreferenceChange& change, std::optional<PreferenceValue>& value) {
    std::visit(Apply{value}, change.what);
}

Stored<bool> ValuePreferences::boolean(const QString& key) const {
    return typed<bool>(value(key));
}

Stored<double> ValuePreferences::number(const QString& key) const {
    return typed<double>(value(key));
}

Stored<QString> ValuePreferences::string(const QString& key) const {
    return typed<QString>(value(key));
}

Stored<std::vector<double>> ValuePreferences::numbers(const QString& key) const {
    return typed<std::vector<double>>(value(key));
}

Stored<QStringList> ValuePreferences::strings(const QString& key) const {
    return typed<QStringList>(value(key));
}

Stored<std::vector<QByteArray>> ValuePreferences::blobs(const QString& key) const {
    return typed<std::vector<QByteArray>>(value(key));
}

Stored<QByteArray> ValuePreferences::blob(const QString& key) const {
    return typed<QByteArray>(value(key));
}

Stored<IntegerMap> ValuePreferences::integerMap(const QString& key) const {
    return typed<IntegerMap>(value(key));
}

Stored<NumbersMap> ValuePreferences::numbersMap(const QString& key) const {
    return typed<NumbersMap>(value(key));
}

void ValuePreferences::setBoolean(const QString& key, bool value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::setNumber(const QString& key, double value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::setString(const QString& key, const QString& value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::setNumbers(const QString& key, const std::vector<double>& value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::setStrings(const QString& key, const QStringList& value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::setBlobs(const QString& key, const std::vector<QByteArray>& value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::setBlob(const QString& key, const QByteArray& value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::setIntegerMap(const QString& key, const IntegerMap& value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::setNumbersMap(const QString& key, const NumbersMap& value) {
    change({key, PreferenceChange::Set{value}});
}

void ValuePreferences::remove(const QString& key) {
    change({key, PreferenceChange::Remove{}});
}

void ValuePreferences::insertString(const QString& key, const QString& value) {
    change({key, PreferenceChange::InsertStrings{{value}}});
}

void ValuePreferences::insertStrings(const QString& key, const QStringList& values) {
    change({key, PreferenceChange::InsertStrings{values}});
}

void ValuePreferences::removeString(const QString& key, const QString& value) {
    change({key, PreferenceChange::RemoveEntries{{value}}});
}

void ValuePreferences::insertInteger(const QString& key, const QString& entry, qint64 value) {
    change({key, PreferenceChange::InsertInteger{entry, value}});
}

void ValuePreferences::insertNumbers(const QString& key, const QString& entry,
                                     const std::vector<double>& value) {
    change({key, PreferenceChange::InsertNumbers{entry, value}});
}

void ValuePreferences::removeEntries(const QStringList& keys, const QSet<QString>& entries) {
    for (const QString& key : keys)
        change({key, PreferenceChange::RemoveEntries{entries}});
}

std::function<std::optional<PreferenceValue>()>
ValuePreferences::valueLater(const QString& /*key*/) const {
    return {};
}

Later<QStringList> ValuePreferences::stringsLater(const QString& key) const {
    return typedLater<QStringList>(key);
}

Later<IntegerMap> ValuePreferences::integerMapLater(const QString& key) const {
    return typedLater<IntegerMap>(key);
}

Later<NumbersMap> ValuePreferences::numbersMapLater(const QString& key) const {
    return typedLater<NumbersMap>(key);
}

} // namespace halvane
