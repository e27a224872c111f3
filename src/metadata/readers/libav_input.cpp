// SPDX-License-Identifier: MIT
#include "metadata/readers/libav_input.h"

namespace halvane {

using namespace libav;

LibavInput::LibavInput(BoundedFile& file)
    : m_file(file) {
    constexpr int bufferBytes = 16 << 10;
    // Messages about strange files are of no use to the user.
    av_log_set_level(AV_LOG_QUIET);
    auto* buffer = static_cast<unsigned char*>(av_malloc(bufferBytes));
    m_io = avio_alloc_context(buffer, bufferBytes, 0, this, &read, nullptr, &seek);
}

LibavInput::~LibavInput() {
    if (m_io)
        av_freep(&m_io->buffer);
    avio_context_free(&m_io);
}

void LibavInput::CloseFormat::operator()(AVFormatContext* context) const {
    avformat_close_input(&context);
}

LibavInput::Format LibavInput::open(Container container, AVDictionary** options) {
    AVFormatContext* context = avformat_alloc_context();
    if (!context || !m_io)
        return Format(context);
    context->pb = m_io;
    context->interrupt_callback = {&isInterrupted, this};
    context->probesize = 1 << 20;
    context->max_analyze_duration = 2 * AV_TIME_BASE;
    context->max_streams = 16;
    const AVInputFormat* format =
        container == Container::caf ? av_find_input_format("caf") : nullptr;
    // On failure the context is freed and set to null.
    avformat_open_input(&context, nullptr, format, options);
    return Format(context);
}

int LibavInput::isInterrupted(void* self) {
    return static_cast<LibavInput*>(self)->m_file.checkTime() ? 1 : 0;
}

int LibavInput::read(void* self, uint8_t* data, int length) {
    auto& input = *static_cast<LibavInput*>(self);
    const qint64 got = input.m_file.read(input.m_position, length, reinterpret_cast<char*>(data));
    input.m_position += got;
    return got > 0 ? static_cast<int>(got) : AVERROR_EOF;
}

int64_t LibavInput::seek(void* self, int64_t offset, int whence) {
    auto& input = *static_cast<LibavInput*>(self);
    if (whence == AVSEEK_SIZE)
        return input.m_file.size();
    const int64_t base = whence == SEEK_CUR   ? input.m_position
                         : whence == SEEK_END ? input.m_file.size()
                                              : 0;
    if (offset < -base)
        return AVERROR(EINVAL);
    return input.m_position = base + offset;
}

const AVStream* firstAudioStream(const AVFormatContext& context) {
    for (unsigned int i = 0; i < context.nb_streams; ++i)
        if (context.streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            return context.streams[i];
    return nullptr;
}

} // namespace halvane
