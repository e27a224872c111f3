// SPDX-License-Identifier: MIT
#include "numbered_change.h"

#include <algorithm>
#include <limits>

namespace halvane::test {

using namespace Qt::StringLiterals;

namespace {

// A number that looks random and follows from the seed (the finaliser of SplitMix64).
quint64 scrambled(quint64 seed) {
    quint64 z = seed + 0x9e3779b97f4a7c15;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return z ^ (z >> 31);
}

struct Dice {
    quint64 state;
    int roll(int sides) {
        state = scrambled(state);
        return static_cast<int>(state % static_cast<quint64>(sides));
    }
    QString name() { return u"/music/\u97f3 %1.flac"_s.arg(QString::number(roll(60))); }
    double number() { return (roll(2001) - 1000) / 7.0; }
    std::vector<double> numbers(int most) {
        std::vector<double> list(static_cast<std::size_t>(roll(most + 1)));
        std::generate(list.begin(), list.end(), [this] { return number(); });
        return list;
    }
};

const QStringList keys{u"a"_s, u"b"_s, u"strings"_s, u"integers"_s, u"lists"_s};

// A list like the last one, with some texts more, fewer or elsewhere.
QStringList edited(QStringList list, Dice& dice) {
    for (int i = dice.roll(4); i > 0 && !list.isEmpty(); --i)
        list.removeAt(dice.roll(static_cast<int>(list.size())));
    for (int i = dice.roll(6); i > 0; --i)
        list.insert(dice.roll(static_cast<int>(list.size()) + 1), dice.name());
    if (list.size() > 1 && dice.roll(4) == 0)
        list.move(dice.roll(static_cast<int>(list.size())), 0);
    return list;
}

// So many that a worker takes them out of the file.
QStringList manyWith(const QString& name) {
    QStringList entries{name};
    for (int i = 0; i < 300; ++i)
        entries.append(u"/music/nowhere/%1.flac"_s.arg(i));
    return entries;
}

} // namespace

void makeNumberedChange(Preferences& preferences, quint64 number) {
    Dice dice{number};
    const QString& key = keys[dice.roll(2)];
    switch (dice.roll(16)) {
    case 0:
        return preferences.setBoolean(key, dice.roll(2) == 0);
    case 1:
        return preferences.setNumber(key, dice.number());
    case 2:
        return preferences.setString(key, dice.name());
    case 3:
        return preferences.setNumbers(key, dice.numbers(10));
    case 4:
        return preferences.setBlob(key, dice.name().toUtf8());
    case 5:
        return preferences.setBlobs(key, {dice.name().toUtf8(), QByteArray("\0x", 2), {}});
    case 6:
        return preferences.setStrings(
            u"strings"_s, edited(preferences.strings(u"strings"_s).value_or(QStringList()), dice));
    case 7:
        return preferences.insertInteger(u"integers"_s, dice.name(), dice.roll(9));
    case 8:
        return preferences.insertNumbers(u"lists"_s, dice.name(), dice.numbers(3));
    case 9:
        return preferences.remove(keys[dice.roll(20) == 0 ? 4 : dice.roll(2)]);
    case 10:
        return preferences.removeEntries({keys[dice.roll(5)]},
                                         {dice.name(), dice.name(), dice.name()});
    case 14:
        return preferences.removeEntries({keys[2], keys[3], keys[4]}, manyWith(dice.name()));
    case 11:
        return preferences.removeString(u"strings"_s, dice.name());
    case 12:
        return preferences.insertNumbers(u"lists"_s, dice.name(), dice.numbers(11));
    case 13:
        return preferences.insertStrings(keys[dice.roll(8) == 0 ? 0 : 2],
                                         {dice.name(), dice.name()});
    default:
        return preferences.insertInteger(keys[dice.roll(9) == 0 ? 1 : 3], dice.name(),
                                         std::numeric_limits<qint64>::max() - dice.roll(9));
    }
}

QString numberedContents(Preferences& preferences) {
    QStringList lines;
    const auto list = [](const std::vector<double>& numbers) {
        QStringList texts;
        for (const double number : numbers)
            texts.append(QString::number(number, 'g', 17));
        return u'[' + texts.join(u',') + u']';
    };
    for (const auto& key : keys) {
        if (const auto v = preferences.boolean(key))
            lines.append(key + (*v ? u" true"_s : u" false"_s));
        else if (const auto number = preferences.number(key))
            lines.append(key + u' ' + QString::number(*number, 'g', 17));
        else if (const auto text = preferences.string(key))
            lines.append(key + u" \""_s + *text);
        else if (const auto numbers = preferences.numbers(key))
            lines.append(key + list(*numbers));
        else if (const auto blob = preferences.blob(key))
            lines.append(key + u" x"_s + QString::fromLatin1(blob->toHex()));
        else if (const auto strings = preferences.strings(key))
            lines.append(key + u" ("_s + strings->join(u'|'));
        if (const auto blobs = preferences.blobs(key))
            for (const auto& one : *blobs)
                lines.append(key + u" x"_s + QString::fromLatin1(one.toHex()));
        QStringList entries;
        if (const auto integers = preferences.integerMap(key))
            for (auto entry = integers->cbegin(); entry != integers->cend(); ++entry)
                entries.append(entry.key() + u'=' + QString::number(*entry));
        if (const auto maps = preferences.numbersMap(key))
            for (auto entry = maps->cbegin(); entry != maps->cend(); ++entry)
                entries.append(entry.key() + u'=' + list(*entry));
        entries.sort();
        lines.append(key + u" {"_s + entries.join(u"; ") + u'}');
    }
    return lines.join(u'\n');
}

} // namespace halvane::test
