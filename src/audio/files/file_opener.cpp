// SPDX-License-Identifier: MIT
#include "audio/files/file_opener.h"

#include "platform/thread_check.h"

#include <utility>

namespace halvane {

FileOpener::FileOpener(QObject* parent)
    : QObject(parent) {
}

void FileOpener::open(const QString& path, Done done) {
    assertOwnThread(*this);
    m_worker.leaveBehind();
    m_done = std::move(done);
    m_worker.run(
        [path] { return AudioFile::open(path); },
        [this](AudioFile::Opened opened) { std::exchange(m_done, nullptr)(std::move(opened)); });
}

void FileOpener::cancel() {
    m_worker.leaveBehind();
    m_done = nullptr;
}

} // namespace halvane
