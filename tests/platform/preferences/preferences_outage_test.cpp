// SPDX-License-Identifier: MIT
#include "platform/sqlite_preferences.h"
#include "support/manual_clock.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/mount.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

/// Another program that holds the file's lock until it is destroyed.
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

/// A small file system of its own.
class SmallDisk {
  public:
    explicit SmallDisk(const QString& folder)
        : m_folder(QFile::encodeName(folder))
        , m_isMounted(::mount("none", m_folder.constData(), "tmpfs", 0, "size=256k") == 0) {}
    ~SmallDisk() {
        if (m_isMounted)
            ::umount2(m_folder.constData(), MNT_DETACH);
    }
    bool isMounted() const { return m_isMounted; }
    void fillUp() {
        QFile filler(QFile::decodeName(m_folder) + u"/filler"_s);
        ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(1024, 'x')) == 1024) {
        }
    }
    void makeRoom() { QFile::remove(QFile::decodeName(m_folder) + u"/filler"_s); }
    bool setReadOnly(bool readOnly) {
        return ::mount("none", m_folder.constData(), "tmpfs",
                       MS_REMOUNT | (readOnly ? static_cast<unsigned long>(MS_RDONLY) : 0UL),
                       "size=256k") == 0;
    }

  private:
    QByteArray m_folder;
    bool m_isMounted;
};

struct PreferencesOutageTest : testing::Test {
    QTemporaryDir folder;
    SmallDisk disk{folder.path()};
    QString path = folder.filePath(u"preferences.sqlite"_s);
    ManualClock clock;

    void SetUp() override {
        SqlitePreferences preferences(path, clock);
        preferences.setNumber(u"volume"_s, 0.5);
        preferences.setIntegerMap(u"counts"_s, {{u"/a"_s, 7}, {u"/b"_s, 8}});
    }

    // While the file can't be written, and after.
    static void expectChanges(const Preferences& preferences) {
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
        const SqlitePreferences preferences(path, still);
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
        EXPECT_EQ(preferences->number(u"volume"_s).valueOr(0), 0.5);
        makeChanges(*preferences);
        EXPECT_FALSE(preferences->isStored());
        expectChanges(*preferences);
        clock.advance(std::chrono::minutes(1));
        EXPECT_FALSE(preferences->isStored());
    }
    clock.advance(std::chrono::minutes(10));
    EXPECT_TRUE(preferences->isStored());
    expectChangesStored();
}

TEST_F(PreferencesOutageTest, AFullDiskLosesNothing) {
    if (!disk.isMounted())
        GTEST_SKIP() << "no file system can be mounted here";
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
    if (!disk.isMounted())
        GTEST_SKIP() << "no file system can be mounted here";
    QProcess::execute(u"sqlite3"_s, {path, u"PRAGMA user_version = 99"_s});
    disk.fillUp();
    const QStringList damaged{u"preferences.set-aside-*.sqlite"_s};
    SqlitePreferences preferences(path, clock);
    EXPECT_EQ(preferences.number(u"volume"_s).valueOr(0), 0.5);
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
    if (!disk.isMounted() || !disk.setReadOnly(true))
        GTEST_SKIP() << "no file system can be mounted here";
    {
        SqlitePreferences preferences(path, clock);
        EXPECT_EQ(preferences.number(u"volume"_s).valueOr(0), 0.5);
        makeChanges(preferences);
        EXPECT_FALSE(preferences.isStored());
        expectChanges(preferences);
        ASSERT_TRUE(disk.setReadOnly(false));
    } // the last try is made when the program ends
    expectChangesStored();
}

TEST_F(PreferencesOutageTest, WithoutAFolderItIsAllInMemory) {
    SqlitePreferences preferences(u"/dev/null/preferences.sqlite"_s, clock);
    preferences.setNumber(u"volume"_s, 0.25);
    EXPECT_EQ(preferences.number(u"volume"_s).valueOr(0), 0.25);
    EXPECT_FALSE(preferences.isStored());
}

} // namespace
} // namespace halvane::test
