// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preference_value.h"

#include <functional>
#include <utility>

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

    /// Changes that are made while one lives are stored when it ends, in one piece: all of them or
    /// none. Getters know them at once. One that is made within another ends with the outer one.
    class Together {
      public:
        explicit Together(Preferences& preferences)
            : m_preferences(preferences) {
            ++m_preferences.m_gathering;
        }
        ~Together() {
            if (--m_preferences.m_gathering == 0 && !m_preferences.m_gathered.empty())
                m_preferences.changeTogether(std::exchange(m_preferences.m_gathered, {}));
        }
        Together(const Together&) = delete;
        Together& operator=(const Together&) = delete;

      private:
        Preferences& m_preferences;
    };

    std::optional<bool> boolean(const QString& key) { return typed<bool>(now(key)); }
    std::optional<double> number(const QString& key) { return typed<double>(now(key)); }
    std::optional<QString> string(const QString& key) { return typed<QString>(now(key)); }
    std::optional<std::vector<double>> numbers(const QString& key) {
        return typed<std::vector<double>>(now(key));
    }
    std::optional<QStringList> strings(const QString& key) { return typed<QStringList>(now(key)); }
    std::optional<std::vector<QByteArray>> blobs(const QString& key) {
        return typed<std::vector<QByteArray>>(now(key));
    }
    std::optional<QByteArray> blob(const QString& key) { return typed<QByteArray>(now(key)); }
    std::optional<IntegerMap> integerMap(const QString& key) { return typed<IntegerMap>(now(key)); }
    std::optional<NumbersMap> numbersMap(const QString& key) { return typed<NumbersMap>(now(key)); }

    void setBoolean(const QString& key, bool value) { set(key, value); }
    void setNumber(const QString& key, double value) { set(key, value); }
    void setString(const QString& key, const QString& value) { set(key, value); }
    void setNumbers(const QString& key, const std::vector<double>& value) { set(key, value); }
    /// Writes the whole list, so it is meant for short ones.
    void setStrings(const QString& key, const QStringList& value) { set(key, value); }
    void setBlobs(const QString& key, const std::vector<QByteArray>& value) { set(key, value); }
    void setBlob(const QString& key, const QByteArray& value) { set(key, value); }
    void remove(const QString& key) { submit({key, PreferenceChange::Remove{}}); }

    // The cost of these changes does not grow with the collection. Where a key is absent, or its
    // value of another kind, a collection of just what is inserted comes about.
    void insertString(const QString& key, const QString& value) { insertStrings(key, {value}); }
    /// Appends the values that are not there yet, in one change.
    void insertStrings(const QString& key, const QStringList& values) {
        submit({key, PreferenceChange::InsertStrings{values}});
    }
    void removeString(const QString& key, const QString& value) {
        submit({key, PreferenceChange::RemoveEntries{{value}}});
    }
    void insertInteger(const QString& key, const QString& entry, qint64 value) {
        submit({key, PreferenceChange::InsertInteger{entry, value}});
    }
    void insertNumbers(const QString& key, const QString& entry, const std::vector<double>& value) {
        submit({key, PreferenceChange::InsertNumbers{entry, value}});
    }
    /// Takes the entries out of string lists and maps of either kind, in one change.
    void removeEntries(const QStringList& keys, const QStringList& entries) {
        if (m_gathering == 0)
            return removeAtOnce(keys, entries);
        for (const QString& key : keys)
            submit({key, PreferenceChange::RemoveEntries{entries}});
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
    /// Stores all changes or none.
    virtual void changeTogether(std::vector<PreferenceChange> changes) {
        for (PreferenceChange& next : changes)
            change(std::move(next));
    }
    /// See removeEntries.
    virtual void removeAtOnce(const QStringList& keys, const QStringList& entries) {
        for (const QString& key : keys)
            change({key, PreferenceChange::RemoveEntries{entries}});
    }

  private:
    std::optional<PreferenceValue> now(const QString& key) {
        std::optional<PreferenceValue> found = value(key);
        for (const PreferenceChange& gathered : m_gathered)
            if (gathered.key == key)
                applyChange(gathered, found);
        return found;
    }
    void submit(PreferenceChange next) {
        if (m_gathering > 0)
            m_gathered.push_back(std::move(next));
        else
            change(std::move(next));
    }
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
        submit({key, PreferenceChange::Set{std::move(value)}});
    }

    int m_gathering = 0;                      ///< how many live
    std::vector<PreferenceChange> m_gathered; ///< not handed on yet
};

} // namespace halvane
