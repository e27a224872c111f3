// SPDX-License-Identifier: MIT
#pragma once

#include "library/browsing/cover_store.h"
#include "library/catalog/catalog_publisher.h"
#include "library/playback/collection_player.h"
#include "library/playback/queue_editing.h"
#include "library/playback/transport_fixture.h"
#include "library/undo_history.h"
#include "library/user/live_lists.h"
#include "library/user/track_user_data.h"

namespace halvane::test {

/// The library has the files "/m/a" to "/m/z".
struct EditedQueue : TransportFixture {
    explicit EditedQueue(unsigned seed = 1)
        : TransportFixture(seed) {
        TrackRows rows;
        for (char letter = 'a'; letter <= 'z'; ++letter)
            rows.push_back(makeRow(trackAt(path(letter))));
        store.append(rows);
        QObject::connect(&history, &UndoHistory::changed, &status, &StatusLine::withdrawUndo);
    }

    TrackUserData userData{preferences};
    Playlists playlists{preferences};
    LiveLists liveLists{preferences};
    CatalogPublisher catalog{store, userData, language};
    CoverStore covers;
    TableOrder order{preferences};
    Browsing browsing{store, catalog, playlists, liveLists, userData, language, order, rowState()};
    CollectionPlayer collections{store, catalog, playlists, files, browsing, queue, transport};
    UndoHistory history;
    QueueEditing editing{store,     collections, playlists, queue,
                         transport, history,     status,    language};

    RowState rowState() {
        RowState state = plainRowState();
        state.covers = &covers;
        return state;
    }
    static QStringList paths(const char* letters) {
        QStringList paths;
        for (const char* letter = letters; *letter; ++letter)
            paths.append(path(*letter));
        return paths;
    }
    /// The queue in letters. The current entry is a capital.
    [[nodiscard]] std::string shown() const {
        std::string letters;
        for (std::size_t row = 0; row < queue.size(); ++row)
            letters += queue.record(row).path().back().toLatin1();
        if (const auto row = queue.currentRow())
            letters[*row] = static_cast<char>(std::toupper(letters[*row]));
        return letters;
    }
    void remove(std::initializer_list<std::size_t> rows) {
        QList<QUuid> ids;
        for (const std::size_t row : rows)
            ids.append(id(row));
        editing.removeEntries(ids);
    }
};

} // namespace halvane::test
