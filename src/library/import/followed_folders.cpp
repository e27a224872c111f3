// SPDX-License-Identifier: MIT
#include "library/import/followed_folders.h"

#include "library/catalog/track_rows.h"
#include "library/import/importer.h"
#include "library/tidying/file_availability.h"
#include "library/tidying/tidying.h"
#include "library/user/language_setting.h"
#include "library/user/settings_keys.h"
#include "platform/cloud/cloud_files.h"
#include "platform/log.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"

#include <QFileInfo>

#include <algorithm>

namespace halvane {

namespace {

constexpr std::chrono::minutes betweenLooks{10};
constexpr std::chrono::seconds restBetweenLooks{60}; // whoever goes to and fro between windows

} // namespace

FollowedFolders::FollowedFolders(FollowedFoldersNeeds needs, QObject* parent)
    : QObject(parent)
    , m_needs(std::move(needs)) {
    m_nowAndThen.setInterval(betweenLooks);
    m_nowAndThen.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_nowAndThen, &QTimer::timeout, this, &FollowedFolders::compareUnseen);
    connect(&m_watch, &FolderWatch::happened, this, &FollowedFolders::hear);
    // What came before is compared, and what comes now is told.
    connect(&m_watch, &FolderWatch::armed, this, [this] {
        rescan();
        unseen().isEmpty() ? m_nowAndThen.stop() : m_nowAndThen.start();
    });
    connect(&m_needs.importer, &Importer::idle, this, &FollowedFolders::lookWhenIdle);
    connect(&m_needs.importer, &Importer::rootsGiven, this, &FollowedFolders::follow);
    connect(&m_needs.importer, &Importer::rootsGivenUp, this, &FollowedFolders::giveUp);
    connect(&m_needs.tidying, &Tidying::removing, this, &FollowedFolders::leaveOut);
    connect(&m_needs.store, &LibraryStore::came, this, &FollowedFolders::letBack);
}

void FollowedFolders::restore() {
    Preferences& preferences = m_needs.preferences;
    m_isFollowing = preferences.boolean(SettingsKey::followsFolders).value_or(true);
    m_folders = preferences.strings(SettingsKey::followedFolders).value_or(QStringList());
    const auto leftOut = preferences.strings(SettingsKey::leftOutPaths).value_or(QStringList());
    m_leftOut = {leftOut.cbegin(), leftOut.cend()};
}

void FollowedFolders::begin() {
    m_isBegun = true;
    watch();
}

void FollowedFolders::setFollowing(bool isFollowing) {
    if (std::exchange(m_isFollowing, isFollowing) == isFollowing)
        return;
    m_needs.preferences.setBoolean(SettingsKey::followsFolders, isFollowing);
    Q_EMIT isFollowingChanged();
    watch();
}

void FollowedFolders::follow(const QStringList& roots) {
    assertOwnThread(*this);
    m_disk.run(
        [roots] {
            QStringList folders;
            for (const QString& root : roots)
                if (QFileInfo(root).isDir())
                    folders.append(standardizedPath(root));
            return folders;
        },
        [this](const QStringList& given) {
            QStringList folders = m_folders;
            for (const QString& folder : given)
                folders = folderAdded(folders, folder);
            for (const QString& folder : folders)
                if (!m_folders.contains(folder))
                    m_lately.append(folder);
            setFolders(folders);
        });
}

/// What was followed before stays so.
void FollowedFolders::giveUp(const QStringList& roots) {
    for (const QString& root : roots)
        if (const QString folder = standardizedPath(root); m_lately.contains(folder))
            stopFollowing(folder);
}

void FollowedFolders::setFolders(const QStringList& folders) {
    if (folders == m_folders)
        return;
    m_folders = folders;
    m_needs.preferences.setStrings(SettingsKey::followedFolders, folders);
    Q_EMIT foldersChanged();
    watch();
}

void FollowedFolders::watch() {
    if (!m_isBegun)
        return;
    m_worker.leaveBehind();
    m_waiting = {};
    m_watch.watch(m_isFollowing ? m_folders : QStringList());
}

void FollowedFolders::rescan() {
    lookAt({m_folders, {}});
}

void FollowedFolders::lookAround() {
    if (m_lastLook.isValid() && std::chrono::milliseconds(m_lastLook.elapsed()) < restBetweenLooks)
        return;
    m_lastLook.start();
    compareUnseen();
}

