// SPDX-License-Identifier: MIT
#include "audio/files/audio_file.h"

#include "audio/files/audio_decoder.h"
#include "audio/files/stream_extent.h"
#include "platform/log.h"

#include <algorithm>
#include <mutex>

namespace halvane {

using namespace Qt::StringLiterals;

class AudioFile::Impl {
  public:
    Result<> open(const QString& path);
    std::size_t read(float* out, std::size_t frames);

    std::mutex reading; ///< held by readAt
    QString path;
    StreamExtent extent;
    std::int64_t position = 0;
    std::optional<QString> failure;
    AudioDecoder decoder;
    bool mustSeek = false; ///< the decoder is elsewhere than at `position`

  private:
    bool goToPosition();
    [[nodiscard]] bool holds(std::int64_t raw) const {
        return decoder.blockStart() <= raw && raw < decoder.blockEnd();
    }
    void endEarly();
};

Result<> AudioFile::Impl::open(const QString& file) {
    path = file;
    if (auto opened = decoder.open(file); !opened)
        return opened;
    extent = findExtent(decoder, file);
    if (extent.length == 0)
        return Failure{u"There is no sound in the file"_s};
    // Finding the extent may have read ahead.
    mustSeek = decoder.blockStart() == decoder.blockEnd();
    return {};
}

bool AudioFile::Impl::goToPosition() {
    mustSeek = false;
    return holds(position + extent.delay) || decoder.seek(position + extent.delay);
}

std::size_t AudioFile::Impl::read(float* out, std::size_t frames) {
    const std::int64_t wanted =
        std::min(static_cast<std::int64_t>(frames), extent.length - position);
    const std::int64_t begin = position;
    const std::int64_t end = begin + std::max<std::int64_t>(wanted, 0);
    const int channels = decoder.format().channels;
    if (failure || position >= end)
        return 0;
    if (mustSeek && !goToPosition()) {
        endEarly();
        return 0;
    }
    while (position < end) {
        const std::int64_t raw = position + extent.delay;
        if (raw >= decoder.blockEnd()) {
            if (!decoder.next()) {
                endEarly();
                break;
            }
            continue;
        }
        const bool isGap = raw < decoder.blockStart();
        const std::int64_t stop = isGap ? decoder.blockStart() : decoder.blockEnd();
        const std::int64_t count = std::min(end - position, stop - raw);
        float* to = out + (position - begin) * channels;
        if (isGap)
            std::fill_n(to, count * channels, 0.0F);
        else
            decoder.copy(raw, static_cast<std::size_t>(count), to);
        position += count;
    }
    return static_cast<std::size_t>(position - begin);
}

void AudioFile::Impl::endEarly() {
    failure = decoder.readError().value_or(u"The file ends early"_s);
    qCWarning(libraryLog, "\"%s\" ends at frame %lld of %lld: %s", qUtf8Printable(path),
              static_cast<long long>(position), static_cast<long long>(extent.length),
              qUtf8Printable(*failure));
}

AudioFile::AudioFile(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl)) {
}

AudioFile::~AudioFile() = default;

Result<std::unique_ptr<AudioFile>> AudioFile::open(const QString& path) {
    auto impl = std::make_unique<Impl>();
    if (const auto opened = impl->open(path); !opened)
        return opened.failure();
    return std::unique_ptr<AudioFile>(new AudioFile(std::move(impl)));
}

void AudioFile::prepare() {
    (void)libav::load(); // opening will tell why it failed
}

const StreamFormat& AudioFile::format() const {
    return m_impl->decoder.format();
}

std::int64_t AudioFile::lengthFrames() const {
    return m_impl->extent.length;
}

double AudioFile::durationSeconds() const {
    return static_cast<double>(lengthFrames()) / format().sampleRate;
}

std::int64_t AudioFile::position() const {
    return m_impl->position;
}

void AudioFile::seek(std::int64_t frame) {
    const std::int64_t target = std::clamp<std::int64_t>(frame, 0, lengthFrames());
    if (target == m_impl->position && !m_impl->failure)
        return;
    m_impl->position = target;
    m_impl->failure.reset();
    m_impl->mustSeek = true;
}

std::size_t AudioFile::read(float* interleaved, std::size_t frames) {
    return m_impl->read(interleaved, frames);
}

std::size_t AudioFile::readAt(std::int64_t frame, float* interleaved, std::size_t frames) {
    const std::lock_guard lock(m_impl->reading);
    seek(frame);
    return m_impl->read(interleaved, frames);
}

const std::optional<QString>& AudioFile::failure() const {
    return m_impl->failure;
}

} // namespace halvane
