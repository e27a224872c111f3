// SPDX-License-Identifier: MIT
#pragma once

#include "support/audio_material.h"

#include <array>
#include <cstdint>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace halvane::bench {

/// A long file of one kind, made on first use and kept in the build tree.
struct Material {
    const char* name;
    int sampleRate;
    int bits;
    const char* suffix;
    const char* command;
};

inline constexpr std::array materials{
    Material{"flac 16/44.1", 44'100, 16, "flac", "flac -s -8 -o \"$OUT\" \"$IN\""},
    Material{"flac 24/96", 96'000, 24, "flac", "flac -s -5 -o \"$OUT\" \"$IN\""},
    Material{"mp3 320", 44'100, 16, "mp3", "lame --quiet --cbr -b 320 \"$IN\" \"$OUT\""},
    Material{"aac 256", 44'100, 16, "m4a",
             "ffmpeg -nostdin -v error -y -i \"$IN\" -c:a aac -b:a 256k \"$OUT\""},
    Material{"alac 16/44.1", 44'100, 16, "m4a",
             "ffmpeg -nostdin -v error -y -i \"$IN\" -c:a alac \"$OUT\""},
};
inline constexpr int materialSeconds = 180;

inline QString fileOf(const Material& material) {
    constexpr int minute = 60;
    test::Pcm pcm = test::music(std::size_t(material.sampleRate * minute), material.sampleRate, 2,
                                material.bits);
    const auto first = pcm.samples;
    for (int length = minute; length < materialSeconds; length += minute)
        pcm.samples.insert(pcm.samples.end(), first.begin(), first.end());
    return test::encoded(pcm, QString::fromLatin1(material.suffix),
                         QString::fromLatin1(material.command));
}

/// Decodes a whole file with libavcodec and nothing else, on one thread; gives its frames.
inline std::int64_t decodeBare(const QString& path) {
    AVFormatContext* container = nullptr;
    const AVCodec* codec = nullptr;
    if (avformat_open_input(&container, path.toUtf8().constData(), nullptr, nullptr) < 0 ||
        avformat_find_stream_info(container, nullptr) < 0)
        return 0;
    const int index = av_find_best_stream(container, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    AVCodecContext* context = avcodec_alloc_context3(codec);
    avcodec_parameters_to_context(context, container->streams[index]->codecpar);
    context->thread_count = 1;
    avcodec_open2(context, codec, nullptr);
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    std::int64_t frames = 0;
    for (bool isEnd = false; !isEnd;) {
        isEnd = av_read_frame(container, packet) < 0;
        avcodec_send_packet(context, isEnd ? nullptr : packet);
        av_packet_unref(packet);
        while (avcodec_receive_frame(context, frame) >= 0)
            frames += frame->nb_samples;
    }
    av_frame_free(&frame);
    av_packet_free(&packet);
    avcodec_free_context(&context);
    avformat_close_input(&container);
    return frames;
}

} // namespace halvane::bench
