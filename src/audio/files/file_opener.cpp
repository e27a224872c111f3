// SPDX-License-Identifier: MIT
#include "audio/files/file_opener.h"

#include "platform/thread_check.h"

#include <memory>
#include <utility>

namespace halvane {

FileOpener::FileOpener(QObject* parent)
    : QObject(parent) {
    m_worker.setMaxThreadCount(1);
}

FileOpener::~FileOpener() {
    m_worker.clear();
    m_worker.waitForDone();
}

void FileOpener::open(const QString& path, Done done) {
    assertOwnThread(*this);
    m_worker.clear(); // a request that has not been begun
    m_done = std::move(done);
    m_worker.start([this, path, generation = ++m_generation] {
        // What is posted has to be copied, so the file travels shared.
        const auto opened = std::make_shared<AudioFile::Opened>(AudioFile::open(path));
        QMetaObject::invokeMethod(
            this,
            [this, generation, opened] {
                if (generation == m_generation && m_done)
                    std::exchange(m_done, nullptr)(std::move(*opened));
            },
            Qt::QueuedConnection);
    });
}

void FileOpener::cancel() {
    m_done = nullptr;
}

} // namespace halvane
