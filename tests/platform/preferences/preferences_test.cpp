// SPDX-License-Identifier: MIT
#include "numbered_change.h"
#include "platform/preferences/number_list_text.h"
#include "platform/preferences/preferences_backup.h"
#include "platform/preferences/preferences_database.h"
#include "platform/preferences/sqlite_connection.h"
#include "platform/preferences/sqlite_preferences.h"
#include "support/manual_clock.h"
#include "support/memory_preferences.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cmath>
#include <limits>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

struct PreferencesTest : testing::Test {
    QTemporaryDir folder;
    QString path = folder.filePath(u"made/on demand/preferences.sqlite"_s);
    ManualClock clock;
};

TEST_F(PreferencesTest, EveryKindReadsBackAsItWasWritten) {
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> numbers{0.1, -0.0, 1e-320, 5e300, infinity, 1.0 / 3};
    const QStringList strings{u"b"_s, u"a"_s, u""_s, u"b"_s, u"音楽 𝄞"_s};
    const std::vector<QByteArray> blobs{QByteArray("\0\xff", 2), QByteArray()};
    const IntegerMap integers{{u""_s, 0}, {u"x"_s, std::numeric_limits<qint64>::min()}};
    const NumbersMap lists{{u"none"_s, {}}, {u"some"_s, numbers}};
    {
        SqlitePreferences preferences(path, clock);
        preferences.setBoolean(u"boolean"_s, true);
        preferences.setNumber(u"number"_s, 0.1);
        preferences.setNumber(u"whole"_s, 3);
        preferences.setNumber(u"nan"_s, std::nan(""));
        preferences.setString(u"string"_s, {});
        preferences.setNumbers(u"numbers"_s, numbers);
        preferences.setStrings(u"strings"_s, strings);
        preferences.setBlobs(u"blobs"_s, blobs);
        preferences.setBlob(u"blob"_s, {});
        for (auto entry = integers.cbegin(); entry != integers.cend(); ++entry)
            preferences.insertInteger(u"integers"_s, entry.key(), *entry);
        for (auto entry = lists.cbegin(); entry != lists.cend(); ++entry)
            preferences.insertNumbers(u"lists"_s, entry.key(), *entry);
    }
    SqlitePreferences preferences(path, clock);
    EXPECT_EQ(*preferences.boolean(u"boolean"_s), true);
    EXPECT_EQ(*preferences.number(u"number"_s), 0.1);
    EXPECT_EQ(*preferences.number(u"whole"_s), 3);
    EXPECT_TRUE(std::isnan(*preferences.number(u"nan"_s)));
    EXPECT_EQ(*preferences.string(u"string"_s), QString());
    EXPECT_EQ(*preferences.numbers(u"numbers"_s), numbers);
    EXPECT_EQ(*preferences.strings(u"strings"_s), strings);
    EXPECT_EQ(*preferences.blobs(u"blobs"_s), blobs);
    EXPECT_EQ(*preferences.blob(u"blob"_s), QByteArray());
    EXPECT_EQ(*preferences.integerMap(u"integers"_s), integers);
    EXPECT_EQ(*preferences.numbersMap(u"lists"_s), lists);

    EXPECT_FALSE(preferences.number(u"nothing"_s));
    EXPECT_FALSE(preferences.number(u"boolean"_s));
    EXPECT_FALSE(preferences.strings(u"blobs"_s));
    EXPECT_FALSE(preferences.integerMap(u"lists"_s));
}

// The store on disk and the plain one in memory do the same, whatever is done to them.
TEST_F(PreferencesTest, AnySequenceOfChangesGivesWhatItGivesInMemory) {
    MemoryPreferences expected;
    auto preferences = std::make_unique<SqlitePreferences>(path, clock);
    for (quint64 number = 0; number < 700; ++number) {
        makeNumberedChange(expected, number);
        makeNumberedChange(*preferences, number);
        ASSERT_EQ(numberedContents(*preferences).toStdString(),
                  numberedContents(expected).toStdString())
            << number;
        if (number % 200 == 199)
            preferences = std::make_unique<SqlitePreferences>(path, clock);
    }
}

TEST_F(PreferencesTest, ChangesMadeTogetherAreStoredInOnePiece) {
    SqlitePreferences preferences(path, clock);
    preferences.setStrings(u"paths"_s, {u"/a"_s, u"/b"_s});
    const auto stored = [this](const QString& key) {
        return PreferencesDatabase(path, 0).value(key).has_value();
    };
    {
        const Preferences::Together outer(preferences);
        preferences.insertInteger(u"counts"_s, u"/a"_s, 1);
        {
            const Preferences::Together inner(preferences);
            preferences.insertInteger(u"counts"_s, u"/b"_s, 2);
            preferences.removeEntries({u"paths"_s}, {u"/a"_s});
        }
        preferences.setNumber(u"volume"_s, 0.5);
        EXPECT_EQ(*preferences.integerMap(u"counts"_s), (IntegerMap{{u"/a"_s, 1}, {u"/b"_s, 2}}));
        EXPECT_EQ(*preferences.strings(u"paths"_s), QStringList{u"/b"_s});
        EXPECT_FALSE(stored(u"counts"_s));
        EXPECT_FALSE(stored(u"volume"_s));
    }
    EXPECT_TRUE(stored(u"counts"_s));
    EXPECT_TRUE(stored(u"volume"_s));
    EXPECT_EQ(*preferences.strings(u"paths"_s), QStringList{u"/b"_s});
}

