// SPDX-License-Identifier: MIT
#include "audio/files/file_opener.h"

#include "platform/cloud/cloud_files.h"
#include "platform/thread_check.h"

#include <thread>
#include <utility>

namespace halvane {

namespace {

/// The file, for several owners. Closing may hang just as reading may, so whoever lets go last
/// leaves it to a thread of its own.
std::shared_ptr<AudioFile> shared(std::unique_ptr<AudioFile> file) {
    return {file.release(), [](AudioFile* last) { std::thread([last] { delete last; }).detach(); }};
}

FileOpener::Outcome opened(const QString& path, const CloudFiles* cloudFiles) {
    if (cloudFiles && cloudFiles->isEvicted(path))
        return {.file = nullptr, .isInCloud = true, .failure = {}};
    auto result = AudioFile::open(path);
    if (!result)
        return {.file = nullptr, .isInCloud = false, .failure = result.failure().text};
    return {.file = shared(*std::move(result)), .isInCloud = false, .failure = {}};
}

} // namespace

FileOpener::FileOpener(std::shared_ptr<const CloudFiles> cloudFiles, QObject* parent)
    : QObject(parent)
    , m_cloudFiles(std::move(cloudFiles)) {
}

void FileOpener::open(const QString& path, Done done) {
    assertOwnThread(*this);
    m_worker.leaveBehind();
    m_done = std::move(done);
    m_worker.run([path, cloudFiles = m_cloudFiles] { return opened(path, cloudFiles.get()); },
                 [this](Outcome outcome) { std::exchange(m_done, nullptr)(std::move(outcome)); });
}

void FileOpener::cancel() {
    m_worker.leaveBehind();
    m_done = nullptr;
}

} // namespace halvane
