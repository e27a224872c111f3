// SPDX-License-Identifier: MIT
#include "numbered_change.h"
#include "platform/preferences/sqlite_preferences.h"
#include "support/manual_clock.h"
#include "support/memory_preferences.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

// Lets the writer run until it has acknowledged some changes, kills it in the midst of its work,
// and gives the number of changes that it acknowledged in all.
quint64 writeAndKill(const QString& path, quint64 first, quint64 atLeast) {
    QProcess writer;
    writer.start(QStringLiteral(PREFERENCES_WRITER), {path, QString::number(first)});
    quint64 done = first;
    QByteArray output;
    while (done < first + atLeast && writer.waitForReadyRead(20'000)) {
        output += writer.readAllStandardOutput();
        done = first + static_cast<quint64>(output.count('\n'));
    }
    writer.kill();
    writer.waitForFinished();
    output += writer.readAllStandardOutput();
    EXPECT_EQ(writer.exitStatus(), QProcess::CrashExit);
    return first + static_cast<quint64>(output.count('\n'));
}

// HALVANE_KILLS makes it as long as one likes.
TEST(PreferencesKillTest, NothingAcknowledgedIsLost) {
    const int kills = qEnvironmentVariableIsSet("HALVANE_KILLS")
                          ? qEnvironmentVariableIntValue("HALVANE_KILLS")
                          : 10;
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"preferences.sqlite"_s);
    MemoryPreferences expected;
    std::mt19937 random(7);
    quint64 acknowledged = 0;
    quint64 unacknowledged = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const quint64 done =
            writeAndKill(path, acknowledged, std::uniform_int_distribution(1, 80)(random));
        ASSERT_GT(done, acknowledged);
        while (acknowledged < done)
            makeNumberedChange(expected, acknowledged++);

        ManualClock clock;
        SqlitePreferences preferences(path, clock);
        const QString found = numberedContents(preferences);
        if (found != numberedContents(expected)) {
            // The change that was under way may have been made too, and no other.
            makeNumberedChange(expected, acknowledged++);
            ++unacknowledged;
            ASSERT_EQ(found, numberedContents(expected)) << "after " << kill + 1 << " kills";
        }
    }
    EXPECT_EQ(QDir(folder.path()).entryList({u"*set-aside*"_s}), QStringList());
    RecordProperty("kills", kills);
    RecordProperty("acknowledged", static_cast<int>(acknowledged - unacknowledged));
    RecordProperty("unacknowledged", static_cast<int>(unacknowledged));
}

} // namespace
} // namespace halvane::test
