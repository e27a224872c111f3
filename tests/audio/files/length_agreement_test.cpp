// SPDX-License-Identifier: MIT
// What the library says of a file beside what the engine plays of it.
#include "audio/files/audio_reading.h"
#include "metadata/track_metadata_loader.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

TEST(Lengths, OfTheLibraryAreThoseOfTheEngineToTheFrame) {
    struct Case {
        QString suffix;
        QString command;
        int sampleRate = 44'100;
    };
    // A quarter of an hour, of which the end has fewer bytes.
    const QString longAac =
        ffmpeg + u"-c:a aac \"$OUT\"; for i in 1 2 3 4 5 6 7 8; do cat \"$OUT\" \"$OUT\" "
                 ">\"$OUT.twice\"; mv \"$OUT.twice\" \"$OUT\"; done; ffmpeg -v error -f lavfi -i "
                 "anullsrc -t 3 -c:a aac -f adts - >>\"$OUT\""_s;
    // Its description says that an extension doubles the rate.
    const QString extendedAac =
        ffmpeg +
        u"-c:a aac \"$OUT\"; LC_ALL=C sed -i 's/\\x56\\xe5\\x00/\\x56\\xe5\\xa0/' \"$OUT\""_s;
    const QString pictured =
        ffmpeg +
        u"-ac 1 -c:a wmav1 -b:a 96k \"$OUT\"; /usr/bin/python3 -c \"import mutagen, struct; "
        "wma = mutagen.File('$OUT'); "
        "wma['WM/Picture'] = mutagen.asf.ASFByteArrayAttribute(struct.pack('<bI', 3, 4000)"
        " + 'image/jpeg\\0'.encode('utf-16-le') + bytes(4002)); wma.save()\""_s;
    const QString twice = u"; cat \"$OUT\" \"$OUT\" >\"$OUT.twice\"; mv \"$OUT.twice\" \"$OUT\""_s;
    const Case cases[] = {
        {u"wav"_s, u"cp \"$IN\" \"$OUT\""_s},
        {u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s},
        {u"flac"_s, ffmpeg + u"-c:a flac -f flac - | cat >\"$OUT\""_s}, // no length in its header
        {u"mp3"_s, u"lame --quiet -V2 \"$IN\" \"$OUT\""_s},
        {u"mp3"_s, u"lame --quiet --cbr -b 128 \"$IN\" \"$OUT\""_s},
        {u"mp3"_s, u"lame --quiet -t --cbr -b 128 \"$IN\" \"$OUT\""_s}, // no header
        {u"mp3"_s, u"lame --quiet -t -V4 \"$IN\" \"$OUT\""_s},
        {u"mp3"_s, ffmpeg + u"-c:a libmp3lame -b:a 64k \"$OUT\""_s, 22'050},
        {u"mp3"_s, u"lame --quiet -V2 \"$IN\" \"$OUT\""_s + twice},
        {u"mp3"_s, u"lame --quiet --cbr -b 128 --tt Title \"$IN\" \"$OUT\""_s + twice},
        {u"m4a"_s, ffmpeg + u"-c:a aac \"$OUT\""_s},
        {u"m4a"_s, ffmpeg + u"-c:a alac \"$OUT\""_s},
        {u"m4a"_s, ffmpeg + u"-c:a flac -strict -2 -f mp4 \"$OUT\""_s},
        {u"m4a"_s, ffmpeg + u"-c:a flac -strict -2 -f mp4 \"$OUT\""_s, 96'000},
        {u"m4a"_s, ffmpeg + u"-c:a aac -movflags frag_keyframe+empty_moov \"$OUT\""_s},
        {u"caf"_s, ffmpeg + u"-c:a alac \"$OUT\""_s},
        {u"caf"_s, ffmpeg + u"-c:a pcm_s16be \"$OUT\""_s},
        {u"aac"_s, ffmpeg + u"-c:a aac \"$OUT\""_s},
        {u"aac"_s, longAac},
        {u"m4a"_s, extendedAac, 22'050},
        {u"ogg"_s, ffmpeg + u"-c:a libvorbis \"$OUT\""_s},
        {u"opus"_s, ffmpeg + u"-c:a libopus \"$OUT\""_s, 48'000},
        {u"oga"_s, u"flac -s --ogg -o \"$OUT\" \"$IN\""_s},
        {u"wv"_s, ffmpeg + u"-c:a wavpack \"$OUT\""_s},
        {u"tta"_s, ffmpeg + u"-c:a tta \"$OUT\""_s},
        {u"mpc"_s, u"mpcenc --silent --overwrite \"$IN\" \"$OUT\""_s},
        {u"wma"_s, ffmpeg + u"-c:a wmav2 \"$OUT\""_s},
        {u"wma"_s, pictured},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.suffix.toStdString() + ": " + c.command.toStdString());
        const QString path = encoded(music(150'000, c.sampleRate), c.suffix, c.command);
        const auto file = opened(path);
        TrackMetadataLoader::Accompaniment with;
        with.isThorough = true;
        const QueueItem item = TrackMetadataLoader::queueItems({FileUrl(path)}, {}, with).front();
        EXPECT_EQ(item.sampleRate, TrackMetadataLoader::sampleRateText(file->format().sampleRate));
        ASSERT_TRUE(item.durationSeconds);
        EXPECT_NEAR(*item.durationSeconds * file->format().sampleRate, double(file->lengthFrames()),
                    0.5);
        if (c.command.endsWith(twice)) {
            // With what the second encoder put around its sound.
            EXPECT_NEAR(double(file->lengthFrames()), 300'000, 3 * 1152);
            EXPECT_EQ(std::int64_t(readAll(*file).size() / 2), file->lengthFrames());
        }
    }
}

} // namespace
} // namespace halvane::test
