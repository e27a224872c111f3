// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <variant>
#include <vector>

namespace halvane {

using IntegerMap = QHash<QString, qint64>;
using NumbersMap = QHash<QString, std::vector<double>>;

/// What is stored under a key is of another kind than asked for.
struct OtherKind {};
/// Nothing is stored under a key.
struct Absent {};

/// What a typed getter finds: the value, nothing, or a value of another kind.
template<typename T>
class Stored {
  public:
    Stored(Absent) {}
    Stored(OtherKind)
        : m_other(true) {}
    Stored(T value)
        : m_value(std::move(value)) {}

    bool isAbsent() const { return !m_value && !m_other; }
    bool isOtherKind() const { return m_other; }
    explicit operator bool() const { return m_value.has_value(); }
    const T& operator*() const { return *m_value; }
    const T* operator->() const { return &*m_value; }
    T valueOr(T fallback) const { return m_value ? *m_value : std::move(fallback); }

  private:
    std::optional<T> m_value;
    bool m_other = false;
};

/// A stored value that may still be being read; waits for it.
template<typename T>
using Later = std::function<std::optional<Stored<T>>()>;

/// The user's preferences: a flat map from key to a typed value. A setter returns when the change
/// is durable. Main thread. Failures are logged, never shown: the program goes on with what it has
/// in memory.
class Preferences {
  public:
    virtual ~Preferences() = default;

    virtual Stored<bool> boolean(const QString& key) const = 0;
    virtual Stored<double> number(const QString& key) const = 0;
    virtual Stored<QString> string(const QString& key) const = 0;
    virtual Stored<std::vector<double>> numbers(const QString& key) const = 0;
    virtual Stored<QStringList> strings(const QString& key) const = 0;
    virtual Stored<std::vector<QByteArray>> blobs(const QString& key) const = 0;
    virtual Stored<QByteArray> blob(const QString& key) const = 0;
    virtual Stored<IntegerMap> integerMap(const QString& key) const = 0;
    virtual Stored<NumbersMap> numbersMap(const QString& key) const = 0;

    virtual void setBoolean(const QString& key, bool value) = 0;
    virtual void setNumber(const QString& key, double value) = 0;
    virtual void setString(const QString& key, const QString& value) = 0;
    virtual void setNumbers(const QString& key, const std::vector<double>& value) = 0;
    virtual void setStrings(const QString& key, const QStringList& value) = 0;
    virtual void setBlobs(const QString& key, const std::vector<QByteArray>& value) = 0;
    virtual void setBlob(const QString& key, const QByteArray& value) = 0;
    virtual void setIntegerMap(const QString& key, const IntegerMap& value) = 0;
    virtual void setNumbersMap(const QString& key, const NumbersMap& value) = 0;
    virtual void remove(const QString& key) = 0;

    // Changes of one entry, whose cost does not grow with the collection. A key that is absent or
    // of another kind becomes a collection that holds just what is inserted.
    virtual void insertString(const QString& key, const QString& value) = 0;
    /// Appends the values that are not there yet, in one change.
    virtual void insertStrings(const QString& key, const QStringList& values) = 0;
    virtual void removeString(const QString& key, const QString& value) = 0;
    virtual void insertInteger(const QString& key, const QString& entry, qint64 value) = 0;
    virtual void insertNumbers(const QString& key, const QString& entry,
                               const std::vector<double>& value) = 0;
    /// Takes the entries out of string lists and maps of either kind, in one change.
    virtual void removeEntries(const QStringList& keys, const QSet<QString>& entries) = 0;

    // Values that may be long, without waiting for them here: what comes back gives the value as it
    // is stored now, once, on whatever thread it is called. None when that failed: then ask again.
    virtual Later<QStringList> stringsLater(const QString& key) const = 0;
    virtual Later<IntegerMap> integerMapLater(const QString& key) const = 0;
    virtual Later<NumbersMap> numbersMapLater(const QString& key) const = 0;
};

} // namespace halvane
