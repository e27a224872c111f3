// SPDX-License-Identifier: MIT
#include "audio/files/audio_reading.h"

#include <algorithm>
#include <random>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

struct Encoding {
    const char* name;
    QString suffix;
    QString command;
    /// What a decoder's invented noise may differ by; 0 for bit for bit.
    float tolerance = 0;
    int sampleRate = 44'100;
};

void PrintTo(const Encoding& encoding, std::ostream* out) {
    *out << encoding.name;
}

std::string nameOf(const testing::TestParamInfo<Encoding>& info) {
    return info.param.name;
}

class Seek : public testing::TestWithParam<Encoding> {};

TEST_P(Seek, DeliversWhatALinearReadDelivers) {
    const Encoding& encoding = GetParam();
    const QString path =
        encoded(music(400'000, encoding.sampleRate), encoding.suffix, encoding.command);
    const auto linear = readAll(path);
    const auto file = opened(path);
    const std::int64_t length = file->lengthFrames();
    ASSERT_EQ(std::int64_t(linear.size()), length * 2);

    std::vector<std::int64_t> targets{length - 1,    0,       1,      1105, 4096,
                                      length - 2000, 200'000, 199'999};
    std::mt19937 random(7);
    for (int i = 0; i < 30; ++i)
        targets.push_back(std::int64_t(random() % std::uint32_t(length)));
    file->seek(length + 5); // cut to the file, whose end is not final
    EXPECT_EQ(file->position(), length);
    EXPECT_TRUE(readFrames(*file, 1).empty() && !file->failure());
    for (const std::int64_t target : targets) {
        file->seek(target);
        EXPECT_EQ(file->position(), target);
        const auto samples = readFrames(*file, 3000);
        ASSERT_EQ(std::int64_t(samples.size() / 2), std::min<std::int64_t>(3000, length - target));
        float largest = 0;
        for (std::size_t i = 0; i < samples.size(); ++i)
            largest = std::max(largest, std::abs(samples[i] - linear[std::size_t(target) * 2 + i]));
        EXPECT_LE(largest, encoding.tolerance) << "at " << target;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, Seek,
    testing::Values(
        Encoding{"wav", u"wav"_s, u"cp \"$IN\" \"$OUT\""_s},
        Encoding{"aiff", u"aiff"_s, ffmpeg + u"\"$OUT\""_s},
        Encoding{"caf", u"caf"_s, ffmpeg + u"\"$OUT\""_s},
        Encoding{"flac", u"flac"_s, u"flac -s -o \"$OUT\" \"$IN\""_s},
        Encoding{"flac_without_seek_table", u"flac"_s,
                 u"flac -s --no-seektable -o \"$OUT\" \"$IN\""_s},
        Encoding{"alac", u"m4a"_s, ffmpeg + u"-c:a alac \"$OUT\""_s},
        Encoding{"alac_in_caf", u"caf"_s, ffmpeg + u"-c:a alac \"$OUT\""_s},
        Encoding{"mp3_cbr", u"mp3"_s, u"lame --quiet --cbr -b 320 \"$IN\" \"$OUT\""_s},
        // The lowest rate leans on its predecessors the most.
        Encoding{"mp3_smallest_frames", u"mp3"_s,
                 u"lame --quiet --cbr -b 32 --resample 44.1 \"$IN\" \"$OUT\""_s},
        Encoding{"mp3_vbr", u"mp3"_s, u"lame --quiet -V2 \"$IN\" \"$OUT\""_s},
        Encoding{"mp3_without_header", u"mp3"_s, u"lame --quiet -t -V4 \"$IN\" \"$OUT\""_s},
        Encoding{"mp3_low_rate", u"mp3"_s,
                 u"lame --quiet -b 32 --resample 22.05 \"$IN\" \"$OUT\""_s, 0, 22'050},
        Encoding{"aac", u"m4a"_s, ffmpeg + u"-c:a aac -aac_pns 0 \"$OUT\""_s},
        Encoding{"aac_with_noise", u"m4a"_s, ffmpeg + u"-c:a aac -b:a 96k \"$OUT\""_s, 0.04F},
        Encoding{"aac_raw", u"aac"_s, ffmpeg + u"-c:a aac -aac_pns 0 \"$OUT\""_s},
        Encoding{"vorbis", u"ogg"_s, ffmpeg + u"-c:a libvorbis -q:a 6 \"$OUT\""_s},
        Encoding{"opus", u"opus"_s, ffmpeg + u"-c:a libopus -b:a 160k \"$OUT\""_s, 0.002F, 48'000},
        Encoding{"chained_vorbis", u"ogg"_s,
                 ffmpeg + u"-t 3 -c:a libvorbis -serial_offset 7 \"$OUT\"; "_s + ffmpeg +
                     u"-ss 3 -c:a libvorbis -serial_offset 9 -f ogg - >> \"$OUT\""_s},
        Encoding{"flac_in_ogg", u"oga"_s, u"flac -s --ogg -o \"$OUT\" \"$IN\""_s},
        // Full pages, which end within packets.
        Encoding{"flac_in_ogg_across_pages", u"oga"_s,
                 ffmpeg + u"-c:a flac -page_duration 60000000 \"$OUT\""_s},
        Encoding{"chained_flac", u"oga"_s,
                 ffmpeg + u"-t 4 -c:a flac -serial_offset 7 \"$OUT\"; "_s + ffmpeg +
                     u"-ss 4 -c:a flac -serial_offset 9 -f ogg - >> \"$OUT\""_s},
        Encoding{"speex", u"ogg"_s, ffmpeg + u"-c:a libspeex \"$OUT\""_s, 0.002F, 32'000},
        Encoding{"speex_across_pages", u"ogg"_s,
                 ffmpeg + u"-c:a libspeex -page_duration 60000000 \"$OUT\""_s, 0.002F, 32'000},
        Encoding{"wavpack", u"wv"_s, ffmpeg + u"-c:a wavpack \"$OUT\""_s},
        Encoding{"tta", u"tta"_s, ffmpeg + u"-c:a tta \"$OUT\""_s},
        Encoding{"musepack", u"mpc"_s, u"mpcenc --silent --overwrite \"$IN\" \"$OUT\""_s},
        Encoding{"wma", u"wma"_s, ffmpeg + u"-c:a wmav2 -b:a 192k \"$OUT\""_s}),
    nameOf);

} // namespace
} // namespace halvane::test
