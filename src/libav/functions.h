// SPDX-License-Identifier: MIT
#pragma once

// libav's functions under their own names. The program does not link libav: with the 90 libraries
// that it brings along, linking was a quarter of the time until the first window, and an idle
// player needs none of it. A function that is called and not named here does not link.

#include "base/result.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/mathematics.h>
#include <libavutil/tx.h>
}

namespace halvane::libav {

/// Loads libav, which takes tens of milliseconds the first time. The functions may be called when
/// this has succeeded. Any thread.
Result<> load();

#define HALVANE_LIBAV_FUNCTIONS(DO)                                                                \
    DO(av_add_index_entry)                                                                         \
    DO(av_channel_layout_default)                                                                  \
    DO(av_dict_free)                                                                               \
    DO(av_dict_get)                                                                                \
    DO(av_dict_set)                                                                                \
    DO(av_find_best_stream)                                                                        \
    DO(av_find_input_format)                                                                       \
    DO(av_frame_alloc)                                                                             \
    DO(av_frame_free)                                                                              \
    DO(av_frame_get_side_data)                                                                     \
    DO(av_frame_unref)                                                                             \
    DO(av_freep)                                                                                   \
    DO(av_get_bits_per_sample)                                                                     \
    DO(av_get_exact_bits_per_sample)                                                               \
    DO(av_get_packed_sample_fmt)                                                                   \
    DO(av_log_set_level)                                                                           \
    DO(av_malloc)                                                                                  \
    DO(av_max_alloc)                                                                               \
    DO(av_packet_alloc)                                                                            \
    DO(av_packet_free)                                                                             \
    DO(av_packet_get_side_data)                                                                    \
    DO(av_packet_unref)                                                                            \
    DO(av_read_frame)                                                                              \
    DO(av_rescale)                                                                                 \
    DO(av_rescale_q)                                                                               \
    DO(av_rescale_q_rnd)                                                                           \
    DO(av_sample_fmt_is_planar)                                                                    \
    DO(av_seek_frame)                                                                              \
    DO(av_strerror)                                                                                \
    DO(av_tx_init)                                                                                 \
    DO(av_tx_uninit)                                                                               \
    DO(avcodec_alloc_context3)                                                                     \
    DO(avcodec_descriptor_get)                                                                     \
    DO(avcodec_find_decoder_by_name)                                                               \
    DO(avcodec_flush_buffers)                                                                      \
    DO(avcodec_free_context)                                                                       \
    DO(avcodec_open2)                                                                              \
    DO(avcodec_parameters_to_context)                                                              \
    DO(avcodec_receive_frame)                                                                      \
    DO(avcodec_send_packet)                                                                        \
    DO(avformat_alloc_context)                                                                     \
    DO(avformat_close_input)                                                                       \
    DO(avformat_find_stream_info)                                                                  \
    DO(avformat_index_get_entries_count)                                                           \
    DO(avformat_index_get_entry)                                                                   \
    DO(avformat_index_get_entry_from_timestamp)                                                    \
    DO(avformat_open_input)                                                                        \
    DO(avio_alloc_context)                                                                         \
    DO(avio_context_free)                                                                          \
    DO(avio_size)

#define HALVANE_DECLARE(name) inline decltype(&::name) name{}; // NOLINT(bugprone-macro-parentheses)
HALVANE_LIBAV_FUNCTIONS(HALVANE_DECLARE)
#undef HALVANE_DECLARE

} // namespace halvane::libav
