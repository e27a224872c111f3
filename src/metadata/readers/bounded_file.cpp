// SPDX-License-Identifier: MIT
#include "metadata/readers/bounded_file.h"

#include "metadata/file_dates.h"
#include "metadata/parallel/processor_time.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace halvane {

BoundedFile::BoundedFile(const QString& path, const ReadingLimits& limits)
    : m_name(path.toUtf8())
    , m_limits(limits)
    , m_deadline(std::chrono::steady_clock::now() + limits.time)
    , m_workDeadline(processorTime() + limits.time) {
    struct stat facts;
    // Opening a device can have effects, so the kind is looked at first.
    m_missing = ::stat(m_name.constData(), &facts) != 0;
    if (m_missing || !S_ISREG(facts.st_mode))
        return;
    m_descriptor = ::open(m_name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (m_descriptor < 0)
        return;
    m_size = facts.st_size;
    m_modificationDate = referenceDate(facts.st_mtim);
}

BoundedFile::~BoundedFile() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool BoundedFile::checkTime() {
    // The thread's clock costs a system call, and is never ahead of the steady one.
    if (std::chrono::steady_clock::now() > m_deadline && processorTime() > m_workDeadline)
        m_exhausted = m_late = true;
    return m_late;
}

qint64 BoundedFile::clampedLength(qint64 offset, qint64 length) const {
    if (m_exhausted || offset < 0 || offset >= m_size || length <= 0)
        return 0;
    return std::min({length, m_size - offset, m_limits.blockBytes});
}

const BoundedFile::Window* BoundedFile::windowOf(qint64 offset, qint64 length) const {
    const auto found =
        std::find_if(m_windows.begin(), m_windows.end(), [offset, length](const Window& window) {
            return window.holds(offset, length);
        });
    return found == m_windows.end() ? nullptr : &*found;
}

const BoundedFile::Window* BoundedFile::fillWindow(qint64 offset) {
    Window& window = m_windows[m_oldest];
    m_oldest = (m_oldest + 1) % m_windows.size();
    window.start = offset / Window::step * Window::step;
    ssize_t got;
    do
        got = ::pread(m_descriptor, window.data, Window::bytes, window.start);
    while (got < 0 && errno == EINTR);
    window.length = std::max<ssize_t>(got, 0);
    m_bytesRead += window.length;
    return &window;
}

qint64 BoundedFile::read(qint64 offset, qint64 length, char* data) {
    length = clampedLength(offset, length);
    if (length == 0 || !isOpen())
        return 0;
    if (++m_reads > m_limits.reads || m_bytesRead + length > m_limits.totalBytes)
        m_exhausted = true;
    if (m_exhausted)
        return 0;

    const Window* window = windowOf(offset, length);
    if (!window && checkTime())
        return 0;
    if (!window && length <= Window::bytes - Window::step)
        window = fillWindow(offset);
    if (window) {
        // A file that was cut short meanwhile gives less than was asked for.
        const qint64 available = std::min(length, window->start + window->length - offset);
        if (available <= 0)
            return 0;
        std::memcpy(data, window->data + (offset - window->start), static_cast<size_t>(available));
        return available;
    }
    qint64 done = 0;
    while (done < length) {
        const ssize_t got =
            ::pread(m_descriptor, data + done, static_cast<size_t>(length - done), offset + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += got;
    }
    m_bytesRead += done;
    return done;
}

QByteArray BoundedFile::read(qint64 offset, qint64 length) {
    QByteArray bytes(clampedLength(offset, length), Qt::Uninitialized);
    bytes.truncate(read(offset, bytes.size(), bytes.data()));
    return bytes;
}

} // namespace halvane
