// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>
#include <vector>

namespace halvane {

using IntegerMap = QHash<QString, qint64>;
using NumbersMap = QHash<QString, std::vector<double>>;

/// A stored value, one alternative for each kind. std::monostate stands for a value that no getter
/// can read, and is never written.
using PreferenceValue =
    std::variant<std::monostate, bool, double, QString, std::vector<double>, QStringList,
                 std::vector<QByteArray>, QByteArray, IntegerMap, NumbersMap>;

/// One change of one key, as a value that can be kept and applied later. Applying it twice gives
/// the same as applying it once.
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
        QStringList entries;
    };
    using What =
        std::variant<Set, Remove, InsertStrings, InsertInteger, InsertNumbers, RemoveEntries>;

    QString key;
    What what;
};

/// Applies a change to the value of its key; none stands for an absent key.
void applyChange(const PreferenceChange& change, std::optional<PreferenceValue>& value);

/// Whether the change replaces all that is stored under its key.
bool replacesAll(const PreferenceChange& change);

/// The entries that a change inserts into a list or map.
QStringList entriesPutIn(const PreferenceChange& change);

} // namespace halvane
