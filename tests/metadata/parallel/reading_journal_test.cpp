// SPDX-License-Identifier: MIT
#include "metadata/parallel/reading_journal.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class ReadingJournalTest : public testing::Test {
  protected:
    using Verdict = ReadingJournal::Verdict;

    QString file(const QString& name, const QByteArray& content = "x") {
        QFile target(folder.filePath(name));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        target.write(content);
        return target.fileName();
    }
    // A process that dies while it reads these files.
    void dieReading(const QStringList& paths, bool isAlone) {
        const pid_t child = ::fork();
        if (child == 0) {
            ReadingJournal journal(folder.path());
            std::vector<std::unique_ptr<ReadingJournal::Entry>> entries;
            for (const QString& path : paths)
                entries.push_back(std::make_unique<ReadingJournal::Entry>(journal, path, isAlone));
            ::_exit(1);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
    }

    QTemporaryDir folder;
};

TEST_F(ReadingJournalTest, FindsTheFileThatTheProgramDiesOf) {
    const QString guilty = file(u"a b\nc.mp3"_s);
    const QString innocent = file(u"b.mp3"_s);
    dieReading({guilty, innocent}, false);
    {
        ReadingJournal journal(folder.path());
        EXPECT_EQ(journal.verdict(guilty), Verdict::suspect);
        EXPECT_EQ(journal.verdict(innocent), Verdict::suspect);
        EXPECT_EQ(journal.verdict(file(u"c.mp3"_s)), Verdict::sound);
        journal.acquit(innocent);
    }
    dieReading({guilty}, true);
    for (int start = 0; start < 2; ++start) {
        const ReadingJournal journal(folder.path());
        EXPECT_EQ(journal.verdict(guilty), Verdict::condemned);
        EXPECT_EQ(journal.verdict(innocent), Verdict::sound);
    }
    file(u"a b\nc.mp3"_s, "changed");
    EXPECT_EQ(ReadingJournal(folder.path()).verdict(guilty), Verdict::sound);
}

TEST_F(ReadingJournalTest, ForgetsFilesThatWereReadToTheEnd) {
    const QString path = file(u"a.mp3"_s);
    {
        ReadingJournal journal(folder.path());
        const ReadingJournal::Entry entry(journal, path, false);
    }
    EXPECT_EQ(ReadingJournal(folder.path()).verdict(path), Verdict::sound);
}

TEST_F(ReadingJournalTest, AnOrderlyEndAccusesNobody) {
    const QString path = file(u"a.mp3"_s);
    ReadingJournal journal(folder.path());
    {
        const ReadingJournal::Entry entry(journal, path, true);
        journal.close();
        EXPECT_EQ(ReadingJournal(folder.path()).verdict(path), Verdict::sound);
    }
    const ReadingJournal::Entry late(journal, path, true);
    EXPECT_EQ(ReadingJournal(folder.path()).verdict(path), Verdict::sound);
}

TEST_F(ReadingJournalTest, DoesWithoutAFolder) {
    ReadingJournal journal(u"/dev/null/none"_s);
    const ReadingJournal::Entry entry(journal, u"/m/a.mp3"_s, false);
    EXPECT_EQ(journal.verdict(u"/m/a.mp3"_s), Verdict::sound);
}

} // namespace
} // namespace halvane::test
