// SPDX-License-Identifier: MIT
#include "library/browsing/table_place.h"
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "library/tracks.h"
#include "library/user/settings_keys.h"
#include "support/fake_environment.h"

#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace halvane::test {
namespace {

class TidyingTest : public testing::Test {
  protected:
    QString touch(const QString& name) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }
    void add(const QStringList& paths) {
        std::vector<Track> tracks;
        for (const QString& path : paths) {
            tracks.push_back(trackAt(path));
            tracks.back().durationSeconds = 1;
        }
        const TrackRows rows = rowsOf(tracks);
        library.store()->append(rows);
        library.queue()->append(rows);
    }
    void refreshed() {
        bool isRefreshed = false;
        const auto connection = QObject::connect(library.availability(), &Availability::refreshed,
                                                 [&] { isRefreshed = true; });
        library.availability()->refreshAvailability();
        while (!isRefreshed)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QObject::disconnect(connection);
    }

    FakeEnvironment environment;
    QTemporaryDir folder;
    LibraryViewModel library{environment};
};

TEST_F(TidyingTest, TellsWhatIsMissingAndWhatIsInTheCloud) {
    const QString there = touch(u"there.mp3"_s);
    const QString gone = folder.filePath(u"gone.mp3"_s);
    const QString away = folder.filePath(u"away.mp3"_s);
    environment.cloudFiles->setEvicted({away});
    add({there, gone, away});
    // The files of the library are looked at, also if the queue has only some of them.
    library.queue()->assign({library.store()->track(there)}, u"album"_s);
    refreshed();
    EXPECT_EQ(library.availability()->state(there), TrackAvailability::available);
    EXPECT_EQ(library.availability()->state(gone), TrackAvailability::missing);
    EXPECT_EQ(library.availability()->state(away), TrackAvailability::inCloud);
    EXPECT_EQ(library.availability()->state({}), TrackAvailability::available);
    EXPECT_EQ(library.tidying()->maintenanceActionCount(), 2);

    touch(u"gone.mp3"_s);
    environment.cloudFiles->setEvicted({});
    touch(u"away.mp3"_s);
    refreshed();
    EXPECT_EQ(library.tidying()->maintenanceActionCount(), 0);
}

TEST_F(TidyingTest, OnlyTheNewestLookCounts) {
    const QString path = folder.filePath(u"a.mp3"_s);
    const QString other = touch(u"b.mp3"_s);
    add({other, path});
    library.catalog()->rebuildImportedAlbums();
    while (library.browsing()->visibleTracks()->rowCount() < 2)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    int changes = 0;
    int looks = 0;
    QObject::connect(library.availability(), &Availability::unavailablePathsChanged,
                     [&] { ++changes; });
    QObject::connect(library.availability(), &Availability::refreshed, [&] { ++looks; });
    int rows = 0;
    for (const QAbstractItemModel* list :
         {static_cast<QAbstractItemModel*>(library.queue()),
          static_cast<QAbstractItemModel*>(library.browsing()->visibleTracks())})
        QObject::connect(list, &QAbstractItemModel::dataChanged,
                         [&](const QModelIndex& first, const QModelIndex& last) {
                             rows += last.row() - first.row() + 1;
                         });
    library.availability()->refreshAvailability();
    refreshed();
    EXPECT_EQ(looks, 1);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(rows, 2) << "one in the queue and one in the library are drawn again";

    // A file that is played meanwhile makes the look stale, so that another one follows.
    library.availability()->refreshAvailability();
    touch(u"a.mp3"_s);
    library.availability()->markAvailable(path);
    while (looks < 2)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(library.availability()->state(path), TrackAvailability::available);

    library.availability()->markInCloud(path);
    EXPECT_EQ(library.availability()->state(path), TrackAvailability::inCloud);
    library.availability()->markMissing(path);
    EXPECT_EQ(library.availability()->state(path), TrackAvailability::missing);
}

