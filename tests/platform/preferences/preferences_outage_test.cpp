// SPDX-License-Identifier: MIT
#include "platform/preferences/sqlite_preferences.h"
#include "support/child_process.h"
#include "support/manual_clock.h"
#include "support/small_disk.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

// Another program that holds the file's lock until it is destroyed.
class LockHolder {
  public:
    LockHolder(const QString& path, const QByteArray& sql) {
        m_shell.start(u"sqlite3"_s, {path});
        m_shell.write(sql + "\n.print locked\n");
        while (!m_output.contains("locked") && m_shell.waitForReadyRead(20'000))
            m_output += m_shell.readAllStandardOutput();
        EXPECT_TRUE(m_output.contains("locked")) << m_shell.readAllStandardError().constData();
    }
    ~LockHolder() {
        m_shell.closeWriteChannel();
        m_shell.waitForFinished();
    }

  private:
    QProcess m_shell;
    QByteArray m_output;
};

struct PreferencesOutageTest : testing::Test {
    QTemporaryDir folder;
    SmallDisk disk{folder.path()};
    QString path = folder.filePath(u"preferences.sqlite"_s);
    ManualClock clock;

    void SetUp() override {
        SqlitePreferences preferences(path, clock);
        preferences.setNumber(u"volume"_s, 0.5);
        preferences.insertInteger(u"counts"_s, u"/a"_s, 7);
        preferences.insertInteger(u"counts"_s, u"/b"_s, 8);
    }

    // While the file can't be written, and after.
    static void expectChanges(Preferences& preferences) {
        EXPECT_EQ(*preferences.number(u"volume"_s), 0.75);
        const IntegerMap counts{{u"/a"_s, 8}, {u"/b"_s, 8}};
        EXPECT_EQ(*preferences.integerMap(u"counts"_s), counts);
    }
    static void makeChanges(Preferences& preferences) {
        preferences.setNumber(u"volume"_s, 0.6);
        preferences.setNumber(u"volume"_s, 0.75);
        preferences.insertInteger(u"counts"_s, u"/a"_s, 8);
    }
    void expectChangesStored() const {
        ManualClock still;
        SqlitePreferences preferences(path, still);
        EXPECT_TRUE(preferences.isStored());
        expectChanges(preferences);
    }
};

TEST_F(PreferencesOutageTest, AWriteLockIsWaitedOut) {
    SqlitePreferences preferences(path, clock);
    {
        const LockHolder other(path, "BEGIN IMMEDIATE;");
        makeChanges(preferences);
        EXPECT_FALSE(preferences.isStored());
        expectChanges(preferences);
    }
    clock.advance(std::chrono::seconds(3));
    EXPECT_TRUE(preferences.isStored());
    expectChangesStored();
}

TEST_F(PreferencesOutageTest, AFileThatIsWhollyLockedIsReadAllTheSame) {
    std::unique_ptr<SqlitePreferences> preferences;
    {
        const LockHolder other(path, "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; "
                                     "UPDATE preference SET kind = kind; ");
        preferences = std::make_unique<SqlitePreferences>(path, clock);
        EXPECT_EQ(preferences->number(u"volume"_s).value_or(0), 0.5);
        makeChanges(*preferences);
        EXPECT_FALSE(preferences->isStored());
        expectChanges(*preferences);
        clock.advance(std::chrono::minutes(1));
        EXPECT_FALSE(preferences->isStored());
    }
    // The first try may meet what the other leaves behind when it ends.
    EXPECT_TRUE(waitFor([&] {
        clock.advance(std::chrono::minutes(10));
        return preferences->isStored();
    }));
    expectChangesStored();
}

TEST_F(PreferencesOutageTest, WhatIsPutInAgainDuringARemovalThatIsHeldUpStays) {
    {
        SqlitePreferences preferences(path, clock);
        preferences.setStrings(u"paths"_s, {u"/a"_s, u"/b"_s, u"/c"_s});
        preferences.insertInteger(u"ratings"_s, u"/a"_s, 1);
        preferences.insertInteger(u"ratings"_s, u"/c"_s, 3);
    }
    // As a program that was killed in the middle of a removal leaves it.
    PreferencesDatabase(path, 0).noteRemoval({u"counts"_s, u"paths"_s, u"ratings"_s},
                                             {u"/a"_s, u"/b"_s});
    const auto expectPutIn = [](Preferences& preferences) {
        EXPECT_EQ(*preferences.integerMap(u"counts"_s), (IntegerMap{{u"/a"_s, 9}}));
        EXPECT_EQ(*preferences.strings(u"paths"_s), (QStringList{u"/c"_s, u"/a"_s}));
        EXPECT_EQ(*preferences.integerMap(u"ratings"_s), (IntegerMap{{u"/b"_s, 2}}));
    };
    {
        std::unique_ptr<SqlitePreferences> preferences;
        {
            const LockHolder other(path, "BEGIN IMMEDIATE;");
            preferences = std::make_unique<SqlitePreferences>(path, clock);
            EXPECT_EQ(*preferences->strings(u"paths"_s), QStringList{u"/c"_s});
            preferences->insertInteger(u"counts"_s, u"/a"_s, 9);
            preferences->insertString(u"paths"_s, u"/a"_s);
            preferences->remove(u"ratings"_s);
            preferences->insertInteger(u"ratings"_s, u"/b"_s, 2);
            EXPECT_FALSE(preferences->isStored());
            expectPutIn(*preferences);
        }
        clock.advance(std::chrono::seconds(3));
        EXPECT_TRUE(preferences->isStored());
        preferences->waitForWorker();
        expectPutIn(*preferences);
    }
    SqlitePreferences again(path, clock);
    expectPutIn(again);
}

TEST_F(PreferencesOutageTest, AFullDiskLosesNothing) {
    SqlitePreferences preferences(path, clock);
    disk.fillUp();
    makeChanges(preferences);
    preferences.setBlob(u"large"_s, QByteArray(64 * 1024, 'x'));
    EXPECT_FALSE(preferences.isStored());
    expectChanges(preferences);
    disk.makeRoom();
    clock.advance(std::chrono::minutes(10));
    EXPECT_TRUE(preferences.isStored());
    expectChangesStored();
}

TEST_F(PreferencesOutageTest, ADamagedFileOnAFullDiskStaysUntilThereIsRoom) {
    QProcess::execute(u"sqlite3"_s, {path, u"PRAGMA user_version = 99"_s});
    disk.fillUp();
    const QStringList damaged{u"preferences.set-aside-*.sqlite"_s};
    SqlitePreferences preferences(path, clock);
    EXPECT_EQ(preferences.number(u"volume"_s).value_or(0), 0.5);
    makeChanges(preferences);
    EXPECT_FALSE(preferences.isStored());
    EXPECT_EQ(QDir(folder.path()).entryList(damaged).size(), 0);
    disk.makeRoom();
    clock.advance(std::chrono::minutes(10));
    EXPECT_TRUE(preferences.isStored());
    EXPECT_EQ(QDir(folder.path()).entryList(damaged).size(), 1);
    EXPECT_EQ(*preferences.number(u"volume"_s), 0.75);
}

TEST_F(PreferencesOutageTest, AReadOnlyFolderIsRead) {
    disk.setReadOnly(true);
    {
        SqlitePreferences preferences(path, clock);
        EXPECT_EQ(preferences.number(u"volume"_s).value_or(0), 0.5);
        makeChanges(preferences);
        EXPECT_FALSE(preferences.isStored());
        expectChanges(preferences);
        disk.setReadOnly(false);
    } // the last try is made when the program ends
    expectChangesStored();
}

TEST_F(PreferencesOutageTest, WithoutAFolderItIsAllInMemory) {
    SqlitePreferences preferences(u"/dev/null/preferences.sqlite"_s, clock);
    preferences.setNumber(u"volume"_s, 0.25);
    EXPECT_EQ(preferences.number(u"volume"_s).value_or(0), 0.25);
    EXPECT_FALSE(preferences.isStored());
}

} // namespace
} // namespace halvane::test
