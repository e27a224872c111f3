// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"

namespace halvane {

/// A stored value, one alternative a kind; OtherKind is one that no getter reads, and never
/// written.
using PreferenceValue =
    std::variant<OtherKind, bool, double, QString, std::vector<double>, QStringList,
                 std::vector<QByteArray>, QByteArray, IntegerMap, NumbersMap>;

/// One change of one key, as a value that can be kept and applied later. Applying a change twice
/// gives what applying it once gives.
struct PreferenceChange {
    struct Set {
        PreferenceValue value;
    };
    struct Remove {};
    struct InsertStrings {
        QStringList values;
    };
    struct InsertInteger {
        QString entry;
        qint64 value;
    };
    struct InsertNumbers {
        QString entry;
        std::vector<double> value;
    };
    struct RemoveEntries {
        QSet<QString> entries;
    };
    using What =
        std::variant<Set, Remove, InsertStrings, InsertInteger, InsertNumbers, RemoveEntries>;

    QString key;
    What what;
};

/// What a key's value becomes by a change; none stands for an absent key.
void applyChange(const PreferenceChange& change, std::optional<PreferenceValue>& value);

/// Preferences whose typed getters and setters come down to reading one value and making one
/// change.
class ValuePreferences : public Preferences {
  public:
    Stored<bool> boolean(const QString& key) const final;
    Stored<double> number(const QString& key) const final;
    Stored<QString> string(const QString& key) const final;
    Stored<std::vector<double>> numbers(const QString& key) const final;
    Stored<QStringList> strings(const QString& key) const final;
    Stored<std::vector<QByteArray>> blobs(const QString& key) const final;
    Stored<QByteArray> blob(const QString& key) const final;
    Stored<IntegerMap> integerMap(const QString& key) const final;
    Stored<NumbersMap> numbersMap(const QString& key) const final;

    void setBoolean(const QString& key, bool value) final;
    void setNumber(const QString& key, double value) final;
    void setString(const QString& key, const QString& value) final;
    void setNumbers(const QString& key, const std::vector<double>& value) final;
    void setStrings(const QString& key, const QStringList& value) final;
    void setBlobs(const QString& key, const std::vector<QByteArray>& value) final;
    void setBlob(const QString& key, const QByteArray& value) final;
    void setIntegerMap(const QString& key, const IntegerMap& value) final;
    void setNumbersMap(const QString& key, const NumbersMap& value) final;
    void remove(const QString& key) final;

    void insertString(const QString& key, const QString& value) final;
    void insertStrings(const QString& key, const QStringList& values) final;
    void removeString(const QString& key, const QString& value) final;
    void insertInteger(const QString& key, const QString& entry, qint64 value) final;
    void insertNumbers(const QString& key, const QString& entry,
                       const std::vector<double>& value) final;
    void removeEntries(const QStringList& keys, const QSet<QString>& entries) override;

    Later<QStringList> stringsLater(const QString& key) const final;
    Later<IntegerMap> integerMapLater(const QString& key) const final;
    Later<NumbersMap> numbersMapLater(const QString& key) const final;

  protected:
    /// The value under a key; none when there is none.
    virtual std::optional<PreferenceValue> value(const QString& key) const = 0;
    /// The same when it comes, on any thread; a null function for a value that is quickly read.
    virtual std::function<std::optional<PreferenceValue>()> valueLater(const QString& key) const;
    virtual void change(PreferenceChange change) = 0;

  private:
    template<typename T>
    Later<T> typedLater(const QString& key) const;
};

} // namespace halvane
