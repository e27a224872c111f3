// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preference_value.h"

#include <functional>

namespace halvane {

/// Waits until a stored value has been read, and gives it.
template<typename T>
using Later = std::function<std::optional<T>()>;

/// The user's preferences: a flat map from key to a typed value. A getter gives none where nothing
/// is stored or the stored value is of another kind. A setter returns when the change is durable.
/// Failures are logged and never shown, since the program goes on with what it has in memory. Main
/// thread.
class Preferences {
  public:
    virtual ~Preferences() = default;

    std::optional<bool> boolean(const QString& key) { return typed<bool>(value(key)); }
    std::optional<double> number(const QString& key) { return typed<double>(value(key)); }
    std::optional<QString> string(const QString& key) { return typed<QString>(value(key)); }
    std::optional<std::vector<double>> numbers(const QString& key) {
        return typed<std::vector<double>>(value(key));
    }
    std::optional<QStringList> strings(const QString& key) {
        return typed<QStringList>(value(key));
    }
    std::optional<std::vector<QByteArray>> blobs(const QString& key) {
        return typed<std::vector<QByteArray>>(value(key));
    }
    std::optional<QByteArray> blob(const QString& key) { return typed<QByteArray>(value(key)); }
    std::optional<IntegerMap> integerMap(const QString& key) {
        return typed<IntegerMap>(value(key));
    }
    std::optional<NumbersMap> numbersMap(const QString& key) {
        return typed<NumbersMap>(value(key));
    }

    void setBoolean(const QString& key, bool value) { set(key, value); }
    void setNumber(const QString& key, double value) { set(key, value); }
    void setString(const QString& key, const QString& value) { set(key, value); }
    void setNumbers(const QString& key, const std::vector<double>& value) { set(key, value); }
    /// Writes the whole list, so it is meant for short ones.
    void setStrings(const QString& key, const QStringList& value) { set(key, value); }
    void setBlobs(const QString& key, const std::vector<QByteArray>& value) { set(key, value); }
    void setBlob(const QString& key, const QByteArray& value) { set(key, value); }
    void remove(const QString& key) { change({key, PreferenceChange::Remove{}}); }

    // The cost of these changes does not grow with the collection. Where a key is absent, or its
    // value of another kind, a collection of just what is inserted comes about.
    void insertString(const QString& key, const QString& value) { insertStrings(key, {value}); }
    /// Appends the values that are not there yet, in one change.
    void insertStrings(const QString& key, const QStringList& values) {
        change({key, PreferenceChange::InsertStrings{values}});
    }
    void removeString(const QString& key, const QString& value) {
        change({key, PreferenceChange::RemoveEntries{{value}}});
    }
    void insertInteger(const QString& key, const QString& entry, qint64 value) {
        change({key, PreferenceChange::InsertInteger{entry, value}});
    }
    void insertNumbers(const QString& key, const QString& entry, const std::vector<double>& value) {
        change({key, PreferenceChange::InsertNumbers{entry, value}});
    }
    /// Takes the entries out of string lists and maps of either kind, in one change.
    virtual void removeEntries(const QStringList& keys, const QStringList& entries) {
        for (const QString& key : keys)
            change({key, PreferenceChange::RemoveEntries{entries}});
    }

    // Values that may be long, so that nobody waits for them here. The function gives the value as
    // it is stored now, and may be called once, on any thread. The getter has to be asked where the
    // function is null, because the value is not read ahead, or gives none, because that failed.
    Later<QStringList> stringsLater(const QString& key) { return later<QStringList>(key); }
    Later<IntegerMap> integerMapLater(const QString& key) { return later<IntegerMap>(key); }
    Later<NumbersMap> numbersMapLater(const QString& key) { return later<NumbersMap>(key); }

  protected:
    /// The value under a key; none when there is none.
    virtual std::optional<PreferenceValue> value(const QString& key) = 0;
    /// See stringsLater. Null here.
    virtual Later<PreferenceValue> valueLater(const QString& /*key*/) { return {}; }
    virtual void change(PreferenceChange change) = 0;

  private:
    template<typename T>
    static std::optional<T> typed(std::optional<PreferenceValue> value) {
        T* found = value ? std::get_if<T>(&*value) : nullptr;
        return found ? std::optional(std::move(*found)) : std::nullopt;
    }
    template<typename T>
    Later<T> later(const QString& key) {
        auto read = valueLater(key);
        return read ? Later<T>([read = std::move(read)] { return typed<T>(read()); }) : Later<T>();
    }
    void set(const QString& key, PreferenceValue value) {
        change({key, PreferenceChange::Set{std::move(value)}});
    }
};

} // namespace halvane