TEST_F(TidyingTest, WatchesDownloadsForHalfAnHourAtMost) {
    const QString path = folder.filePath(u"a.mp3"_s);
    library.downloads()->downloadAllCloudTracks();
    EXPECT_EQ(library.status()->text(), QString());
    add({path});
    environment.cloudFiles->setEvicted({path});
    refreshed();
    library.downloads()->downloadAllCloudTracks();
    EXPECT_EQ(environment.cloudFiles->downloading, QStringList{path});
    EXPECT_EQ(library.status()->text(),
              u"Downloading 1 track from iCloud - it will be playable shortly"_s);
    EXPECT_TRUE(library.downloads()->cloudDownloadInFlight());
    environment.clock.advance(2s + 29 * 2s + 179 * 10s);
    EXPECT_TRUE(library.downloads()->cloudDownloadInFlight());
    environment.clock.advance(20s);
    EXPECT_FALSE(library.downloads()->cloudDownloadInFlight());

    // The watch ends when the last file has come.
    refreshed();
    library.downloads()->downloadAllCloudTracks();
    refreshed();
    EXPECT_TRUE(library.downloads()->cloudDownloadInFlight());
    environment.cloudFiles->setEvicted({});
    touch(u"a.mp3"_s);
    refreshed();
    EXPECT_FALSE(library.downloads()->cloudDownloadInFlight());
}

Track song(const QString& path, const QString& title, std::optional<double> seconds) {
    Track track = trackOf(path, title, u"The Lanterns"_s, u"Night Walk"_s);
    track.durationSeconds = seconds;
    return track;
}

TEST_F(TidyingTest, DuplicatesAreOneSongByTitleArtistAndSeconds) {
    const TrackRows rows =
        rowsOf({song(u"/1"_s, u"Lamplight"_s, 200.9), song(u"/2"_s, u"Dusk"_s, 201.0),
                song(u"/3"_s, u"LAMPLIGHT"_s, 200.2), song(u"/4"_s, u"Dusk"_s, 200.9),
                song(u"/5"_s, u"Dawn"_s, {}), song(u"/6"_s, u"dawn"_s, {}),
                song(u"/7"_s, u"Dawn "_s, {}), song(u"/8"_s, u"lamplight"_s, 200.0)});
    const auto groups = duplicateTrackGroups(rows);
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0], (TrackRows{rows[0], rows[2], rows[7]}));
    EXPECT_EQ(groups[1], (TrackRows{rows[4], rows[5]}));
    const QSet<QString> unplayable{u"/1"_s, u"/5"_s, u"/6"_s};
    const auto isAvailable = [&](const QString& p) { return !unplayable.contains(p); };
    EXPECT_EQ(superfluousCopies(groups, {}, isAvailable), (QStringList{u"/1"_s, u"/8"_s, u"/6"_s}));
    EXPECT_EQ(superfluousCopies(groups, {{u"/3"_s, u"/8"_s}, {u"/5"_s, u"/6"_s}}, isAvailable),
              (QStringList{u"/1"_s, u"/3"_s, u"/6"_s}))
        << "the one behind the link stays if it is available";
    EXPECT_EQ(superfluousCopies(groups, {{u"/3"_s, u"/elsewhere"_s}}, isAvailable),
              (QStringList{u"/1"_s, u"/8"_s, u"/6"_s}));
}

TEST_F(TidyingTest, RemovedTracksAreGoneEverywhereButOnTheDisk) {
    const QString kept = touch(u"kept.mp3"_s);
    // The first in the library, and only a way to the other.
    const QString copy = folder.filePath(u"copy.mp3"_s);
    ASSERT_TRUE(QFile::link(kept, copy));
    const TrackRows rows =
        rowsOf({song(copy, u"lamplight"_s, 200.5), song(kept, u"Lamplight"_s, 200.1)});
    library.store()->append(rows);
    library.queue()->append(rows);
    library.queue()->setCurrentRow(0);
    library.importedPaths()->add({kept, copy});
    library.duplicates()->refresh();
    EXPECT_EQ(library.duplicates()->duplicateGroupCount(), 1);
    library.userData()->toggleLoved(copy);
    library.userData()->setRating(3, copy);
    library.userData()->countPlay(copy, 300);
    environment.preferences.insertNumbers(SettingsKey::trackLoudness, copy, {-12, -1});
    const QUuid list = library.playlists()->createPlaylist(u"Mine"_s);
    library.playlists()->addTrackPaths({copy, kept}, list);
    library.availability()->markMissing(u"/elsewhere"_s);

    library.tidying()->removeDuplicateTracks();
    while (library.store()->size() > 1)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(library.store()->size(), 1U);
    EXPECT_EQ(library.queue()->size(), 1U);
    EXPECT_FALSE(library.queue()->currentRow());
    EXPECT_FALSE(library.userData()->isLoved(copy));
    EXPECT_EQ(library.userData()->rating(copy), 0);
    EXPECT_EQ(library.userData()->playCount(copy), 0);
    EXPECT_EQ(library.playlists()->find(list)->trackPaths, std::vector{kept});
    EXPECT_EQ(*environment.preferences.strings(SettingsKey::importedAudioPaths), QStringList{kept});
    EXPECT_TRUE(environment.preferences.strings(SettingsKey::lovedPaths)->isEmpty());
    for (const auto& key :
         {SettingsKey::trackRatings, SettingsKey::playCounts, SettingsKey::lastPlayed})
        EXPECT_TRUE(environment.preferences.integerMap(key)->isEmpty());
    EXPECT_TRUE(environment.preferences.numbersMap(SettingsKey::trackLoudness)->isEmpty());
    EXPECT_EQ(library.duplicates()->duplicateGroupCount(), 0);
    EXPECT_EQ(library.tidying()->maintenanceActionCount(), 1);
    EXPECT_TRUE(QFile::exists(copy));
}

