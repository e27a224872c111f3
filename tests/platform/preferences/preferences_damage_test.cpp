// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_database.h"
#include "platform/preferences/sqlite_preferences.h"
#include "support/manual_clock.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <array>
#include <functional>
#include <random>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int tracks = 3000;

QString trackPath(int i) {
    return u"/music/some artist/some album/%1.flac"_s.arg(i, 5, 10, QChar(u'0'));
}

void fill(const QString& path) {
    IntegerMap counts;
    QStringList loved;
    for (int i = 0; i < tracks; ++i) {
        counts.insert(trackPath(i), i);
        loved.append(trackPath(i));
    }
    const std::array changes{
        PreferenceChange{u"volume"_s, PreferenceChange::Set{0.5}},
        PreferenceChange{u"counts"_s, PreferenceChange::Set{counts}},
        PreferenceChange{u"loved"_s, PreferenceChange::Set{loved}},
    };
    PreferencesDatabase(path, 0).apply(changes);
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void overwrite(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray randomBytes(qsizetype size) {
    std::mt19937 random(3);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

void execute(const QString& path, const char* sql) {
    SqliteConnection(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, 0).execute(sql);
}

struct Damage {
    const char* name;
    std::function<void(const QString& path)> inflict;
    int leastCounts; // entries that must be saved without a backup
};

class PreferencesDamageTest : public testing::TestWithParam<Damage> {
  protected:
    [[nodiscard]] QStringList setAside() const {
        return QDir(folder.path()).entryList({u"preferences.set-aside-*.sqlite"_s});
    }
    QTemporaryDir folder;
    QString path = folder.filePath(u"preferences.sqlite"_s);
    ManualClock clock;
};

TEST_P(PreferencesDamageTest, WhatCanBeReadIsKeptAndTheFileIsSetAside) {
    fill(path);
    GetParam().inflict(path);
    const QByteArray damaged = contents(path);
    {
        SqlitePreferences preferences(path, clock);
        const auto counts = preferences.integerMap(u"counts"_s).value_or(IntegerMap());
        EXPECT_GE(counts.size(), GetParam().leastCounts);
        for (auto entry = counts.cbegin(); entry != counts.cend(); ++entry)
            ASSERT_EQ(entry.key(), trackPath(static_cast<int>(*entry)));
        EXPECT_GE(preferences.strings(u"loved"_s).value_or(QStringList()).size(),
                  GetParam().leastCounts);
        preferences.setNumber(u"volume"_s, 0.25);
        preferences.insertInteger(u"counts"_s, u"/new"_s, 1);
        EXPECT_TRUE(preferences.isStored());
    }
    ASSERT_EQ(setAside().size(), 1);
    EXPECT_EQ(contents(folder.filePath(setAside().first())), damaged);

    SqlitePreferences again(path, clock);
    EXPECT_EQ(*again.number(u"volume"_s), 0.25);
    EXPECT_EQ(again.integerMap(u"counts"_s)->value(u"/new"_s), 1);
    EXPECT_EQ(setAside().size(), 1);
}

TEST_P(PreferencesDamageTest, ABackupGivesWhatTheFileHasLost) {
    fill(path);
    {
        SqlitePreferences preferences(path, clock);
        clock.advance(std::chrono::minutes(2));
        preferences.waitForWorker();
    }
    GetParam().inflict(path);
    SqlitePreferences preferences(path, clock);
    const auto counts = preferences.integerMap(u"counts"_s);
    ASSERT_TRUE(counts);
    EXPECT_EQ(counts->size(), tracks);
    EXPECT_EQ(preferences.strings(u"loved"_s).value_or(QStringList()).size(), tracks);
    EXPECT_EQ(preferences.number(u"volume"_s).value_or(0), 0.5);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PreferencesDamageTest,
    testing::Values(
        Damage{"RandomFile", [](const QString& path) { overwrite(path, randomBytes(20'000)); }, 0},
        Damage{"NoDatabase", [](const QString& path) { overwrite(path, "volume = 0.5\n"); }, 0},
        Damage{"CutInHalf",
               [](const QString& path) {
                   const QByteArray whole = contents(path);
                   overwrite(path, whole.first(whole.size() / 2));
               },
               0},
        Damage{"CutInItsLastPage",
               [](const QString& path) { overwrite(path, contents(path).chopped(100)); },
               tracks / 2},
        Damage{"RandomPagesInTheMiddle",
               [](const QString& path) {
                   QByteArray bytes = contents(path);
                   const qsizetype page = bytes.size() / 2 / 4096 * 4096;
                   overwrite(path, bytes.replace(page, 3 * 4096, randomBytes(3 * 4096)));
               },
               tracks / 2},
        Damage{"AnotherProgramsTables",
               [](const QString& path) {
                   QFile::remove(path);
                   execute(path, "CREATE TABLE bookmarks (url TEXT)");
               },
               0},
        Damage{"ATableLost", [](const QString& path) { execute(path, "DROP TABLE numbers_entry"); },
               tracks},
        Damage{"ANewerVersion",
               [](const QString& path) {
                   execute(path, "PRAGMA user_version = 99; ALTER TABLE preference ADD shared ANY");
               },
               tracks}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(PreferencesEmptiedTest, AnEmptiedFileIsFilledFromTheBackup) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"preferences.sqlite"_s);
    ManualClock clock;
    fill(path);
    {
        SqlitePreferences preferences(path, clock);
        clock.advance(std::chrono::minutes(2));
        preferences.waitForWorker();
    }
    overwrite(path, {});
    EXPECT_EQ(SqlitePreferences(path, clock).number(u"volume"_s).value_or(0), 0.5);
}

// The backup was made before the removal, and the program was killed in the middle of it.
TEST(PreferencesRemovedTest, WhatWasNotedAsGoneComesBackFromNeitherFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"preferences.sqlite"_s);
    ManualClock clock;
    fill(path);
    {
        SqlitePreferences preferences(path, clock);
        clock.advance(std::chrono::minutes(2));
        preferences.waitForWorker();
    }
    PreferencesDatabase(path, 0).noteRemoval({u"counts"_s}, {trackPath(1), trackPath(2)});
    execute(path, "DROP TABLE numbers_entry");
    SqlitePreferences preferences(path, clock);
    const auto counts = preferences.integerMap(u"counts"_s);
    ASSERT_TRUE(counts);
    EXPECT_EQ(counts->size(), tracks - 2);
    EXPECT_FALSE(counts->contains(trackPath(1)));
    EXPECT_EQ(preferences.strings(u"loved"_s).value_or(QStringList()).size(), tracks);
}

} // namespace
} // namespace halvane::test
