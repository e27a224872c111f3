// SPDX-License-Identifier: MIT
#pragma once

// What every user of libav in this folder needs: owners for its objects, and error texts.

#include "libav/functions.h"

#include <memory>

namespace halvane::libav {

struct Release {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
template<typename T>
using Owned = std::unique_ptr<T, Release>;

inline QString errorText(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return QString::fromUtf8(text);
}

} // namespace halvane::libav