TEST_F(TidyingTest, RemovedTracksComeBackToTheirPlacesWithWhatWasSaid) {
    QStringList paths;
    for (const char* name : {"a", "b", "c", "d", "e"})
        paths.append(touch(QString::fromUtf8(name)));
    add(paths);
    const TrackRows rows = library.store()->rows();
    library.queue()->append({rows[1]}); // once more, at the end
    library.queue()->setCurrentRow(0);
    library.importedPaths()->add(paths);
    library.userData()->toggleLoved(paths[1]);
    library.userData()->setRating(4, paths[1]);
    library.userData()->countPlay(paths[3], 700);
    const QUuid list = library.playlists()->createPlaylist(u"Mine"_s);
    library.playlists()->addTrackPaths({paths[3], paths[0], paths[1]}, list);
    const QUuid other = library.playlists()->createPlaylist(u"Other"_s);
    library.playlists()->addTrackPaths({paths[1], paths[0]}, other);
    const auto before = library.playlists()->all();
    const auto stored = environment.preferences.strings(SettingsKey::importedAudioPaths);

    library.tidying()->removeTracks({paths[3], paths[1], u"/unknown"_s});
    ASSERT_EQ(library.store()->size(), 3U);
    EXPECT_EQ(library.status()->text(), u"Removed 2 tracks from the library"_s);
    EXPECT_TRUE(library.status()->offersUndo());
    library.userData()->toggleLoved(paths[4]);
    library.history()->undo();
    EXPECT_EQ(library.store()->rows(), rows);
    for (const QString& path : paths)
        EXPECT_EQ(library.store()->track(path)->path(), path) << "found by its path";
    QStringList queued;
    for (const TrackPtr& record : library.queue()->records())
        queued.append(record->path());
    EXPECT_EQ(queued, paths + QStringList{paths[1]});
    EXPECT_EQ(library.queue()->currentRow(), 0U);
    EXPECT_EQ(library.userData()->said(paths[1]), (Said{true, 4, 0}));
    EXPECT_EQ(library.userData()->said(paths[3]), (Said{false, 0, 1, 700}));
    EXPECT_EQ(library.playlists()->all(), before);
    EXPECT_EQ(environment.preferences.strings(SettingsKey::importedAudioPaths), stored);
    EXPECT_EQ(environment.preferences.integerMap(SettingsKey::playCounts)->value(paths[3]), 1);
    EXPECT_FALSE(library.history()->canUndo());
    EXPECT_FALSE(library.history()->canRedo());
}

// Another queue does not take the entries of the one before, and what came back by itself is there
// once.
TEST_F(TidyingTest, RemovedTracksComeBackToWhatIsThereByThen) {
    const QStringList paths{touch(u"a"_s), touch(u"b"_s), touch(u"c"_s)};
    add(paths);
    const TrackPtr kept = library.store()->track(paths[2]);
    const QUuid list = library.playlists()->createPlaylist(u"Mine"_s);
    library.playlists()->addTrackPaths(paths, list);
    library.userData()->countPlay(paths[0]);
    library.tidying()->removeTracks({paths[0], paths[1]});
    library.store()->append(rowsOf({trackAt(paths[0])}));
    library.playlists()->addTrackPaths({paths[0]}, list);
    library.userData()->countPlay(paths[0]);
    library.queue()->assign({kept}, u"Night Walk"_s);
    library.history()->undo();
    QStringList all;
    for (const TrackPtr& row : library.store()->rows())
        all.append(row->path());
    EXPECT_EQ(all, (QStringList{paths[2], paths[1], paths[0]}));
    EXPECT_EQ(library.queue()->size(), 1U);
    EXPECT_EQ(library.playlists()->find(list)->trackPaths,
              (std::vector{paths[2], paths[1], paths[0]}));
    EXPECT_EQ(library.userData()->playCount(paths[0]), 2);
}

