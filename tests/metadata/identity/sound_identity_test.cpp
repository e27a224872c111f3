// SPDX-License-Identifier: MIT
// What tells one sound from another, whatever happens to the file around it.
#include "metadata/track_metadata_loader.h"
#include "support/audio_material.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

SoundIdentity identityOf(const QString& path, bool isThorough) {
    TrackMetadataLoader::Accompaniment with;
    with.isThorough = isThorough;
    return TrackMetadataLoader::queueItems({FileUrl(path)}, {}, with).front().identity;
}

SoundIdentity identityOf(const QString& path) {
    return identityOf(path, true);
}

// The middle tenth is another sound, and the length is the same.
Pcm editedInTheMiddle(Pcm sound) {
    const std::size_t count = sound.samples.size();
    for (std::size_t i = count * 9 / 20; i < count * 11 / 20; ++i)
        sound.samples[i] = -sound.samples[i] / 2;
    return sound;
}

const QString ffmpeg = u"ffmpeg -v error -nostdin -i \"$IN\" "_s;

struct Kind {
    const char* name;
    QString suffix;
    QString command;
    bool isTagged = true;  ///< there is a tag editor for it
    bool isRemuxed = true; ///< ffmpeg copies the sound as it is
    /// Its header states a checksum.
    bool isStated = false;
};

const Kind kinds[] = {
    {"wav", u"wav"_s, u"cp \"$IN\" \"$OUT\""_s},
    {"aiff", u"aiff"_s, ffmpeg + u"-f aiff \"$OUT\""_s},
    {"caf", u"caf"_s, ffmpeg + u"-c:a pcm_s16be \"$OUT\""_s, false},
    {"alac in caf", u"caf"_s, ffmpeg + u"-c:a alac \"$OUT\""_s, false},
    {"flac", u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s, true, true, true},
    {"flac without a checksum", u"flac"_s, ffmpeg + u"-c:a flac -f flac - | cat >\"$OUT\""_s, true,
     false},
    {"mp3", u"mp3"_s, u"lame --quiet --cbr -b 128 \"$IN\" \"$OUT\""_s},
    {"mp3 of varying rate", u"mp3"_s, u"lame --quiet -V2 \"$IN\" \"$OUT\""_s},
    {"mp3 without a header", u"mp3"_s, u"lame --quiet -t --cbr -b 128 \"$IN\" \"$OUT\""_s},
    {"aac", u"aac"_s, ffmpeg + u"-c:a aac \"$OUT\""_s},
    {"aac in mp4", u"m4a"_s, ffmpeg + u"-c:a aac \"$OUT\""_s},
    {"aac in mp4, tables first", u"m4a"_s, ffmpeg + u"-c:a aac -movflags faststart \"$OUT\""_s},
    {"alac in mp4", u"m4a"_s, ffmpeg + u"-c:a alac \"$OUT\""_s},
    {"fragmented mp4", u"m4a"_s, ffmpeg + u"-c:a aac -movflags frag_keyframe+empty_moov \"$OUT\""_s,
     true, false},
    {"vorbis", u"ogg"_s, ffmpeg + u"-c:a libvorbis \"$OUT\""_s},
    {"opus", u"opus"_s, ffmpeg + u"-c:a libopus \"$OUT\""_s},
    {"flac in ogg", u"oga"_s, u"flac -s --ogg -o \"$OUT\" \"$IN\""_s},
    {"wavpack", u"wv"_s, ffmpeg + u"-c:a wavpack \"$OUT\""_s},
    {"true audio", u"tta"_s, ffmpeg + u"-c:a tta \"$OUT\""_s, true, false},
    {"musepack", u"mpc"_s, u"mpcenc --silent --overwrite \"$IN\" \"$OUT\""_s, true, false},
    {"wma", u"wma"_s, ffmpeg + u"-c:a wmav2 \"$OUT\""_s, true, false},
};

class SoundIdentities : public testing::TestWithParam<Kind> {
  protected:
    static QString made(const Pcm& sound) {
        return encoded(sound, GetParam().suffix, GetParam().command);
    }
    void run(const QString& command) const {
        ASSERT_EQ(std::system((command + u" </dev/null"_s).toUtf8().constData()), 0)
            << command.toStdString();
    }

    QTemporaryDir folder;
};

// Fourteen seconds, of which a file of any kind has more than is looked at whole.
constexpr std::size_t frames = 600'000;

const Pcm& longMusic() {
    static const Pcm sound = music(frames + 1000);
    return sound;
}

const Pcm& music() {
    static const Pcm sound = longMusic().cut(0, frames);
    return sound;
}

TEST_P(SoundIdentities, StayWithTagsPicturesAndNames) {
    const Kind& kind = GetParam();
    const QString path = made(music());
    const SoundIdentity identity = identityOf(path);
    ASSERT_TRUE(identity.isKnown());
    EXPECT_EQ(identityOf(path, false), kind.isStated ? identity : SoundIdentity());
    const QString copy = folder.filePath(u"another name."_s + kind.suffix);
    ASSERT_TRUE(QFile::copy(path, copy));
    EXPECT_EQ(identityOf(copy), identity) << "renamed";
    if (kind.isTagged) {
        run(QStringLiteral(HALVANE_PYTHON " " HALVANE_RETAG_SCRIPT " '") + copy + u"' Lamplight"_s);
        EXPECT_GT(QFileInfo(copy).size(), QFileInfo(path).size() + 250'000);
        EXPECT_EQ(identityOf(copy), identity) << "tagged";
    }
    if (kind.isRemuxed) {
        const QString remuxed = folder.filePath(u"remuxed."_s + kind.suffix);
        run(u"ffmpeg -v error -nostdin -i '"_s + path + u"' -c copy -metadata title=Lamp '"_s +
            remuxed + u'\'');
        EXPECT_EQ(identityOf(remuxed), identity) << "copied into another file";
    }
}

TEST_P(SoundIdentities, TellSoundsOfOneLengthApart) {
    static const Pcm later = longMusic().cut(1000, frames + 1000);
    static const Pcm changed = editedInTheMiddle(music());
    const SoundIdentity one = identityOf(made(music()));
    const SoundIdentity other = identityOf(made(later));
    const SoundIdentity edited = identityOf(made(changed));
    ASSERT_TRUE(other.isKnown());
    ASSERT_TRUE(edited.isKnown());
    EXPECT_NE(one, other);
    EXPECT_NE(one, edited);
}

std::string nameOf(const testing::TestParamInfo<Kind>& kind) {
    std::string name = kind.param.name;
    std::erase_if(name, [](unsigned char c) { return !std::isalnum(c); });
    return name;
}

INSTANTIATE_TEST_SUITE_P(Kinds, SoundIdentities, testing::ValuesIn(kinds), nameOf);

TEST(SoundIdentityText, ReadsBack) {
    const SoundIdentity identity{0x1234, 0xfedc'ba98'7654'3210};
    EXPECT_EQ(identity.text(), u"0000000000001234fedcba9876543210"_s);
    EXPECT_EQ(SoundIdentity::fromText(identity.text()), identity);
    for (const QString& text :
         {u""_s, u"0000000000001234fedcba987654321"_s, u"000000000000123Xfedcba9876543210"_s})
        EXPECT_FALSE(SoundIdentity::fromText(text)) << text.toStdString();
}

} // namespace
} // namespace halvane::test
