// SPDX-License-Identifier: MIT
#include "library/catalog/library_store.h"
#include "library/tracks.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;

TEST(LibraryStore, NeverHoldsAPathTwice) {
    LibraryStore store;
    Track again = trackAt(u"/m/a"_s);
    again.title = u"second"_s;
    EXPECT_EQ(store.append(rowsOf({trackAt(u"/m/a"_s), trackAt(u"/m/b"_s), again})), 2U);
    EXPECT_EQ(store.append(rowsOf({trackAt(u"/m/../m/b"_s), trackAt(u"/m/c"_s)})), 1U);
    EXPECT_EQ(store.size(), 3U);
    EXPECT_EQ(store.track(u"/m/a"_s)->title, u"a"_s);
    EXPECT_EQ(store.rowOf(u"/m/c"_s), 2U);
    EXPECT_EQ(store.trackWithID(store.rows()[1]->id), store.track(u"/m/b"_s));
    EXPECT_EQ(store.track(u"/m/d"_s), nullptr);
}

TEST(LibraryStore, SnapshotsNeverChange) {
    LibraryStore store;
    store.append(rowsOf({trackAt(u"/m/a"_s), trackAt(u"/m/b"_s)}));
    const auto before = store.snapshot();
    Track healed = trackAt(u"/m/a"_s);
    healed.title = u"healed"_s;
    store.replace(rowsOf({healed, trackAt(u"/m/unknown"_s)}));
    store.remove({u"/m/b"_s});
    store.append(rowsOf({trackAt(u"/m/c"_s)}));
    ASSERT_EQ(before->size(), 2U);
    EXPECT_EQ((*before)[0]->title, u"a"_s);
    EXPECT_EQ(store.size(), 2U);
    EXPECT_EQ(store.track(u"/m/a"_s)->title, u"healed"_s);
}

TEST(LibraryStore, IndexFollowsRandomRemovals) {
    std::mt19937 generator(3);
    for (int round = 0; round < 200; ++round) {
        LibraryStore store;
        std::vector<Track> tracks;
        for (int i = 0; i < 40; ++i)
            tracks.push_back(trackAt(u"/m/%1"_s.arg(i)));
        store.append(rowsOf(tracks));
        QSet<QString> gone{u"/m/unknown"_s};
        for (int i = 0; i < 40; ++i) {
            if (generator() % 3 == 0)
                gone.insert(u"/m/%1"_s.arg(i));
        }
        store.remove(gone);
        for (std::size_t row = 0; row < store.size(); ++row)
            ASSERT_EQ(store.rowOf(store.rows()[row]->path()), row);
        for (const QString& path : gone)
            ASSERT_EQ(store.track(path), nullptr);
    }
}

// A worker that changes the library by mistake must end the program, not corrupt the library.
TEST(LibraryStoreDeathTest, OtherThreadsAreTurnedAway) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            LibraryStore store;
            std::thread([&] { store.append(TrackRows()); }).join();
        },
        "LibraryStore used on a thread");
}
