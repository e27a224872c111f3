// SPDX-License-Identifier: MIT
#include "audio/files/audio_file.h"

#include "audio/files/audio_decoder.h"
#include "audio/files/stream_extent.h"
#include "libav/ogg_links.h"
#include "platform/log.h"

#include <QFile>

#include <algorithm>
#include <mutex>
#include <vector>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

/// One of the streams that a file holds one behind the other; most files hold one.
struct Part {
    std::optional<AudioDecoder::Part> bytes; ///< none: the whole file
    StreamExtent extent;
    std::int64_t begin = 0; ///< the first frame, on the file's timeline
    [[nodiscard]] std::int64_t end() const { return begin + extent.length; }
};

/// The links of an Ogg file as its parts, empty for other files.
std::vector<Part> partsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || file.peek(4) != "OggS")
        return {};
    std::vector<Part> parts;
    std::int64_t begin = 0;
    for (const OggLink& link : oggLinks(byteSource(file))) {
        parts.push_back(
            {AudioDecoder::Part{link.begin, link.end}, {link.delay, link.length}, begin});
        begin += link.length;
    }
    if (parts.size() == 1)
        parts.front().bytes.reset();
    return parts;
}

} // namespace

class AudioFile::Impl {
  public:
    Result<> open(const QString& path);
    std::size_t read(float* out, std::size_t frames);
    [[nodiscard]] std::int64_t length() const { return parts.back().end(); }

    std::mutex reading; ///< held by readAt
    QString path;
    std::vector<Part> parts; ///< one at least, once open
    std::int64_t position = 0;
    std::optional<QString> failure;
    std::unique_ptr<AudioDecoder> decoder; ///< of the present part
    bool mustSeek = false;                 ///< the decoder is elsewhere than at `position`

  private:
    [[nodiscard]] const Part& part() const { return parts[m_part]; }
    /// The position on the decoder's timeline.
    [[nodiscard]] std::int64_t rawPosition() const {
        return position - part().begin + part().extent.delay;
    }
    bool goToPosition();
    bool enterPart();
    std::int64_t readSome(float* out, std::int64_t frames);
    [[nodiscard]] bool holds(std::int64_t raw) const {
        return decoder->blockStart() <= raw && raw < decoder->blockEnd();
    }
    void endEarly();

    std::size_t m_part = 0;
};

Result<> AudioFile::Impl::open(const QString& file) {
    path = file;
    decoder = std::make_unique<AudioDecoder>();
    if (auto opened = decoder->open(file); !opened)
        return opened;
    parts = partsOf(file);
    if (parts.empty())
        parts.push_back({std::nullopt, findExtent(*decoder, file), 0});
    if (const auto bytes = parts.front().bytes) {
        decoder = std::make_unique<AudioDecoder>();
        if (auto opened = decoder->open(file, bytes); !opened)
            return opened;
    }
    if (length() == 0)
        return Failure{u"There is no sound in the file"_s};
    // Finding the extent may have read ahead.
    mustSeek = decoder->blockStart() == decoder->blockEnd();
    return {};
}

bool AudioFile::Impl::goToPosition() {
    mustSeek = false;
    return enterPart() && (holds(rawPosition()) || decoder->seek(rawPosition()));
}

/// Opens the part that holds the position, unless it is open.
bool AudioFile::Impl::enterPart() {
    const auto holding = std::find_if(parts.begin(), parts.end(),
                                      [this](const Part& p) { return position < p.end(); });
    const auto wanted = static_cast<std::size_t>(holding - parts.begin());
    if (wanted == m_part)
        return true;
    const StreamFormat format = decoder->format();
    auto next = std::make_unique<AudioDecoder>();
    if (!next->open(path, parts[wanted].bytes) || next->format() != format)
        return false;
    decoder = std::move(next);
    m_part = wanted;
    return true;
}

std::size_t AudioFile::Impl::read(float* out, std::size_t frames) {
    const std::int64_t begin = position;
    const std::int64_t end = std::min(begin + static_cast<std::int64_t>(frames), length());
    const int channels = decoder->format().channels;
    while (position < end && !failure) {
        if (position == part().end())
            mustSeek = true; // in the next part
        if (mustSeek && !goToPosition()) {
            endEarly();
            break;
        }
        const std::int64_t count =
            readSome(out + (position - begin) * channels, std::min(end, part().end()) - position);
        position += count;
    }
    return static_cast<std::size_t>(position - begin);
}

/// Reads up to `frames` frames of the present part: as many as the present block, or the gap in
/// front of it, has. 0 when only the next block was fetched, or the last part ends early.
std::int64_t AudioFile::Impl::readSome(float* out, std::int64_t frames) {
    const std::int64_t raw = rawPosition();
    if (raw >= decoder->blockEnd()) {
        if (decoder->next())
            return 0;
        if (m_part + 1 < parts.size()) { // the next part keeps its place
            std::fill_n(out, frames * decoder->format().channels, 0.0F);
            return frames;
        }
        endEarly();
        return 0;
    }
    const bool isGap = raw < decoder->blockStart();
    const std::int64_t stop = isGap ? decoder->blockStart() : decoder->blockEnd();
    const std::int64_t count = std::min(frames, stop - raw);
    if (isGap)
        std::fill_n(out, count * decoder->format().channels, 0.0F);
    else
        decoder->copy(raw, static_cast<std::size_t>(count), out);
    return count;
}

void AudioFile::Impl::endEarly() {
    failure = decoder->readError().value_or(u"The file ends early"_s);
    qCWarning(libraryLog, "\"%s\" ends at frame %lld of %lld: %s", qUtf8Printable(path),
              static_cast<long long>(position), static_cast<long long>(length()),
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
    return m_impl->decoder->format();
}

std::int64_t AudioFile::lengthFrames() const {
    return m_impl->length();
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