TEST_F(PreferencesTest, AChangeThatChangesNothingIsNotWritten) {
    SqlitePreferences preferences(path, clock);
    const auto setAll = [&] {
        preferences.setNumber(u"volume"_s, 0.72);
        preferences.setStrings(u"paths"_s, {u"/a"_s, u"/b"_s});
        preferences.setNumbers(u"gains"_s, {1, 2});
        preferences.insertInteger(u"counts"_s, u"/a"_s, 1);
        preferences.insertString(u"paths"_s, u"/a"_s);
        preferences.remove(u"absent"_s);
        preferences.removeEntries({u"counts"_s}, {u"/z"_s});
    };
    setAll();
    const qint64 logged = QFileInfo(path + u"-wal"_s).size();
    setAll();
    EXPECT_EQ(QFileInfo(path + u"-wal"_s).size(), logged);
}

// Version 1.0 noted removals as JSON, and beside them what had come back meanwhile.
TEST_F(PreferencesTest, ARemovalThatAnEarlierVersionLeftIsFinished) {
    {
        SqlitePreferences preferences(path, clock);
        preferences.setStrings(u"paths"_s, {u"/a"_s, u"/b"_s, u"/\"ü\"\\"_s, u"/d"_s});
        for (const auto& key : {u"counts"_s, u"ratings"_s})
            for (const auto& entry : {u"/a"_s, u"/b"_s, u"/d"_s})
                preferences.insertInteger(key, entry, 1);
    }
    QProcess::execute(u"sqlite3"_s, {path, uR"sql(
        CREATE TABLE removal (id INTEGER PRIMARY KEY, keys TEXT NOT NULL, entries TEXT NOT NULL);
        CREATE TABLE spared (removal INTEGER NOT NULL, key TEXT NOT NULL, entry TEXT);
        INSERT INTO removal VALUES
            (7, '["counts","paths","ratings"]', '["/a","/b","/\u0022ü\u0022\u005c"]');
        INSERT INTO spared VALUES (7, 'counts', '/a'), (7, 'ratings', NULL))sql"_s});
    SqlitePreferences preferences(path, clock);
    EXPECT_EQ(*preferences.strings(u"paths"_s), QStringList{u"/d"_s});
    preferences.waitForWorker();
    EXPECT_EQ(*preferences.strings(u"paths"_s), QStringList{u"/d"_s});
    EXPECT_EQ(*preferences.integerMap(u"counts"_s), (IntegerMap{{u"/a"_s, 1}, {u"/d"_s, 1}}));
    EXPECT_EQ(preferences.integerMap(u"ratings"_s)->size(), 3);
    EXPECT_EQ(
        SqliteConnection(path, SQLITE_OPEN_READONLY, 0).single("SELECT count(*) FROM removal_note"),
        0);
}

TEST_F(PreferencesTest, ValuesEditedByHandIntoAnotherKindAreNotTaken) {
    {
        SqlitePreferences preferences(path, clock);
        preferences.setNumber(u"volume"_s, 1);
        preferences.setNumber(u"preamp"_s, 1);
        preferences.insertNumbers(u"presets"_s, u"warm"_s, {1});
    }
    QProcess::execute(u"sqlite3"_s,
                      {path, u"UPDATE preference SET value = 'loud' WHERE key = 'volume';"
                             "UPDATE preference SET value = -3 WHERE key = 'preamp';"
                             "UPDATE numbers_entry SET value = '[1,\"x\"]'"_s});
    SqlitePreferences preferences(path, clock);
    EXPECT_FALSE(preferences.number(u"volume"_s));
    EXPECT_EQ(*preferences.number(u"preamp"_s), -3);
    EXPECT_FALSE(preferences.numbersMap(u"presets"_s));
}

TEST_F(PreferencesTest, ADailyCopyIsKeptForThreeDays) {
    SqlitePreferences preferences(path, clock);
    for (int day = 1; day <= 5; ++day) {
        preferences.setNumber(u"day"_s, day);
        clock.advance(std::chrono::hours(24));
        preferences.waitForWorker();
    }
    const QStringList copies = PreferencesBackup::copies(path);
    ASSERT_EQ(copies.size(), 3);
    ManualClock still;
    EXPECT_EQ(*SqlitePreferences(copies[0], still).number(u"day"_s), 5);
    EXPECT_EQ(*SqlitePreferences(copies[2], still).number(u"day"_s), 3);
}

TEST(NumberListTextTest, TextsThatAreNoListsAreRefused) {
    for (const char* text : {"", "[", "[1", "[1,]", "[,1]", "1", "[1 2]", "[1]x", "[\"1\"]", "[+]",
                             "[true]", "{}", "[[1]]"})
        EXPECT_FALSE(numberListFromText(text)) << text;
    EXPECT_EQ(numberListFromText(" [ 1 , -2.5e1 ] "), std::vector({1.0, -25.0}));
    EXPECT_EQ(numberListFromText("[]"), std::vector<double>());
}

} // namespace
} // namespace halvane::test