TEST_F(TidyingTest, PlaylistsAndTheirTracksComeBack) {
    const QUuid first = library.playlists()->createPlaylist(u"First"_s);
    const QUuid second = library.playlists()->createPlaylist(u"Second"_s);
    library.playlists()->addTrackPaths({u"/1"_s, u"/2"_s, u"/3"_s}, first);
    const auto before = library.playlists()->all();
    library.playlists()->removeTrackPath(u"/2"_s, first);
    library.playlists()->deletePlaylist(first);
    EXPECT_EQ(library.status()->text(), u"Deleted playlist \"First\""_s);
    library.history()->undo();
    EXPECT_EQ(library.history()->undoName(), L10nKey::removeFromPlaylist);
    library.history()->undo();
    EXPECT_EQ(library.playlists()->all(), before);
    library.playlists()->removeTrackPaths({u"/3"_s, u"/1"_s}, first);
    EXPECT_EQ(library.playlists()->find(first)->trackPaths, std::vector<QString>{u"/2"_s});
    EXPECT_EQ(library.status()->text(), u"Removed 2 tracks from \"First\""_s);
    library.history()->undo();
    EXPECT_EQ(library.playlists()->all(), before);
    library.playlists()->removeTrackPath(u"/2"_s, first);
    library.playlists()->removeTrackPath(u"/9"_s, first);
    library.playlists()->deletePlaylist(second);
    library.history()->undo();
    library.history()->undo();
    EXPECT_EQ(library.playlists()->all(), before);
    EXPECT_FALSE(library.history()->canUndo());
}

TEST_F(TidyingTest, ALiveListComesBack) {
    LiveLists* lists = library.liveLists();
    const QUuid first = lists->save({{}, u"First"_s, u"a"_s, LiveOrder::plays, true, 5});
    lists->save({{}, u"Second"_s, {}, LiveOrder::library, false, 0});
    const LiveList before = lists->list(first);
    lists->remove(first);
    EXPECT_EQ(library.status()->text(), u"Deleted live list \"First\""_s);
    EXPECT_EQ(library.history()->undoName(), L10nKey::deleteLiveList);
    library.history()->undo();
    EXPECT_EQ(lists->list(first), before);
    EXPECT_EQ(lists->rowOf(first), 0U);
}

TEST_F(TidyingTest, APlaylistComesBackWithItsColumnsAndOrder) {
    const QUuid id = library.playlists()->createPlaylist(u"First"_s);
    library.browsing()->setSelectedPlaylistID(id);
    library.tableOrder()->choose(TrackOrder::year);
    library.tableColumns()->toggle(TrackOrder::year);
    const auto stored = [&] {
        const QString place = TablePlace::playlist(id);
        TableOrder order(environment.preferences);
        TableColumns columns(environment.preferences);
        order.restore();
        columns.restore();
        columns.setPlace(place);
        return std::pair(order.sortingOf(place).by, columns.shows(TrackOrder::year));
    };
    const std::pair chosen(TrackOrder::year, true);
    ASSERT_EQ(stored(), chosen);
    library.playlists()->deletePlaylist(id);
    EXPECT_EQ(stored(), std::pair(TrackOrder::library, false));
    library.history()->undo();
    EXPECT_EQ(stored(), chosen);
    library.browsing()->setSelectedPlaylistID(id);
    EXPECT_EQ(library.tableOrder()->by(), TrackOrder::year);
    EXPECT_TRUE(library.tableColumns()->shows(TrackOrder::year));
}

