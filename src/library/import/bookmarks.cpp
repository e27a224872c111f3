// SPDX-License-Identifier: MIT
#include "library/import/bookmarks.h"

#include "library/user/settings_keys.h"
#include "model/file_url.h"
#include "platform/log.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"

#include <unistd.h>

namespace halvane {

Bookmarks::Bookmarks(Preferences& preferences, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences) {
}

Bookmarks::Answer Bookmarks::ask(const QByteArray& path) {
    return {::access(path.constData(), F_OK) == 0, ::access(path.constData(), R_OK) == 0};
}

void Bookmarks::restoreBookmarkAccess() {
    assertOwnThread(*this);
    const auto blobs =
        m_preferences.blobs(SettingsKey::securityBookmarks).value_or(std::vector<QByteArray>());
    if (blobs.empty()) {
        qCInfo(libraryLog, "bookmark restore: none stored");
        return;
    }
    m_worker.run(
        [blobs] {
            std::vector<Answer> answers;
            for (const QByteArray& blob : blobs)
                answers.push_back(ask(blob));
            return answers;
        },
        [this, blobs](const std::vector<Answer>& answers) { finishRestoring(blobs, answers); });
}

void Bookmarks::finishRestoring(const std::vector<QByteArray>& blobs,
                                const std::vector<Answer>& answers) {
    long resolved = 0;
    long accessed = 0;
    std::vector<QByteArray> kept;
    for (std::size_t i = 0; i < blobs.size(); ++i) {
        if (!answers[i].exists)
            continue;
        ++resolved;
        kept.push_back(blobs[i]);
        if (!answers[i].isReadable)
            continue;
        ++accessed;
        m_accessed.insert(standardizedPath(QString::fromUtf8(blobs[i])));
    }
    constexpr long stale = 0; // a path does not age
    qCInfo(libraryLog, "bookmark restore: stored=%ld resolved=%ld accessed=%ld stale=%ld",
           static_cast<long>(blobs.size()), resolved, accessed, stale);
    if (kept.size() != blobs.size())
        m_preferences.setBlobs(SettingsKey::securityBookmarks, kept);
    Q_EMIT stored();
}

void Bookmarks::persistBookmarks(const QStringList& forGrantedRoots) {
    assertOwnThread(*this);
    m_worker.run(
        [forGrantedRoots] {
            std::vector<Answer> answers;
            for (const QString& root : forGrantedRoots)
                answers.push_back(ask(root.toUtf8()));
            return answers;
        },
        [this, forGrantedRoots](const std::vector<Answer>& answers) {
            finishPersisting(forGrantedRoots, answers);
        });
}

void Bookmarks::finishPersisting(const QStringList& roots, const std::vector<Answer>& answers) {
    auto blobs =
        m_preferences.blobs(SettingsKey::securityBookmarks).value_or(std::vector<QByteArray>());
    QSet<QByteArray> known(blobs.cbegin(), blobs.cend());
    const auto before = blobs.size();
    for (qsizetype i = 0; i < roots.size(); ++i) {
        const QString path = standardizedPath(roots[i]);
        const Answer answer = answers[static_cast<std::size_t>(i)];
        if (m_accessed.contains(path))
            continue;
        if (answer.isReadable)
            m_accessed.insert(path);
        if (!answer.exists) {
            qCCritical(libraryLog, "bookmark creation failed (accessed=%s)",
                       answer.isReadable ? "true" : "false");
            continue;
        }
        if (known.contains(path.toUtf8()))
            continue;
        known.insert(path.toUtf8());
        blobs.push_back(path.toUtf8());
    }
    if (blobs.size() != before)
        m_preferences.setBlobs(SettingsKey::securityBookmarks, blobs);
    Q_EMIT stored();
}

} // namespace halvane