/// Where other machines may change files, or nothing tells of changes.
QStringList FollowedFolders::unseen() const {
    QStringList unseen;
    if (m_isBegun && m_isFollowing)
        std::copy_if(m_folders.cbegin(), m_folders.cend(), std::back_inserter(unseen),
                     [this](const QString& folder) {
                         return m_watch.unwatched().contains(folder) ||
                                m_needs.reading.cloudFiles->storage(folder) != Storage::disk;
                     });
    return unseen;
}

void FollowedFolders::compareUnseen() {
    if (!m_watch.unwatched().isEmpty())
        watch(); // one that was not there may have come
    else if (const QStringList folders = unseen(); !folders.isEmpty())
        lookAt({folders, {}});
}

void FollowedFolders::hear(const FolderNews& news) {
    if (news.isAnyLost)
        return watch();
    if (news.isAnyGone)
        Q_EMIT filesWentOrCame();
    FolderLook look{news.folders, {}};
    for (const auto& [from, to] :
         {std::pair(&news.files, &look.places), std::pair(&news.created, &look.created)})
        std::copy_if(from->cbegin(), from->cend(), std::back_inserter(*to),
                     &TrackMetadataLoader::isPlayable);
    if (!look.places.isEmpty() || !look.created.isEmpty())
        lookAt(look);
}

/// An import that runs may be reading these files.
void FollowedFolders::lookAt(const FolderLook& look) {
    m_waiting.places += look.places;
    m_waiting.created += look.created;
    if (!m_needs.importer.isImporting())
        lookWhenIdle();
}

void FollowedFolders::lookWhenIdle() {
    m_lately.clear();
    const FolderLook look = std::exchange(m_waiting, {});
    if (look.places.isEmpty() && look.created.isEmpty())
        return;
    m_worker.run(
        [look, library = m_needs.store.snapshot(), leftOut = m_leftOut, needs = m_needs.reading,
         language = m_needs.language.resolvedLanguage()](const SerialWorker::Job& job) {
            return folderChanges(look, *library, leftOut, needs, language, job.token());
        },
        [this](const FolderChanges& changes) { take(changes); });
}

void FollowedFolders::take(const FolderChanges& changes) {
    if (!changes.changed.empty())
        Q_EMIT readAgain(changes.changed);
    if (!changes.fresh.isEmpty())
        m_needs.importer.takeIn(changes.fresh);
    Q_EMIT filesWentOrCame();
    Q_EMIT compared();
}

/// What is missing has left by itself, and may come back so.
void FollowedFolders::leaveOut(const QStringList& removed) {
    QStringList staying;
    for (const QString& path : removed) {
        const bool isFollowed =
            std::any_of(m_folders.cbegin(), m_folders.cend(),
                        [&](const QString& folder) { return liesIn(path, folder); });
        if (isFollowed && m_needs.files.state(path) != TrackAvailability::missing)
            staying.append(path);
    }
    if (staying.isEmpty())
        return;
    m_leftOut.unite({staying.cbegin(), staying.cend()});
    m_needs.preferences.insertStrings(SettingsKey::leftOutPaths, staying);
}

void FollowedFolders::letBack(const TrackRows& came) {
    QStringList back;
    if (!m_leftOut.isEmpty())
        for (const TrackPtr& row : came)
            if (m_leftOut.remove(row->path()))
                back.append(row->path());
    if (!back.isEmpty())
        m_needs.preferences.removeEntries({SettingsKey::leftOutPaths}, back);
}

QStringList FollowedFolders::tracksIn(const QString& folder) const {
    QStringList paths;
    for (const TrackPtr& row : m_needs.store.rows())
        if (liesIn(row->path(), folder))
            paths.append(row->path());
    return paths;
}

int FollowedFolders::trackCount(const QString& folder) const {
    return static_cast<int>(tracksIn(folder).size());
}

void FollowedFolders::stopFollowing(const QString& folder) {
    QStringList folders = m_folders;
    folders.removeAll(folder);
    setFolders(folders);
}

void FollowedFolders::removeWithTracks(const QString& folder) {
    const QStringList paths = tracksIn(folder);
    stopFollowing(folder); // first, or the tracks would be noted as left out of it
    if (!paths.isEmpty())
        m_needs.tidying.removeTracks(paths);
}

} // namespace halvane