// A library that is too large to be searched, derived or emptied at once. Every song is there three
// times, and all tracks are loved.
class ManyTracksTest : public TidyingTest {
  protected:
    ManyTracksTest() {
        std::vector<Track> tracks;
        for (int i = 0; i < 2400; ++i) {
            paths.append(folder.filePath(u"%1.mp3"_s.arg(i)));
            tracks.push_back(song(paths.back(), QString::number(i % 800), 200));
        }
        library.store()->append(rowsOf(tracks));
        library.queue()->append(library.store()->rows());
        library.importedPaths()->add(paths);
        environment.preferences.setStrings(SettingsKey::lovedPaths, paths);
        library.userData()->restore();
        library.duplicates()->refresh();
        library.catalog()->rebuildImportedAlbums();
        until([this] { return library.duplicates()->duplicateGroupCount() == 800; });
        until([this] { return lovedBadge() == u"2400"_s; });
    }
    // A worker that still derives albums would outlive the locale that it folds their texts by.
    void TearDown() override {
        until([this] { return library.catalog()->isCurrent(); });
    }
    template<typename Reached>
    static void until(const Reached& reached) {
        while (!reached())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    [[nodiscard]] QStringList third(int which) const {
        QStringList some;
        for (qsizetype i = which; i < paths.size(); i += 3)
            some.append(paths[i]);
        return some;
    }
    [[nodiscard]] QString lovedBadge() const {
        return library.sidebar()->sidebarBadge(SidebarItem::loved);
    }
    QStringList stored() {
        return *environment.preferences.strings(SettingsKey::importedAudioPaths);
    }

    QStringList paths;
};

TEST_F(ManyTracksTest, ComeBackWhileTheyStillLeave) {
    const TrackRows rows = library.store()->rows();
    for (const bool isDone : {false, true}) {
        library.tidying()->removeTracks(third(1));
        if (isDone)
            until([this] { return library.store()->size() == 1600 && lovedBadge() == u"1600"_s; });
        library.history()->undo();
        EXPECT_EQ(library.store()->rows(), rows);
        EXPECT_EQ(library.queue()->size(), 2400U);
        EXPECT_EQ(library.queue()->record(4).path(), paths[4]);
        EXPECT_EQ(library.userData()->lovedPaths().size(), 2400);
        EXPECT_EQ(stored().size(), 2400);
        until([this] { return lovedBadge() == u"2400"_s; });
    }
}

TEST_F(ManyTracksTest, LeaveOnePlaceAfterTheOther) {
    library.queue()->setCurrentRow(2);
    QStringList order;
    QObject::connect(library.store(), &LibraryStore::tracksChanged,
                     [&] { order.append(u"library, %1 stored"_s.arg(stored().size())); });
    QObject::connect(library.queue(), &PlayQueue::entriesChanged,
                     [&] { order.append(u"queue"_s); });
    QObject::connect(library.catalog(), &CatalogPublisher::catalogChanged,
                     [&] { order.append(u"albums"_s); });
    library.tidying()->removeTracks(third(0));
    EXPECT_EQ(library.store()->size(), 2400U) << "the worker is still to work it out";
    until([&] { return order.size() == 3; });
    EXPECT_EQ(library.userData()->lovedPaths().size(), 1600);
    EXPECT_EQ(order, (QStringList{u"library, 1600 stored"_s, u"queue"_s, u"albums"_s}));
    EXPECT_EQ(library.store()->size(), 1600U);
    EXPECT_EQ(library.store()->rowOf(paths[2]), 1U);
    EXPECT_EQ(library.queue()->size(), 1600U);
    EXPECT_EQ(library.queue()->currentPath(), paths[2]);
    EXPECT_EQ(library.duplicates()->groups(), duplicateTrackGroups(library.store()->rows()));
    until([this] { return lovedBadge() == u"1600"_s; });

    // A track that is added meanwhile stays. The current entry goes.
    library.tidying()->removeTracks(third(2));
    add({u"/new.mp3"_s});
    library.userData()->toggleLoved(u"/new.mp3"_s);
    until([this] { return lovedBadge() == u"801"_s; });
    EXPECT_EQ(library.userData()->lovedPaths().size(), 801);
    EXPECT_EQ(library.store()->size(), 801U);
    EXPECT_EQ(library.store()->rowOf(u"/new.mp3"_s), 800U);
    EXPECT_EQ(library.queue()->size(), 801U);
    EXPECT_FALSE(library.queue()->currentRow());
}

TEST_F(ManyTracksTest, OneThatIsAddedAgainMeanwhileComesBack) {
    const QString path = touch(u"0.mp3"_s);
    library.tidying()->removeTracks(third(0));
    library.importing()->importDroppedURLs({QUrl::fromLocalFile(path)});
    until([this] { return !library.importing()->isImporting(); });
    QCoreApplication::processEvents();
    EXPECT_EQ(library.store()->rowOf(path), 1600U);
    EXPECT_EQ(library.queue()->rowOfPath(path), 1600U);
    EXPECT_EQ(stored().size(), 1601);
    EXPECT_FALSE(library.userData()->isLoved(path)) << "it comes as a new one";
}

} // namespace
} // namespace halvane::test
