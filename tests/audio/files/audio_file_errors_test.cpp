// SPDX-License-Identifier: MIT
#include "audio/files/audio_reading.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class OpenError : public testing::Test {
  protected:
    QString write(const QString& name, const QByteArray& bytes) {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return file.fileName();
    }
    QString cutFile(const QString& source, const QString& name, qint64 bytes) {
        QFile file(source);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return write(name, file.read(bytes));
    }
    static std::string errorOf(const QString& path) {
        const auto result = AudioFile::open(path);
        EXPECT_FALSE(result) << path.toStdString();
        return result ? std::string() : result.failure().text.toStdString();
    }

    QTemporaryDir m_folder;
};

TEST_F(OpenError, TellsWhatIsWrongWithThePath) {
    EXPECT_EQ(errorOf(m_folder.filePath(u"none.mp3"_s)), "No such file or directory");
    EXPECT_EQ(errorOf(QString()), "No such file or directory");
    EXPECT_EQ(errorOf(m_folder.path()), "It is a folder");
    EXPECT_EQ(errorOf(write(u"empty.flac"_s, {})), "The file is empty");
    const QString pipe = m_folder.filePath(u"pipe.wav"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(errorOf(pipe), "It is not a regular file");
}

TEST_F(OpenError, TellsThatReadingIsForbidden) {
    const QString path = write(u"secret.mp3"_s, "x");
    ASSERT_TRUE(QFile::setPermissions(path, {}));
    // Nothing is forbidden to root: this thread looks at files as somebody else.
    constexpr uid_t nobody = 65'534;
    ::setfsuid(nobody);
    EXPECT_EQ(errorOf(path), "Permission denied");
    ::setfsuid(geteuid());
}

TEST_F(OpenError, TellsThatThereIsNothingToPlay) {
    const std::string unplayable = "It is damaged, or not in a format that can be played";
    const std::string noSound = "There is no sound in the file";
    QByteArray text;
    for (int i = 0; i < 5000; ++i)
        text += "line " + QByteArray::number(i) + '\n';
    for (const QString& name : {u"text.mp3"_s, u"text.wav"_s, u"text.aac"_s, u"text.m4a"_s})
        EXPECT_THAT(errorOf(write(name, text)), testing::AnyOf(unplayable, noSound));
    EXPECT_EQ(errorOf(write(u"playlist.mp3"_s, "#EXTM3U\n#EXTINF:1,x\nfile:///etc/passwd\n")),
              unplayable);

    const Pcm pcm = music(30'000);
    const QString silentFilm =
        encoded(pcm, u"mp4"_s,
                u"ffmpeg -nostdin -v error -y -f lavfi -i testsrc=d=1 -c:v mpeg4 \"$OUT\""_s);
    EXPECT_EQ(errorOf(silentFilm), noSound);

    const QString aac = encoded(pcm, u"m4a"_s, ffmpeg + u"-c:a aac \"$OUT\""_s);
    EXPECT_EQ(errorOf(cutFile(aac, u"index is behind.m4a"_s, 5'000)), unplayable);
    const QString flac = encoded(pcm, u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s);
    EXPECT_EQ(errorOf(cutFile(flac, u"header only.flac"_s, 60)), unplayable);
    const QString wave = encoded(pcm, u"wav"_s, u"cp \"$IN\" \"$OUT\""_s);
    EXPECT_EQ(errorOf(cutFile(wave, u"header only.wav"_s, 44)),
              "There is no sound in the file that can be decoded");
}

TEST_F(OpenError, TellsThatTheFileIsEncrypted) {
    const QString path =
        encoded(music(30'000), u"m4a"_s,
                ffmpeg + u"-c:a aac -encryption_scheme cenc-aes-ctr -encryption_key "
                         "00112233445566778899aabbccddeeff -encryption_kid "
                         "00112233445566778899aabbccddeeff \"$OUT\""_s);
    EXPECT_EQ(errorOf(path), "It is encrypted");
}

TEST_F(OpenError, TellsWhatThePlayerCannotCarry) {
    EXPECT_EQ(errorOf(encoded(music(2'000, 44'100, 10), u"wav"_s, u"cp \"$IN\" \"$OUT\""_s)),
              "It has 10 channels; up to 8 can be played");
    EXPECT_EQ(errorOf(encoded(music(2'000, 768'000), u"wav"_s, u"cp \"$IN\" \"$OUT\""_s)),
              "Its sample rate of 768000 Hz can't be played");
}

} // namespace
} // namespace halvane::test
